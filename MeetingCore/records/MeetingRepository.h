#pragma once

#include "MeetingCore/records/Meeting.h"

#include <filesystem>
#include <string>
#include <vector>

namespace varnet {

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

    /// Throws FileFailure when the record cannot be read, JsonFailure when it does not decode.
    Meeting load(const Uuid& id) const;

    /// Reads every folder that has a "meeting.json", in parallel. Records that cannot be read are named and left
    /// untouched. Throws FileFailure only when `root` cannot be listed.
    LoadedMeetings loadRecovering() const;

    /// Keeps a copy of the record as a version in the meeting's "history" folder. Throws as save does.
    void archiveBeforeTranscription(const Meeting& meeting) const;

private:
    std::filesystem::path m_root;
};

} // namespace varnet
