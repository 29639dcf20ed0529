#pragma once

#include "Varnet/async/Task.h"

namespace varnet {

class AppRouter;
class EngineSupervisor;
class MeetingStore;

/// The record command: what every button, menu entry, shortcut and action for recording calls. Main thread.
namespace RecordingCoordinator {

/// Stops a running recording. Otherwise frees the machine of the notes engine, starts a recording and, when that has
/// worked, shows its page. Gives up when one of the three objects is gone after a wait.
Task<> toggle(MeetingStore* store, EngineSupervisor* engines, AppRouter* router);

} // namespace RecordingCoordinator

} // namespace varnet
