#pragma once

#include "MeetingCore/records/Meeting.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

/// The speech engine's answer to a saved audio file. Field names are the wire's.
struct SpeechResponse {
    std::string text; ///< the whole transcript
    std::optional<std::vector<TranscriptWord>> words;

    /// Reads the answer's body; other keys are ignored. Throws JsonFailure for a missing text, anything of the wrong
    /// type, a time that is not within 0 to 10^9 seconds, and text that is not UTF-8.
    static SpeechResponse decode(std::string_view json);

    bool operator==(const SpeechResponse&) const = default;
};

} // namespace varnet
