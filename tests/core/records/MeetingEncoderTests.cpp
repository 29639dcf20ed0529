#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingEncoder.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>

using namespace varnet;

TEST(MeetingEncoder, WritesWhatAFreshEncodingWritesWhateverChanged) {
    const TranscriptTurn turn{Uuid::random(), 1, 2, "Speaker 1", "text", {}};
    const struct {
        const char* name;
        std::function<void(Meeting&)> change;
    } steps[] = {
        {"nothing yet", [](Meeting&) {}},
        {"a first turn", [&](Meeting& meeting) { meeting.turns.push_back(turn); }},
        {"two more", [&](Meeting& meeting) { meeting.turns.insert(meeting.turns.end(), 2, turn); }},
        {"nothing", [](Meeting&) {}},
        {"a longer head", [](Meeting& meeting) { meeting.attendees = {{"Ana", "Ben"}}; }},
        {"a shorter head and a turn",
         [&](Meeting& meeting) {
             meeting.attendees.reset();
             meeting.turns.push_back(turn);
         }},
        {"the last turn grows", [](Meeting& meeting) { meeting.turns.back().originalText += " more"; }},
        {"a turn in the middle is edited", [](Meeting& meeting) { meeting.turns[1].editedText = ""; }},
        {"the edit is taken back", [](Meeting& meeting) { meeting.turns[1].editedText.reset(); }},
        {"another speaker", [](Meeting& meeting) { meeting.turns[2].speaker = "Speaker 2"; }},
        {"an equal time with another sign", [](Meeting& meeting) { meeting.turns[0].start = 0; }},
        {"the sign changes", [](Meeting& meeting) { meeting.turns[0].start = -0.0; }},
        {"a new id", [](Meeting& meeting) { meeting.turns[3].id = Uuid::random(); }},
        {"turns go", [](Meeting& meeting) { meeting.turns.erase(meeting.turns.begin() + 1, meeting.turns.end()); }},
        {"all go", [](Meeting& meeting) { meeting.turns.clear(); }},
        {"another meeting",
         [&](Meeting& meeting) {
             meeting = Meeting::make("other");
             meeting.turns.assign(5, turn);
         }},
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
        broken.createdAt = {1e300};
        EXPECT_THROW(encoder.encode(broken), JsonFailure) << step.name;
    }
    EXPECT_EQ(encoder.encode(meeting), encodeMeeting(meeting));
}

TEST(MeetingEncoder, SavesTheSameFile) {
    const test::TemporaryFolder folder;
    const MeetingRepository repository(folder / "root");
    MeetingEncoder encoder;
    Meeting meeting = Meeting::make("T");
    for (int i = 0; i < 3; ++i) {
        meeting.turns.push_back({Uuid::random(), 1.0 * i, 2, "Speaker 1", "text", {}});
        repository.save(meeting, encoder);
        EXPECT_EQ(readFile(repository.directory(meeting.id) / "meeting.json"), encodeMeeting(meeting));
    }
}
