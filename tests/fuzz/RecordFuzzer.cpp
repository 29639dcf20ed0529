#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingJson.h"

#include <simdjson.h>

#include <cstdint>
#include <optional>

using namespace varnet;

namespace {

std::optional<Meeting> decodeIfValid(std::string_view bytes) {
    try {
        return decodeMeeting(bytes);
    } catch (const JsonFailure&) {
        return std::nullopt;
    }
}

/// Whether a parser that looks at every byte takes it for JSON. It knows no integer beyond 64 bits, which JSON allows.
bool isJson(std::string_view bytes) {
    simdjson::dom::parser parser;
    const auto error = parser.parse(bytes.data(), bytes.size()).error();
    return error == simdjson::SUCCESS || error == simdjson::NUMBER_ERROR;
}

} // namespace

/// What decodes is JSON, can be stored, reads back as the same record, and is stored the same way ever after.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto meeting = decodeIfValid(bytes);
    if (!meeting)
        return 0;
    VARNET_ASSERT(isJson(bytes));
    const std::string document = encodeMeeting(*meeting);
    const Meeting again = decodeMeeting(document);
    VARNET_ASSERT(again == *meeting);
    VARNET_ASSERT(encodeMeeting(again) == document);
    VARNET_ASSERT(MeetingRestoration::revision(again) == MeetingRestoration::revision(*meeting));
    VARNET_ASSERT(again.markdown().ends_with('\n'));
    return 0;
}
