#include "MeetingCore/speech/SpeechEvent.h"

#include "MeetingCore/base/JsonDecoding.h"
#include "MeetingCore/speech/TranscriptWordFields.h"

namespace varnet {

template <>
struct JsonRecord<SpeechEvent::ServerError> {
    static constexpr std::tuple fields{JsonField{"message", &SpeechEvent::ServerError::message}};
};

template <>
struct JsonRecord<SpeechEvent> {
    static constexpr std::tuple fields{JsonField{"audio_processed", &SpeechEvent::audio_processed, audioTime},
                                       JsonField{"delta", &SpeechEvent::delta},
                                       JsonField{"error", &SpeechEvent::error},
                                       JsonField{"transcript", &SpeechEvent::transcript},
                                       JsonField{"type", &SpeechEvent::type},
                                       JsonField{"words", &SpeechEvent::words}};
};

SpeechEvent SpeechEvent::decode(std::string_view json) {
    JsonParser parser;
    return parser.decode<SpeechEvent>(json);
}

} // namespace varnet
