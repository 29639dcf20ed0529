#include "MeetingCore/records/MeetingHistory.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "MeetingCore/records/MeetingStatus.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <tuple>

namespace fs = std::filesystem;

namespace varnet {

namespace {

using Kind = MeetingHistoryError::Kind;

std::string sentence(Kind kind) {
    switch (kind) {
    case Kind::wrongMeeting:
        return "This version belongs to a different meeting.";
    case Kind::invalidLocation:
        return "This version is not a regular file in this meeting's history folder.";
    case Kind::changed:
        return "The meeting or saved version changed after this preview opened. Close history and open it again "
               "before restoring.";
    case Kind::noSelection:
        return "Choose at least one type of content to restore.";
    case Kind::differentAudio:
        break;
    }
    return "This transcript belonged to a different audio attachment and cannot replace the current transcript.";
}

bool isLink(const fs::path& path) {
    std::error_code ignored;
    return fs::is_symlink(fs::symlink_status(path, ignored));
}

/// Whether no regular file stands there, in contrast to one that cannot be read.
bool isNoRegularFile(const FileFailure& failure) {
    const int error = failure.error();
    return failure.kind() == FileFailure::Kind::fileReadCorruptFile || error == ENOENT || error == ENOTDIR ||
           error == EISDIR || error == ELOOP || error == ENXIO || error == ENODEV;
}

DatedContent readRecordItself(const fs::path& path) {
    try {
        return readFileItself(path, JsonLimits::maximumBytes);
    } catch (const FileFailure& failure) {
        if (isNoRegularFile(failure))
            throw MeetingHistoryError(Kind::invalidLocation);
        throw;
    }
}

/// The folder of the meeting's versions, without any link on the way below the root. It may be missing.
fs::path checkedHistoryDirectory(const fs::path& root, const Uuid& id) {
    std::error_code error;
    const fs::path resolvedRoot = fs::canonical(root, error);
    if (error)
        throw FileFailure::reading(root, error.value());
    const fs::path meeting = resolvedRoot / id.text();
    fs::path expected = meeting / "history";
    const fs::path resolved = fs::canonical(expected, error);
    if (error && error != std::errc::no_such_file_or_directory && error != std::errc::too_many_symbolic_link_levels)
        throw FileFailure::reading(expected, error.value());
    // What cannot be resolved is missing, or a link to nowhere.
    if (error ? isLink(meeting) || isLink(expected) : resolved != expected)
        throw MeetingHistoryError(Kind::invalidLocation);
    return expected;
}

MeetingHistoryEntry readHistoryEntry(const fs::path& root, const Uuid& entryID, const Uuid& meetingID) {
    const fs::path folder = checkedHistoryDirectory(root, meetingID);
    const DatedContent file = readRecordItself(folder / (entryID.text() + ".json"));
    Meeting meeting = decodeMeeting(file.bytes);
    if (meeting.id != meetingID)
        throw MeetingHistoryError(Kind::wrongMeeting);
    return {.id = entryID, .archivedAt = file.modifiedAt, .meeting = std::move(meeting)};
}

/// The names without ".json" of the files that should be versions.
std::vector<std::string> listVersions(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::string name = entry->path().stem();
        if (Uuid::parse(name) && entry->path().extension() == ".json")
            names.push_back(std::move(name));
    }
    if (error && error != std::errc::no_such_file_or_directory)
        throw FileFailure::reading(folder, error.value());
    return names;
}

} // namespace

MeetingHistoryError::MeetingHistoryError(Kind kind) : Failure(sentence(kind)), m_kind(kind) {}

std::string MeetingRestoration::revision(const Meeting& meeting) {
    return sha256(encodeMeeting(meeting));
}

Meeting MeetingRestoration::preview(const Meeting& current, const Meeting& archived, MeetingRestoreOptions options) {
    if (current.id != archived.id)
        throw MeetingHistoryError(Kind::wrongMeeting);
    if (!options.transcript && !options.personalNotes && !options.generatedNotes)
        throw MeetingHistoryError(Kind::noSelection);
    if (options.transcript && current.audioFilename != archived.audioFilename)
        throw MeetingHistoryError(Kind::differentAudio);

    Meeting restored = current;
    if (options.transcript) {
        restored.turns = archived.turns;
        restored.speakerNames = archived.speakerNames;
        restored.status = MeetingStatus::transcriptRestored;
    }
    if (options.personalNotes)
        restored.notes = archived.notes;
    if (options.generatedNotes)
        restored.generatedNotes = archived.generatedNotes;
    return restored;
}

MeetingHistory MeetingRepository::history(const Uuid& id) const {
    MeetingHistory history;
    for (const std::string& name : listVersions(checkedHistoryDirectory(m_root, id))) {
        const Uuid version = Uuid::parse(name).value();
        try {
            if (name != version.text()) // in lower case it would stand for another file
                throw MeetingHistoryError(Kind::invalidLocation);
            history.entries.push_back(readHistoryEntry(m_root, version, id));
        } catch (const Failure&) {
            ++history.unreadable;
        }
    }
    std::ranges::sort(history.entries, std::greater(),
                      [](const MeetingHistoryEntry& entry) { return std::tie(entry.archivedAt, entry.id); });
    return history;
}

Meeting MeetingRepository::restore(const MeetingHistoryEntry& entry, MeetingRestoreOptions options,
                                   const MeetingRevisions& expected) const {
    const Uuid id = entry.meeting.id;
    const Meeting archived = readHistoryEntry(m_root, entry.id, id).meeting;
    const Meeting current = decodeMeeting(readRecordItself(directory(id) / "meeting.json").bytes);
    if (MeetingRestoration::revision(current) != expected.current ||
        MeetingRestoration::revision(archived) != expected.archived)
        throw MeetingHistoryError(Kind::changed);
    Meeting restored = MeetingRestoration::preview(current, archived, options);

    archiveBeforeTranscription(current);
    save(restored);
    return restored;
}

} // namespace varnet
