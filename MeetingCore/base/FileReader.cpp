#include "MeetingCore/base/FileReader.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/SystemCall.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace varnet {

namespace {

int openForReading(const std::filesystem::path& path, FileReader::Links links) {
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    const int flags =
        O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (links == FileReader::Links::refuse ? O_NOFOLLOW : 0);
    const int descriptor = uninterrupted([&] { return ::open(path.c_str(), flags); });
    if (descriptor < 0)
        throw FileFailure::reading(path, errno);
    return descriptor;
}

} // namespace

FileReader::FileReader(std::filesystem::path path, Links links)
    : m_path(std::move(path)), m_descriptor(openForReading(m_path, links)) {
    const int error = ::fstat(m_descriptor, &m_status) != 0 ? errno : S_ISDIR(m_status.st_mode) ? EISDIR : 0;
    if (error == 0 && S_ISREG(m_status.st_mode))
        return;
    ::close(m_descriptor);
    if (error != 0)
        throw FileFailure::reading(m_path, error);
    throw FileFailure(FileFailure::Kind::fileReadCorruptFile, m_path);
}

FileReader::~FileReader() {
    ::close(m_descriptor);
}

std::size_t FileReader::read(std::span<std::byte> bytes, std::uint64_t offset) const {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = uninterrupted([&] {
            return ::pread(m_descriptor, bytes.data() + filled, bytes.size() - filled,
                           static_cast<off_t>(offset + filled));
        });
        if (got < 0)
            throw FileFailure::reading(m_path, errno);
        if (got == 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    return filled;
}

} // namespace varnet
