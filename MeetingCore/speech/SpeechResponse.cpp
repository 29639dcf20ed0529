#include "MeetingCore/speech/SpeechResponse.h"

#include "MeetingCore/base/JsonDecoding.h"
#include "MeetingCore/speech/TranscriptWordFields.h"

namespace varnet {

template <>
struct JsonRecord<SpeechResponse> {
    static constexpr std::tuple fields{JsonField{"text", &SpeechResponse::text},
                                       JsonField{"words", &SpeechResponse::words}};
};

SpeechResponse SpeechResponse::decode(std::string_view json) {
    JsonParser parser;
    return parser.decode<SpeechResponse>(json);
}

} // namespace varnet
