#include "MeetingCore/base/FileReader.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/SystemCall.h"

#include <fcntl.h>

#include <cerrno>

namespace varnet {

namespace {

FileDescriptor openForReading(const std::filesystem::path& path, FileReader::Links links) {
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    const int flags =
        O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (links == FileReader::Links::refuse ? O_NOFOLLOW : 0);
    FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), flags); }), path);
    if (!file.isOpen())
        throw FileFailure::reading(path, errno);
    return file;
}

} // namespace

FileReader::FileReader(const std::filesystem::path& path, Links links) : m_file(openForReading(path, links)) {
    const int error = ::fstat(m_file.get(), &m_status) != 0 ? errno : S_ISDIR(m_status.st_mode) ? EISDIR : 0;
    if (error != 0)
        throw FileFailure::reading(path, error);
    if (!S_ISREG(m_status.st_mode))
        throw FileFailure(FileFailure::Kind::fileReadCorruptFile, path);
}

} // namespace varnet
