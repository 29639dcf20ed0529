#include "MeetingCore/base/FileDescriptor.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/SystemCall.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace varnet {

FileDescriptor::FileDescriptor(int descriptor, std::filesystem::path path)
    : m_path(std::move(path)), m_descriptor(descriptor) {}

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : m_path(std::move(other.m_path)), m_descriptor(std::exchange(other.m_descriptor, -1)) {}

FileDescriptor::~FileDescriptor() {
    if (isOpen())
        ::close(m_descriptor);
}

std::size_t FileDescriptor::readAt(std::span<std::byte> bytes, std::uint64_t offset) const {
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

void FileDescriptor::writeAt(std::span<const std::byte> bytes, std::uint64_t offset) {
    while (!bytes.empty()) {
        const ssize_t written = uninterrupted(
            [&] { return ::pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
        if (written <= 0)
            throw FileFailure::writing(m_path, written < 0 ? errno : EIO);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += static_cast<std::uint64_t>(written);
    }
}

void FileDescriptor::flush() {
    if (uninterrupted([this] { return ::fdatasync(m_descriptor); }) != 0)
        throw FileFailure::writing(m_path, errno);
}

void FileDescriptor::close() {
    // Linux gives the descriptor back whatever close() answers; closing it again could hit another file's.
    if (::close(std::exchange(m_descriptor, -1)) != 0 && errno != EINTR)
        throw FileFailure::writing(m_path, errno);
}

} // namespace varnet
