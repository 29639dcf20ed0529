#include "Varnet/store/MeetingPresentation.h"

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include <cmath>

namespace varnet {
namespace {

TEST(MeetingPresentation, ClockRoundsAndShowsHoursOnlyFromOneHourOn) {
    const std::pair<double, const char*> rows[] = {{-3, "0:00"},      {0.5, "0:01"},       {59.4, "0:59"},
                                                   {3599.4, "59:59"}, {3599.5, "1:00:00"}, {360000, "100:00:00"}};
    for (const auto& [seconds, text] : rows)
        EXPECT_EQ(MeetingPresentation::clock(seconds), text) << seconds;
    EXPECT_DEATH(MeetingPresentation::clock(std::nan("")), "broken invariant");
}

TEST(MeetingPresentation, SubtitleTellsOriginSpeakersAndToDosInThatOrder) {
    using Kind = NoteItem::Kind;
    using Kinds = std::vector<Kind>;
    const struct {
        std::vector<const char*> speakers;
        std::optional<Kinds> notes;
        const char* audio;
        const char* provider;
        const char* expected;
    } rows[] = {
        {{}, {}, "", "", "No transcript yet"},
        {{"Unassigned"}, {}, "", "", "Transcript"},
        {{"Speaker 1", "Unassigned", "Speaker 1"}, {}, "meeting.wav", "", "1 speaker"},
        {{"Speaker 1", "Speaker 2"}, Kinds{Kind::summary, Kind::decision}, "", "granola", "2 speakers"},
        {{"Speaker 1", "Speaker 2"}, Kinds{Kind::summary, Kind::action}, "", "", "2 speakers · 1 to-do"},
        {{"Speaker 1"},
         Kinds{Kind::action, Kind::action},
         "imported.wav",
         "eventkit",
         "Imported audio · From calendar · 1 speaker · 2 to-dos"},
        {{}, {}, "", "googlecalendar", "From calendar"},
    };
    for (const auto& row : rows) {
        Meeting meeting;
        meeting.speakerNames = {{"Speaker 1", "Ann"}, {"Speaker 2", "Ann"}}; // labels count, not names
        for (const char* speaker : row.speakers)
            meeting.turns.emplace_back().speaker = speaker;
        if (row.notes)
            meeting.generatedNotes.emplace();
        for (const Kind kind : row.notes.value_or(Kinds()))
            meeting.generatedNotes->items.emplace_back().kind = kind;
        meeting.audioFilename = row.audio;
        meeting.source.emplace().provider = row.provider;
        EXPECT_EQ(MeetingPresentation::subtitle(meeting), row.expected);
    }
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
        {"another language", 1772470800, "de_DE.UTF-8", {"Montag", "2. März 2026"}},
        {"today in another language", 1772947800, "de_DE", {"Today", "Sonntag, 8. März"}},
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
