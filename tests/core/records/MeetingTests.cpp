#include "MeetingCore/records/Meeting.h"

#include <gtest/gtest.h>

#include <limits>

using namespace varnet;

namespace {

/// A turn without its id, which is fresh on each grouping.
struct Span {
    double start, end;
    std::string speaker, text;
    bool operator==(const Span&) const = default;
};

void PrintTo(const Span& span, std::ostream* out) {
    *out << span.start << " to " << span.end << ' ' << span.speaker << ": " << span.text;
}

std::vector<Span> grouped(const std::vector<TranscriptWord>& words, double offset = 0) {
    std::vector<Span> spans;
    for (const TranscriptTurn& turn : TranscriptTurn::group(words, "Speaker", offset))
        spans.push_back({turn.start, turn.end, turn.speaker, turn.originalText});
    return spans;
}

} // namespace

TEST(TranscriptTurn, GroupsWordsBySpeakerAndSilence) {
    const struct {
        const char* name;
        std::vector<TranscriptWord> words;
        double offset;
        std::vector<Span> expected;
    } rows[] = {
        {"no words", {}, 0, {}},
        {"1.999 s of silence joins",
         {{"Hello", 0, 1, 1}, {"there.", 2.999, 3.5, 1}},
         0,
         {{0, 3.5, "Speaker 1", "Hello there."}}},
        {"2.0 s of silence splits",
         {{"Hello", 0, 1, 1}, {"there.", 3, 3.5, 1}},
         0,
         {{0, 1, "Speaker 1", "Hello"}, {3, 3.5, "Speaker 1", "there."}}},
        {"overlap joins and the later end stays",
         {{"long", 0, 5, 0}, {"short", 1, 2, 0}},
         0,
         {{0, 5, "Speaker 0", "long short"}}},
        {"a change of speaker splits and never merges back",
         {{"a", 0, 1, 1}, {"b", 1, 2, 2}, {"c", 2, 3, 1}},
         0,
         {{0, 1, "Speaker 1", "a"}, {1, 2, "Speaker 2", "b"}, {2, 3, "Speaker 1", "c"}}},
        {"no speaker", {{"x", 0, 1, {}}, {"", 1, 2, {}}}, 0, {{0, 2, "Unassigned", "x "}}},
        {"offset counts in the silence too",
         {{"a", 1, 2, 3}, {"b", 3.5, 4, 3}, {"c", 6, 7, 3}},
         12.5,
         {{13.5, 16.5, "Speaker 3", "a b"}, {18.5, 19.5, "Speaker 3", "c"}}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(grouped(row.words, row.offset), row.expected) << row.name;
}

TEST(TranscriptTurn, GroupGivesFreshIdentities) {
    const std::vector<TranscriptWord> words{{"a", 0, 1, 1}, {"b", 1, 2, 2}};
    const auto first = TranscriptTurn::group(words, "Call", 0);
    const auto second = TranscriptTurn::group(words, "Call", 0);
    EXPECT_EQ(first[0].speaker, "Call 1");
    EXPECT_NE(first[0].id, first[1].id);
    EXPECT_NE(first[0].id, second[0].id);
    EXPECT_FALSE(first[0].editedText);
}

TEST(TranscriptTurn, AnEmptyCorrectionStillReplacesTheText) {
    TranscriptTurn turn{.speaker = "Speaker 1", .originalText = "heard", .editedText = std::nullopt};
    EXPECT_EQ(turn.text(), "heard");
    turn.editedText = "";
    EXPECT_EQ(turn.text(), "");
}

TEST(Meeting, ClockTextHasMinutesAndSecondsOnly) {
    const struct {
        double seconds;
        const char* expected;
    } rows[] = {{0, "00:00"},      {-1, "00:00"},    {-0.5, "00:00"},      {59.999, "00:59"}, {60, "01:00"},
                {3725.9, "62:05"}, {6000, "100:00"}, {1e9, "16666666:40"}, {-0x1p63, "00:00"}};
    for (const auto& row : rows)
        EXPECT_EQ(Meeting::timestamp(row.seconds), row.expected) << row.seconds;
}

TEST(MeetingDeathTest, ClockTextOfAnImpossibleTimeEndsTheProgram) {
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 0x1p63, -1e300})
        EXPECT_DEATH(Meeting::timestamp(seconds), "broken invariant") << seconds;
}

TEST(Meeting, SpeakerNameFallsBackToTheLabel) {
    Meeting meeting = Meeting::make("Weekly");
    const std::string label = "Speaker 1";
    EXPECT_EQ(meeting.speakerName(label), "Speaker 1");
    meeting.speakerNames.emplace();
    EXPECT_EQ(meeting.speakerName(label), "Speaker 1");
    (*meeting.speakerNames)[label] = "Ana";
    EXPECT_EQ(meeting.speakerName(label), "Ana");
}

TEST(Meeting, NewRecordIsReadyAndItsOwn) {
    const Meeting one = Meeting::make("Weekly"), other = Meeting::make("Weekly");
    EXPECT_EQ(one.title, "Weekly");
    EXPECT_EQ(one.status, "Ready");
    EXPECT_NE(one.id, other.id);
    EXPECT_GT(one.createdAt, (Date{788918400}));  // 2026-01-01
    EXPECT_LT(one.createdAt, (Date{3944678400})); // 2126-01-01
    EXPECT_FALSE(one.speakerNames || one.source || one.generatedNotes || one.attendees || one.audioFilename);
}

TEST(MeetingSource, IdentityIsItsFourFields) {
    MeetingSource source{"eventkit", "Work", "cal", "event", {}, {}, {}, {}, false};
    EXPECT_EQ(source.key(), "eventkit|Work|cal|event");
    source.cancelled = true;
    EXPECT_EQ(source.key(), "eventkit|Work|cal|event");
}

TEST(NoteItem, IdentityLeavesOutTheEvidence) {
    NoteItem item{NoteItem::Kind::action, "Send the deck", {}, "Friday", {}};
    EXPECT_EQ(item.id(), "action|Send the deck||Friday");
    item.evidence.push_back({"S1", "send it"});
    item.owner = "Ana";
    EXPECT_EQ(item.id(), "action|Send the deck|Ana|Friday");
}
