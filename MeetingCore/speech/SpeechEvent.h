#pragma once

#include "MeetingCore/records/Meeting.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace varnet {

/// One message of the speech engine's live session. Field names are the wire's.
struct SpeechEvent {
    struct ServerError {
        std::string message;
    };

    std::string type;
    std::optional<std::string> delta;
    std::optional<std::string> transcript;
    std::optional<std::vector<TranscriptWord>> words;
    std::optional<double> audio_processed; ///< seconds
    std::optional<ServerError> error;

    /// Reads one message. Throws JsonFailure for anything that is not a valid event, for a time that is not within
    /// 0 to 10^9 seconds, and for text that is not UTF-8.
    static SpeechEvent decode(std::string_view json);
};

} // namespace varnet
