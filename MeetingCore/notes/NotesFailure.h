#pragma once

#include "MeetingCore/base/Failures.h"

#include <string_view>

namespace varnet {

/// Why a run of notes generation, or one point of it, failed.
class NotesFailure : public Failure {
public:
    enum class Kind { invalidEvidence, unsupportedAssignment, emptyTranscript, incomplete, sourceChanged };

    /// `detail` stands in the sentence of the first two kinds.
    explicit NotesFailure(Kind kind, std::string_view detail = {});
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace varnet
