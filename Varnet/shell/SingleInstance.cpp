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

/// What the holder says when it is asked to show itself; absent when it does not. It may have the lock and not yet the
/// name on the bus, or no longer: one that is quitting still ends its engines, and then the lock becomes free.
std::optional<Refusal> askHolder(StorageLock& lock, const QList<QUrl>& files) {
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    do {
        const auto owner = ApplicationBus::owner();
        if (owner && owner != lock.holder())
            return {};
        if (owner) {
            const auto answer = ApplicationBus::askOwner(files);
            if (answer.came)
                return Refusal{answer.refusal.isEmpty() ? 0 : 1, answer.refusal.toStdString()};
        }
        std::this_thread::sleep_for(100ms);
    } while (!lock.tryAgain() && std::chrono::steady_clock::now() < deadline);
    return {};
}

} // namespace

std::optional<Refusal> settle(StorageLock& lock, const std::filesystem::path& storageRoot, const QList<QUrl>& files) {
    if (!lock.held())
        if (auto answer = askHolder(lock, files))
            return answer;
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
