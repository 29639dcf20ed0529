#include "Varnet/store/MeetingPresentation.h"

#include <gtest/gtest.h>

#include <cmath>

namespace varnet {
TEST(MeetingPresentation, ClockRoundsAndShowsHoursOnlyFromOneHourOn) {
    const std::pair<double, const char*> rows[] = {{-3, "0:00"},      {0.5, "0:01"},       {59.4, "0:59"},
                                                   {3599.4, "59:59"}, {3599.5, "1:00:00"}, {360000, "100:00:00"}};
    for (const auto& [seconds, text] : rows)
        EXPECT_EQ(MeetingPresentation::clock(seconds), text) << seconds;
    EXPECT_DEATH(MeetingPresentation::clock(std::nan("")), "broken invariant");
}

TEST(MeetingPresentation, SubtitleTellsOriginSpeakersAndToDosInThatOrder) {
    Meeting meeting;
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "No transcript yet");
    meeting.turns.resize(1);
    meeting.turns[0].speaker = "Unassigned";
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "Transcript");
    meeting.turns.resize(3);
    meeting.turns[1].speaker = "Speaker 1";
    meeting.turns[2].speaker = "Speaker 2";
    meeting.speakerNames = {{"Speaker 1", "Ann"}, {"Speaker 2", "Ann"}}; // labels count, not names
    meeting.audioFilename = "imported.wav";
    meeting.source.emplace().provider = "eventkit";
    meeting.generatedNotes.emplace().items.resize(1);
    meeting.generatedNotes->items[0].kind = NoteItem::Kind::action;
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "Imported audio · From calendar · 2 speakers · 1 to-do");
}

} // namespace varnet
