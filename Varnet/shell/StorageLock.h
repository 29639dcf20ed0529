#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

namespace varnet {

/// Keeps a library to one process: a second one would repair files that the first is recording. The lock is a file
/// beside the storage root ("meetings.lock" for "meetings") that stays open and locked; a crash frees it. Symbolic
/// links to one library share its lock. Needs no session bus.
class StorageLock {
public:
    /// Takes the lock, making the folder of the lock file if need be. Where no lock file can be written, the storage
    /// root itself is locked; where there is not even that, nothing can be written and the lock counts as held.
    explicit StorageLock(const std::filesystem::path& storageRoot);
    ~StorageLock();
    StorageLock(const StorageLock&) = delete;
    StorageLock& operator=(const StorageLock&) = delete;

    bool held() const { return m_held; }

    /// Takes the lock if it has become free. Whether it is held now.
    bool tryAgain();

    /// The process that holds the lock when this one does not; absent when the file does not tell.
    std::optional<pid_t> holder() const { return m_holder; }

private:
    bool lockFile(const std::filesystem::path& file);
    void take();

    int m_descriptor = -1;
    bool m_held = true;
    std::optional<pid_t> m_holder;
};

} // namespace varnet
