#include "Varnet/shell/SingleInstance.h"

#include "Varnet/platform/AppInfo.h"
#include "Varnet/shell/ApplicationBus.h"

#include <chrono>
#include <thread>

namespace varnet::SingleInstance {

namespace {

std::string named(std::optional<pid_t> process) {
    return process ? "process " + std::to_string(*process) : "another process";
}

/// Whether the holder shows itself. It may have the lock and not yet the name on the bus, or no longer: one that is
/// quitting still ends its engines, and then the lock becomes free.
bool activateHolder(StorageLock& lock) {
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    do {
        const auto owner = ApplicationBus::owner();
        if (owner && owner != lock.holder())
            return false;
        if (owner && ApplicationBus::activateOwner())
            return true;
        std::this_thread::sleep_for(100ms);
    } while (!lock.tryAgain() && std::chrono::steady_clock::now() < deadline);
    return false;
}

} // namespace

std::optional<Refusal> settle(StorageLock& lock, const std::filesystem::path& storageRoot) {
    if (!lock.held() && activateHolder(lock))
        return Refusal{};
    if (!lock.held())
        return Refusal{1, AppInfo::name() + " is already running: " + named(lock.holder()) + " holds the meetings in " +
                              storageRoot.string() + "."};
    const auto owner = ApplicationBus::owner();
    return owner ? std::optional(anotherLibraryOpen(owner)) : std::nullopt;
}

Refusal anotherLibraryOpen(std::optional<pid_t> process) {
    return {1, AppInfo::name() + " is already running with other meetings: " + named(process) +
                   ". Quit it before another folder is opened."};
}

} // namespace varnet::SingleInstance
