#include "MeetingCore/records/MeetingTrash.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/JsonDecoding.h"
#include "MeetingCore/base/JsonEncoding.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <string_view>
#include <system_error>
#include <tuple>

namespace fs = std::filesystem;

namespace varnet {

/// The content of the marker.
struct DeletionRecord {
    Date deletedAt;
};

template <>
struct JsonRecord<DeletionRecord> {
    static constexpr std::tuple fields{JsonField{"deletedAt", &DeletionRecord::deletedAt}};
};

namespace {

using Kind = MeetingTrashError::Kind;

constexpr const char* markerName = "deleted.json";
constexpr std::size_t maximumMarkerBytes = 4096;
constexpr std::string_view erasingPrefix = ".erasing-";

std::string sentence(Kind kind) {
    switch (kind) {
    case Kind::notFound:
        return "This meeting's files could not be found.";
    case Kind::alreadyInLibrary:
        return "A meeting with the same identity is already in the library.";
    case Kind::alreadyDeleted:
        break;
    }
    return "This meeting is already in Recently deleted.";
}

fs::file_type typeOf(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type();
}

bool isFolder(const fs::path& path) {
    return typeOf(path) == fs::file_type::directory;
}

bool isFree(const fs::path& path) {
    return typeOf(path) == fs::file_type::not_found;
}

/// Renames without replacing anything. Gives an errno value, 0 for success.
int moveFolder(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Not every file system can promise it by itself.
    if (!isFree(to))
        return EEXIST;
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

void writeMarker(const fs::path& folder, Date at) {
    writeFileAtomically(folder / markerName, encodeJson(DeletionRecord{at}));
}

std::optional<Date> readMarker(const fs::path& folder) {
    try {
        const std::string bytes = readFileItself(folder / markerName, maximumMarkerBytes).bytes;
        return JsonParser().decode<DeletionRecord>(bytes).deletedAt;
    } catch (const Failure&) {
        return std::nullopt;
    }
}

Meeting readRecord(const fs::path& folder) {
    return decodeMeeting(readFile(folder / "meeting.json", JsonLimits::maximumBytes));
}

std::optional<Meeting> tryReadRecord(const fs::path& folder) {
    try {
        return readRecord(folder);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

/// The ids of the folders whose names are the prefix and an id.
std::vector<Uuid> foldersBelow(const fs::path& root, std::string_view prefix = {}) {
    std::vector<Uuid> ids;
    std::error_code error;
    for (fs::directory_iterator entry(root, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename();
        const auto id =
            name.starts_with(prefix) ? Uuid::parse(std::string_view(name).substr(prefix.size())) : std::nullopt;
        if (id && name.substr(prefix.size()) == id->text() && isFolder(entry->path()))
            ids.push_back(*id);
    }
    return ids;
}

fs::path erasingDirectory(const fs::path& deletedRoot, const Uuid& id) {
    return deletedRoot / (std::string(erasingPrefix) + id.text());
}

/// Whether there was something.
bool removeTree(const fs::path& path) {
    std::error_code error;
    const auto removed = fs::remove_all(path, error);
    if (error)
        throw FileFailure::writing(path, error.value());
    return removed > 0;
}

void finishErasing(const fs::path& deletedRoot) {
    for (const Uuid& id : foldersBelow(deletedRoot, erasingPrefix)) {
        std::error_code nextTime;
        fs::remove_all(erasingDirectory(deletedRoot, id), nextTime);
    }
}

} // namespace

MeetingTrashError::MeetingTrashError(Kind kind) : Failure(sentence(kind)), m_kind(kind) {}

fs::path MeetingRepository::deletedRoot() const {
    const fs::path root = (fs::absolute(m_root) / "").lexically_normal().parent_path();
    return root.parent_path() / "deleted-meetings";
}

fs::path MeetingRepository::deletedDirectory(const Uuid& id) const {
    return deletedRoot() / id.text();
}

void MeetingRepository::moveToDeleted(const Uuid& id, Date at) const {
    const fs::path folder = directory(id), deleted = deletedDirectory(id);
    if (!isFolder(folder))
        throw MeetingTrashError(Kind::notFound);
    if (!isFree(deleted))
        throw MeetingTrashError(Kind::alreadyDeleted);
    makePrivateDirectories(deleted.parent_path());
    // The marker of an earlier deletion would let a crash after the move count from then.
    if (::unlink((folder / markerName).c_str()) != 0 && errno != ENOENT)
        throw FileFailure::writing(folder / markerName, errno);
    if (const int error = moveFolder(folder, deleted)) {
        if (error == EEXIST)
            throw MeetingTrashError(Kind::alreadyDeleted);
        throw FileFailure::writing(folder, error);
    }
    try {
        writeMarker(deleted, at);
    } catch (...) {
        moveFolder(deleted, folder); // if not even that works, it is found as a deleted meeting without a marker
        throw;
    }
}

Meeting MeetingRepository::restoreDeleted(const Uuid& id) const {
    if (!isFree(directory(id)))
        throw MeetingTrashError(Kind::alreadyInLibrary);
    const fs::path deleted = deletedDirectory(id);
    if (!isFolder(deleted))
        throw MeetingTrashError(Kind::notFound);
    Meeting meeting = readRecord(deleted);
    const fs::path folder = directory(meeting.id);
    makePrivateDirectories(m_root);
    if (const int error = moveFolder(deleted, folder)) {
        if (error == EEXIST)
            throw MeetingTrashError(Kind::alreadyInLibrary);
        throw FileFailure::writing(folder, error);
    }
    ::unlink((folder / markerName).c_str()); // without meaning in the library
    return meeting;
}

void MeetingRepository::eraseDeleted(const Uuid& id) const {
    const fs::path folder = deletedDirectory(id), erasing = erasingDirectory(deletedRoot(), id);
    const bool finished = removeTree(erasing);
    const int error = moveFolder(folder, erasing);
    if (error == ENOENT && finished)
        return;
    if (error == ENOENT)
        throw MeetingTrashError(Kind::notFound);
    if (error != 0)
        throw FileFailure::writing(folder, error);
    removeTree(erasing);
}

std::vector<DeletedMeeting> MeetingRepository::loadDeleted(Date now) const {
    std::vector<DeletedMeeting> deleted;
    for (const Uuid& id : foldersBelow(deletedRoot())) {
        auto meeting = tryReadRecord(deletedDirectory(id));
        if (!meeting)
            continue;
        meeting->id = id;
        deleted.push_back(
            {.meeting = std::move(*meeting), .deletedAt = readMarker(deletedDirectory(id)).value_or(now)});
    }
    std::ranges::sort(deleted, std::greater(),
                      [](const DeletedMeeting& one) { return std::tie(one.deletedAt, one.meeting.id); });
    return deleted;
}

std::vector<Uuid> MeetingRepository::eraseExpired(Date now, double retention) const {
    finishErasing(deletedRoot());
    std::vector<Uuid> erased;
    for (const Uuid& id : foldersBelow(deletedRoot())) {
        const fs::path folder = deletedDirectory(id);
        const auto deletedAt = readMarker(folder);
        const bool expired = deletedAt && deletedAt->secondsSinceReference + retention <= now.secondsSinceReference;
        // Whose record cannot be read is left to a later version or to the user.
        if ((deletedAt && !expired) || !tryReadRecord(folder))
            continue;
        try {
            if (expired)
                eraseDeleted(id);
            else
                writeMarker(folder, now);
        } catch (const Failure&) {
            continue;
        }
        if (expired)
            erased.push_back(id);
    }
    return erased;
}

} // namespace varnet
