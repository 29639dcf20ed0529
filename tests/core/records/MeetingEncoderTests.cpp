#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingEncoder.h"
#include "MeetingCore/records/MeetingJson.h"

#include <gtest/gtest.h>

#include <functional>

using namespace varnet;

TEST(MeetingEncoder, WritesWhatAFreshEncodingWritesWhateverChanged) {
    const TranscriptTurn turn{Uuid::random(), 1, 2, "Speaker 1", "text", {}};
    const struct {
        const char* name;
        std::function<void(Meeting&)> change;
    } steps[] = {
        {"a first turn", [&](Meeting& meeting) { meeting.turns.push_back(turn); }},
        {"two more", [&](Meeting& meeting) { meeting.turns.insert(meeting.turns.end(), 2, turn); }},
        {"another head", [](Meeting& meeting) { meeting.attendees = {{"Ana", "Ben"}}; }},
        {"the last turn grows", [](Meeting& meeting) { meeting.turns.back().originalText += " more"; }},
        {"a turn in the middle is edited", [](Meeting& meeting) { meeting.turns[1].editedText = ""; }},
        {"an equal time with another sign", [](Meeting& meeting) { meeting.turns[0].start = 0; }},
        {"the sign changes", [](Meeting& meeting) { meeting.turns[0].start = -0.0; }},
        {"a new id", [](Meeting& meeting) { meeting.turns[2].id = Uuid::random(); }},
        {"turns go", [](Meeting& meeting) { meeting.turns.erase(meeting.turns.begin() + 1, meeting.turns.end()); }},
        {"another meeting", [](Meeting& meeting) { meeting = Meeting::make("other"); }},
    };
    MeetingEncoder encoder;
    Meeting meeting = Meeting::make("T");
    for (const auto& step : steps) {
        step.change(meeting);
        EXPECT_EQ(encoder.encode(meeting), encodeMeeting(meeting)) << step.name;
        Meeting broken = meeting; // a refused record must not leave traces in the next one
        broken.turns.insert(broken.turns.begin() + static_cast<std::ptrdiff_t>(broken.turns.size() / 2),
                            {.end = 1e300, .speaker = "s", .originalText = "t", .editedText = {}});
        EXPECT_THROW(encoder.encode(broken), JsonFailure) << step.name;
    }
    EXPECT_EQ(encoder.encode(meeting), encodeMeeting(meeting));
}
