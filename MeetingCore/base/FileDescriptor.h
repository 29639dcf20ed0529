#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace varnet {

/// An open file of the system, closed at the end of its life. Interrupted system calls and short transfers are
/// continued. All failures are FileFailure and name the path that was given, whatever the file is called meanwhile.
/// One thread at a time; `readAt` alone is safe from any thread.
class FileDescriptor {
public:
    /// Takes over what a system call answered, also a negative number: then nothing is open.
    FileDescriptor(int descriptor, std::filesystem::path path);
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&&) = delete;
    ~FileDescriptor();

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    const std::filesystem::path& path() const { return m_path; }

    /// Fills `bytes` from `offset` on and says how many came: fewer than asked only at the file's end.
    std::size_t readAt(std::span<std::byte> bytes, std::uint64_t offset) const;

    /// Writes all of `bytes` from `offset` on. After a failure some of them may stand there.
    void writeAt(std::span<const std::byte> bytes, std::uint64_t offset);

    /// Returns when the content and the length are on stable storage.
    void flush();

    /// Closes now; throws when the system reports a late write error. Nothing is open afterwards in either case.
    void close();

private:
    std::filesystem::path m_path;
    int m_descriptor;
};

} // namespace varnet
