#pragma once

#include "Varnet/async/Task.h"

#include <QString>

#include <memory>

namespace varnet {

/// Keeps the machine awake as long as it exists: neither sleep nor idleness suspends it. Main thread.
class SleepInhibitor {
public:
    virtual ~SleepInhibitor() = default;
    SleepInhibitor(const SleepInhibitor&) = delete;
    SleepInhibitor& operator=(const SleepInhibitor&) = delete;

    /// Asks the login manager, else the desktop portal. `reason` is a sentence that the system may show. Null when
    /// neither grants it, which is logged; it never throws, and takes no longer than a few seconds.
    static Task<std::unique_ptr<SleepInhibitor>> take(QString reason);

protected:
    SleepInhibitor() = default;
};

} // namespace varnet
