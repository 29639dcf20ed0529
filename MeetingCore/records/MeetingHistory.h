#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/Meeting.h"

#include <cstddef>
#include <string>
#include <vector>

/// Saved versions of a meeting: a complete record each, kept before a change that replaces content. Audio has no
/// versions, which is why a transcript returns only to the audio that it belongs to. The operations on disk are those
/// of MeetingRepository.
namespace varnet {

/// One version: "history/<id>.json" in the meeting's folder.
struct MeetingHistoryEntry {
    Uuid id;
    Date archivedAt; ///< the file's modification time
    Meeting meeting;

    bool operator==(const MeetingHistoryEntry&) const = default;
};

/// The versions of one meeting.
struct MeetingHistory {
    std::vector<MeetingHistoryEntry> entries; ///< newest first
    std::size_t unreadable = 0;               ///< files that should be versions and are not
};

/// What of a version is wanted back.
struct MeetingRestoreOptions {
    bool transcript = false; ///< the turns and the names of the speakers
    bool personalNotes = false;
    bool generatedNotes = false;
};

/// What a preview was made from. A restore happens only while both are still the same.
struct MeetingRevisions {
    std::string current;  ///< MeetingRestoration::revision of the meeting
    std::string archived; ///< of the version
};

class MeetingHistoryError : public Failure {
public:
    enum class Kind { wrongMeeting, invalidLocation, changed, noSelection, differentAudio };

    explicit MeetingHistoryError(Kind kind);
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

namespace MeetingRestoration {

/// Identity of a record's exact content: SHA-256 of its JSON in lower-case hexadecimal. Throws JsonFailure for a record
/// that cannot be stored.
std::string revision(const Meeting& meeting);

/// `current` with the wanted content of `archived`. Throws MeetingHistoryError when they are different meetings, when
/// nothing is wanted, and when a transcript is wanted that belongs to other audio.
Meeting preview(const Meeting& current, const Meeting& archived, MeetingRestoreOptions options);

} // namespace MeetingRestoration

} // namespace varnet
