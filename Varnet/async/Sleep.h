#pragma once

#include "Varnet/async/Task.h"

#include <chrono>
#include <stop_token>

namespace varnet {

/// Waits for at least `duration` of CLOCK_MONOTONIC, which stands still while the machine sleeps. Main thread. Returns
/// false when `stop` was requested before the coroutine goes on, also if that came after the time was over.
Task<bool> sleepFor(std::chrono::nanoseconds duration, std::stop_token stop = {});

} // namespace varnet
