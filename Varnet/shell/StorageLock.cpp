#include "Varnet/shell/StorageLock.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <string>

namespace varnet {

namespace {

std::filesystem::path resolved(const std::filesystem::path& root) {
    std::error_code error;
    auto path = std::filesystem::weakly_canonical(std::filesystem::absolute(root, error), error);
    if (error)
        path = root;
    return path.has_filename() ? path : path.parent_path();
}

std::optional<pid_t> readProcess(int descriptor) {
    char text[32];
    const auto length = pread(descriptor, text, sizeof text, 0);
    pid_t process = 0;
    if (length <= 0 || std::from_chars(text, text + length, process).ec != std::errc() || process <= 0)
        return {};
    return process;
}

} // namespace

StorageLock::StorageLock(const std::filesystem::path& storageRoot) {
    const auto root = resolved(storageRoot);
    try {
        makePrivateDirectories(root.parent_path());
    } catch (const Failure&) { // opening says the same
    }
    auto file = root;
    file += ".lock";
    if (lockFile(file))
        return;
    m_descriptor = open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (m_descriptor >= 0)
        take();
}

StorageLock::~StorageLock() {
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool StorageLock::tryAgain() {
    if (!m_held)
        take();
    return m_held;
}

/// Whether the file could be opened; the lock may be another process's then.
bool StorageLock::lockFile(const std::filesystem::path& file) {
    // Closed on exec: an engine that outlives a crash must not keep the library locked.
    m_descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_descriptor < 0)
        return false;
    take();
    return true;
}

void StorageLock::take() {
    m_held = flock(m_descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; // not every file system has locks
    m_holder = m_held ? std::nullopt : readProcess(m_descriptor);
    const auto text = std::to_string(getpid()) + "\n";
    if (m_held && ftruncate(m_descriptor, 0) == 0) [[maybe_unused]]
        const auto written = pwrite(m_descriptor, text.data(), text.size(), 0); // only tells who
}

} // namespace varnet
