#pragma once

#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/Meeting.h"

/// Deleted meetings: their folders are moved into "deleted-meetings" beside the library, each with a marker that tells
/// when, and are erased after a while. The operations on disk are those of MeetingRepository.
namespace varnet {

/// A meeting that was deleted and can still be brought back.
struct DeletedMeeting {
    Meeting meeting;
    Date deletedAt;

    bool operator==(const DeletedMeeting&) const = default;
};

/// How long a deleted meeting is kept: 30 days, in seconds.
inline constexpr double deletedRetention = 2'592'000;

class MeetingTrashError : public Failure {
public:
    enum class Kind { notFound, alreadyInLibrary, alreadyDeleted };

    explicit MeetingTrashError(Kind kind);
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace varnet
