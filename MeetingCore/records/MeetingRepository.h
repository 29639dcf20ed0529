#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/records/Meeting.h"

#include <filesystem>
#include <string>
#include <vector>

namespace varnet {

class MeetingEncoder;
struct DeletedMeeting;
struct MeetingHistory;
struct MeetingHistoryEntry;
struct MeetingRestoreOptions;
struct MeetingRevisions;

/// What a pass over the library found.
struct LoadedMeetings {
    std::vector<Meeting> meetings;       ///< newest first
    std::vector<std::string> unreadable; ///< folder names, in listing order
};

/// The meetings on disk, one folder each below `root`, named by the upper-case id and holding "meeting.json" and the
/// audio files. A value without state; operations run on the caller's thread and are not guarded against each other.
/// Folders are made with mode 0700 and files with 0600.
class MeetingRepository {
public:
    /// Creates `root` and its missing parents. Throws FileFailure.
    explicit MeetingRepository(std::filesystem::path root);

    const std::filesystem::path& root() const { return m_root; }

    /// The folder of a meeting. Touches no disk.
    std::filesystem::path directory(const Uuid& id) const;

    /// Writes the record so that a crash leaves the whole old or the whole new document. Throws FileFailure, and
    /// JsonFailure for a record that could not be read again (see encodeMeeting).
    void save(const Meeting& meeting) const;

    /// The same with an encoder that the caller keeps, for a meeting that is saved again and again while it grows.
    void save(const Meeting& meeting, MeetingEncoder& encoder) const;

    /// Throws FileFailure when the record cannot be read, JsonFailure when it does not decode.
    Meeting load(const Uuid& id) const;

    /// Reads every folder that has a "meeting.json", in parallel. Records that cannot be read are named and left
    /// untouched. Throws FileFailure only when `root` cannot be listed.
    LoadedMeetings loadRecovering() const;

    /// Keeps a copy of the record as a version in the meeting's "history" folder. Throws as save does.
    void archiveBeforeTranscription(const Meeting& meeting) const;

    /// The versions of a meeting. A meeting without a "history" folder has none; a file that is not a version of this
    /// meeting is counted. Throws FileFailure when the folder cannot be listed, MeetingHistoryError when it is not
    /// inside the library.
    MeetingHistory history(const Uuid& id) const;

    /// Puts the wanted content of a version into its meeting, after keeping the present record as a version, and gives
    /// the meeting as saved. Both are read again and must still be what `expected` tells; nothing is written before
    /// every check has passed. Throws MeetingHistoryError, FileFailure and JsonFailure.
    Meeting restore(const MeetingHistoryEntry& entry, MeetingRestoreOptions options,
                    const MeetingRevisions& expected) const;

    /// "deleted-meetings" beside the root, as an absolute path.
    std::filesystem::path deletedRoot() const;
    std::filesystem::path deletedDirectory(const Uuid& id) const;

    /// Moves a meeting's folder out of the library and marks it. Whatever fails leaves it in the library. Throws
    /// MeetingTrashError and FileFailure.
    void moveToDeleted(const Uuid& id, Date at) const;

    /// Moves the folder back to where its record belongs, which is the same id unless somebody renamed the folder.
    /// Never overwrites, and refuses a record that cannot be read. Throws MeetingTrashError, FileFailure and
    /// JsonFailure, with everything left where it is.
    Meeting restoreDeleted(const Uuid& id) const;

    /// Removes a deleted meeting's folder for good; links in it are removed, not followed. From the first moment on it
    /// is no deleted meeting any more, whatever happens. Throws MeetingTrashError and FileFailure.
    void eraseDeleted(const Uuid& id) const;

    /// The deleted meetings whose records can be read, last deleted first, each with its folder's id. One without a
    /// readable marker counts as deleted `now`. Empty when nothing was ever deleted or the folder cannot be listed.
    std::vector<DeletedMeeting> loadDeleted(Date now) const;

    /// Erases the meetings that were deleted `retention` seconds ago or longer, and what an earlier erasing left; gives
    /// the ids of the erased. A meeting without a readable marker gets one with `now` instead. What cannot be erased or
    /// marked stays and is tried again the next time.
    std::vector<Uuid> eraseExpired(Date now, double retention) const;

private:
    std::filesystem::path m_root;
};

} // namespace varnet
