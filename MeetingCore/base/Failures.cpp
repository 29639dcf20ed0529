#include "MeetingCore/base/Failures.h"

#include "MeetingCore/base/Text.h"

#include <cerrno>
#include <system_error>

namespace varnet {

namespace {

/// The last component, also of a path with a separator at its end.
std::string displayName(const std::filesystem::path& path) {
    const auto name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return validUtf8(name.empty() ? path.native() : name.native());
}

std::string sentence(FileFailure::Kind kind, const std::filesystem::path& path, int error) {
    const std::string file = "“" + displayName(path) + "” ";
    const std::string reason = error == 0 ? "." : ": " + std::generic_category().message(error) + ".";
    switch (kind) {
    case FileFailure::Kind::fileWriteUnknown:
        return file + "could not be written" + reason;
    case FileFailure::Kind::fileWriteOutOfSpace:
        return file + "could not be written: " + std::generic_category().message(error == 0 ? ENOSPC : error) + ".";
    case FileFailure::Kind::fileReadCorruptFile:
        return file + "is damaged and could not be read.";
    case FileFailure::Kind::fileReadNoSuchFile:
        return file + "could not be found.";
    case FileFailure::Kind::fileReadUnknown:
        break;
    }
    return file + "could not be read" + reason;
}

} // namespace

FileFailure::FileFailure(Kind kind, std::filesystem::path path, int error)
    : Failure(sentence(kind, path, error)), m_kind(kind), m_path(std::move(path)), m_error(error) {}

FileFailure FileFailure::writing(std::filesystem::path path, int error) {
    const bool full = error == ENOSPC || error == EDQUOT;
    return {full ? Kind::fileWriteOutOfSpace : Kind::fileWriteUnknown, std::move(path), error};
}

FileFailure FileFailure::reading(std::filesystem::path path, int error) {
    return {error == ENOENT ? Kind::fileReadNoSuchFile : Kind::fileReadUnknown, std::move(path), error};
}

std::string describe(const std::exception_ptr& failure) {
    if (failure) {
        try {
            std::rethrow_exception(failure);
        } catch (const std::exception& error) {
            return error.what();
        } catch (...) {
        }
    }
    return "Unknown error";
}

} // namespace varnet
