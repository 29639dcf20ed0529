#pragma once

#include "MeetingCore/base/FileDescriptor.h"

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace varnet {

/// A regular file open for reading at any place, from any thread.
class FileReader {
public:
    /// What to do with a link at the path itself.
    enum class Links { follow, refuse };

    /// Opens a regular file; anything else that may stand there, such as a folder, a pipe or a device, is refused
    /// without waiting for it. Throws FileFailure.
    explicit FileReader(const std::filesystem::path& path, Links links = Links::follow);

    const std::filesystem::path& path() const { return m_file.path(); }
    /// As it was when the file was opened.
    const struct stat& status() const { return m_status; }
    std::uint64_t size() const { return static_cast<std::uint64_t>(m_status.st_size); }

    /// Fills `bytes` from `offset` on and says how many came: fewer than asked only at the file's end. Throws
    /// FileFailure.
    std::size_t read(std::span<std::byte> bytes, std::uint64_t offset) const { return m_file.readAt(bytes, offset); }

private:
    FileDescriptor m_file;
    struct stat m_status{};
};

} // namespace varnet
