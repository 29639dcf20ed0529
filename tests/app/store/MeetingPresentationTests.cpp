#include "Varnet/store/MeetingPresentation.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <cmath>

namespace varnet {
namespace {

TranscriptTurn spokenBy(const char* speaker) {
    TranscriptTurn turn;
    turn.speaker = speaker;
    return turn;
}

MeetingSource sourceOf(const char* provider) {
    MeetingSource source;
    source.provider = provider;
    return source;
}

GeneratedNotes draftWith(std::initializer_list<NoteItem::Kind> kinds) {
    GeneratedNotes notes;
    for (const auto kind : kinds) {
        notes.items.emplace_back();
        notes.items.back().kind = kind;
    }
    return notes;
}

TEST(MeetingPresentation, ClockRoundsAndShowsHoursOnlyFromOneHourOn) {
    const std::vector<std::pair<double, const char*>> rows{
        {0, "0:00"},       {-3, "0:00"},        {0.5, "0:01"},     {59.4, "0:59"},       {59.5, "1:00"},
        {3599.4, "59:59"}, {3599.5, "1:00:00"}, {3661, "1:01:01"}, {360000, "100:00:00"}};
    for (const auto& [seconds, text] : rows)
        EXPECT_EQ(MeetingPresentation::clock(seconds), text) << seconds;
    EXPECT_DEATH(MeetingPresentation::clock(std::nan("")), "broken invariant");
    EXPECT_DEATH(MeetingPresentation::clock(1e300), "broken invariant");
}

TEST(MeetingPresentation, SubtitleTellsOriginSpeakersAndToDosInThatOrder) {
    using Kind = NoteItem::Kind;
    Meeting meeting;
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "No transcript yet");

    meeting.turns = {spokenBy("Unassigned")};
    EXPECT_EQ(MeetingPresentation::speakerCount(meeting), 0);
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "Transcript");

    meeting.turns = {spokenBy("Speaker 1"), spokenBy("Unassigned"), spokenBy("Speaker 1")};
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "1 speaker");

    meeting.turns.push_back(spokenBy("Speaker 2"));
    meeting.speakerNames = {{"Speaker 1", "Ann"}, {"Speaker 2", "Ann"}};
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "2 speakers") << "labels count, not names";

    meeting.generatedNotes = draftWith({Kind::summary, Kind::decision});
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "2 speakers");
    meeting.generatedNotes = draftWith({Kind::summary, Kind::action});
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "2 speakers · 1 to-do");
    meeting.generatedNotes = draftWith({Kind::action, Kind::action});
    meeting.audioFilename = "imported.wav";
    meeting.source = sourceOf("eventkit");
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "Imported audio · From calendar · 2 speakers · 2 to-dos");

    meeting = Meeting();
    meeting.source = sourceOf("googlecalendar");
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "From calendar");
    meeting.source = sourceOf("granola");
    EXPECT_EQ(MeetingPresentation::subtitle(meeting), "No transcript yet");
}

/// Dates on the day on which New York's clocks go forward: the day has 23 hours.
class DatesInNewYork : public ::testing::Test {
protected:
    DatesInNewYork() : m_previous(icu::TimeZone::createDefault()) {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("America/New_York"));
    }
    ~DatesInNewYork() override { icu::TimeZone::adoptDefault(m_previous); }

private:
    icu::TimeZone* m_previous;
};

TEST_F(DatesInNewYork, DayHeadingFollowsTheLocalDayAndTheLocale) {
    struct Row {
        const char* name;
        double unixSeconds;
        const char* locale;
        DayHeading heading;
    };
    const Date now = Date::fromUnix(1773000000); // Sunday, 2026-03-08 16:00 in New York
    const std::vector<Row> rows{
        {"half past midnight", 1772947800, "en_US", {"Today", "Sunday, March 8"}},
        {"half an hour before midnight", 1772944200, "en_US", {"Yesterday", "Saturday, March 7"}},
        {"the day before yesterday", 1772859599, "en_US", {"Friday", "March 6, 2026"}},
        {"another week", 1772470800, "en_US.UTF-8", {"Monday", "March 2, 2026"}},
        {"another language", 1772470800, "de_DE.UTF-8", {"Montag", "2. März 2026"}},
        {"today in another language", 1772947800, "de_DE", {"Today", "Sonntag, 8. März"}},
        {"tomorrow", 1773028800, "en_US", {"Monday", "March 9, 2026"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(MeetingPresentation::dayHeading(Date::fromUnix(row.unixSeconds), now, row.locale), row.heading)
            << row.name;
}

TEST_F(DatesInNewYork, RecordingTitleHasAbbreviatedDateAndShortTimeOfTheLocale) {
    const Date date = Date::fromUnix(1772721000); // 2026-03-05 09:30 in New York
    EXPECT_EQ(MeetingPresentation::recordingTitle(date, "en_US"), "Meeting · Mar 5, 2026, 9:30\u202fAM");
    EXPECT_EQ(MeetingPresentation::recordingTitle(date, "de_DE"), "Meeting · 5. März 2026, 09:30");
}

} // namespace
} // namespace varnet
