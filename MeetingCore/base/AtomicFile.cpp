#include "MeetingCore/base/AtomicFile.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/FileDescriptor.h"
#include "MeetingCore/base/FileReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>

namespace varnet {

namespace {

bool isDirectory(const std::filesystem::path& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

void writeFileAtomically(const std::filesystem::path& path, std::string_view bytes, mode_t mode) {
    std::string temporary = path.parent_path() / ("." + path.filename().native() + ".XXXXXX");
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC), path);
    if (!file.isOpen())
        throw FileFailure::writing(path, errno);
    try {
        file.writeAt(std::as_bytes(std::span(bytes)), 0);
        if (mode != 0600 && ::fchmod(file.get(), mode) != 0)
            throw FileFailure::writing(path, errno);
        file.flush();
        file.close();
        if (::rename(temporary.c_str(), path.c_str()) != 0)
            throw FileFailure::writing(path, errno);
    } catch (const FileFailure&) {
        ::unlink(temporary.c_str());
        throw;
    }
}

namespace {

/// Gives when the file was last written.
Date readWhole(const FileReader& file, std::string& bytes, std::size_t maximumBytes) {
    if (file.size() > maximumBytes)
        throw FileFailure::reading(file.path(), EFBIG);
    bytes.resize(file.size());
    bytes.resize(file.read(std::as_writable_bytes(std::span(bytes)), 0)); // it may have become shorter meanwhile
    const timespec& modified = file.status().st_mtim;
    return Date::fromUnix(static_cast<double>(modified.tv_sec) + 1e-9 * static_cast<double>(modified.tv_nsec));
}

} // namespace

std::string readFile(const std::filesystem::path& path, std::size_t maximumBytes) {
    std::string bytes;
    readWhole(FileReader(path), bytes, maximumBytes);
    return bytes;
}

void readFile(const std::filesystem::path& path, std::string& bytes, std::size_t maximumBytes) {
    readWhole(FileReader(path), bytes, maximumBytes);
}

DatedContent readFileItself(const std::filesystem::path& path, std::size_t maximumBytes) {
    DatedContent content;
    content.modifiedAt = readWhole(FileReader(path, FileReader::Links::refuse), content.bytes, maximumBytes);
    return content;
}

void makePrivateDirectories(const std::filesystem::path& path) {
    if (::mkdir(path.c_str(), 0700) == 0)
        return;
    if (errno == ENOENT && path.has_parent_path() && path.parent_path() != path) {
        makePrivateDirectories(path.parent_path());
        if (::mkdir(path.c_str(), 0700) == 0)
            return;
    }
    if (errno != EEXIST)
        throw FileFailure::writing(path, errno);
    if (!isDirectory(path))
        throw FileFailure::writing(path, ENOTDIR);
}

} // namespace varnet
