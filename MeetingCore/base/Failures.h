#pragma once

#include <exception>
#include <filesystem>
#include <string>

namespace varnet {

/// A failure with a finished sentence that the user reads as it stands.
class Failure : public std::exception {
public:
    explicit Failure(std::string message) : m_message(std::move(message)) {}
    const char* what() const noexcept override { return m_message.c_str(); }

private:
    std::string m_message;
};

/// Anything that goes wrong with the speech engine, its session, or the start of a capture.
class SpeechFailure : public Failure {
public:
    using Failure::Failure;
};

/// Work was called off by its owner; nothing is shown to the user for it.
class Cancelled : public Failure {
public:
    Cancelled() : Failure("The operation was cancelled.") {}
};

/// A file operation that failed. `what()` names the file and the system's reason in one sentence, such as
/// “meeting.json” could not be written: No space left on device.
class FileFailure : public Failure {
public:
    enum class Kind {
        fileWriteUnknown,
        fileWriteOutOfSpace,
        fileReadCorruptFile,
        fileReadNoSuchFile,
        fileReadUnknown,
    };

    /// `error` is an errno value, or 0 where the system gave none.
    FileFailure(Kind kind, std::filesystem::path path, int error = 0);

    /// The failure of a system call that wrote (a full disk and a used-up quota are out of space) or read (a missing
    /// file is fileReadNoSuchFile). `error` is its errno value.
    static FileFailure writing(std::filesystem::path path, int error);
    static FileFailure reading(std::filesystem::path path, int error);

    Kind kind() const { return m_kind; }
    const std::filesystem::path& path() const { return m_path; }
    int error() const { return m_error; }

private:
    Kind m_kind;
    std::filesystem::path m_path;
    int m_error;
};

/// The sentence of a caught exception; "Unknown error" for what is not a std::exception, and for null.
std::string describe(const std::exception_ptr& failure);

} // namespace varnet
