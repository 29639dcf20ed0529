#pragma once

#include "MeetingCore/base/Date.h"

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

/// Whole files, read and replaced in one step. Any thread. Interrupted system calls and short transfers are continued.
namespace varnet {

/// Replaces the file by one with these bytes and this mode: they go to a temporary file beside it, reach the disk, and
/// the temporary file takes the place of the old one. Whoever reads sees the whole old or the whole new content, also
/// after a crash. A failure leaves the old file as it was and no temporary file. Throws FileFailure.
void writeFileAtomically(const std::filesystem::path& path, std::string_view bytes, mode_t mode = 0600);

/// The content of a regular file of at most `maximumBytes`; links are followed. Anything else that may stand there,
/// such as a folder, a pipe or a device, is refused without waiting for it. Throws FileFailure.
std::string readFile(const std::filesystem::path& path, std::size_t maximumBytes = std::size_t{256} << 20);

/// The same into a text that keeps its memory from file to file. After a failure its content is unspecified.
void readFile(const std::filesystem::path& path, std::string& bytes, std::size_t maximumBytes);

/// A file's content and when it was last written, both of the same file.
struct DatedContent {
    std::string bytes;
    Date modifiedAt;
};

/// As readFile, but a link at the path itself is refused too (ELOOP). The file is opened first and looked at then, so
/// that nothing can take its place in between.
DatedContent readFileItself(const std::filesystem::path& path, std::size_t maximumBytes);

/// Makes the folder and its missing parents, each with mode 0700. Folders that exist are left as they are. Throws
/// FileFailure, also when something that is not a folder stands at the path.
void makePrivateDirectories(const std::filesystem::path& path);

} // namespace varnet
