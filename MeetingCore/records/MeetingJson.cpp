#include "MeetingCore/records/MeetingJson.h"

#include "MeetingCore/base/JsonDecoding.h"
#include "MeetingCore/base/JsonEncoding.h"
#include "MeetingCore/records/MeetingFields.h"

namespace varnet {

std::string encodeMeeting(const Meeting& meeting) {
    return encodeJson(meeting);
}

std::string encodeSources(std::span<const NoteSource> sources) {
    constexpr std::size_t expectedBytes = 200; // of a source besides its text
    std::size_t expected = 0;
    for (const NoteSource& source : sources)
        expected += expectedBytes + source.text.size();
    JsonWriter writer(JsonLayout::compact, expected);
    json::writeList(writer, sources, anyTime);
    return writer.finish();
}

NoteResponse NoteResponse::decode(std::string_view json) {
    JsonParser parser;
    return parser.decode<NoteResponse>(json);
}

Meeting decodeMeeting(std::string_view json) {
    JsonParser parser;
    return parser.decode<Meeting>(json);
}

Meeting decodeMeeting(JsonParser& parser) {
    return parser.decodeBuffer<Meeting>();
}

} // namespace varnet
