#pragma once

#include "Varnet/platform/TrayItem.h"

#include <QObject>

namespace varnet {

class AppCommands;
class EngineSupervisor;
class MeetingStore;
class RecordingClock;

/// What the tray item shows: the state as an icon, the running clock in the tooltip and in the first row of the menu.
/// Main thread; the four objects must outlive it.
class TrayState : public QObject {
    Q_OBJECT

public:
    /// The rows of the menu, in their order. Of these `record`, `open`, `settings` and `quit` can be chosen.
    enum Row {
        record,
        meetingTitle, ///< shown while recording, if a meeting is selected
        callMissing,  ///< shown while the call is not heard
        firstDivider,
        open,
        secondDivider,
        speechEngine,
        notesEngine,
        thirdDivider,
        settings,
        quit
    };

    TrayState(const MeetingStore& store, const EngineSupervisor& engines, const RecordingClock& clock,
              const AppCommands& commands, QObject* parent = nullptr);

    const TrayContent& content() const { return m_content; }

Q_SIGNALS:
    void changed();

private:
    TrayContent now() const;
    void update();

    const MeetingStore& m_store;
    const EngineSupervisor& m_engines;
    const RecordingClock& m_clock;
    const AppCommands& m_commands;
    TrayContent m_content;
};

} // namespace varnet
