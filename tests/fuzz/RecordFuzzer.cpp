#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingJson.h"

#include <cstddef>
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

/// Every time that is shown as clock text.
void printTimes(const Meeting& meeting) {
    for (const TranscriptTurn& turn : meeting.turns)
        VARNET_ASSERT(Meeting::timestamp(turn.start).size() >= 5 && Meeting::timestamp(turn.end).size() >= 5);
    if (meeting.generatedNotes)
        for (const NoteSource& source : meeting.generatedNotes->sources)
            VARNET_ASSERT(Meeting::timestamp(source.start).size() >= 5 && Meeting::timestamp(source.end).size() >= 5);
}

} // namespace

/// What decodes can be stored, reads back as the same record, and is stored the same way ever after.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto meeting = decodeIfValid({reinterpret_cast<const char*>(data), size});
    if (!meeting)
        return 0;
    const std::string document = encodeMeeting(*meeting);
    const Meeting again = decodeMeeting(document);
    VARNET_ASSERT(again == *meeting);
    VARNET_ASSERT(encodeMeeting(again) == document);
    VARNET_ASSERT(MeetingRestoration::revision(again) == MeetingRestoration::revision(*meeting));
    printTimes(*meeting);
    return 0;
}
