#include "MeetingCore/records/Meeting.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace varnet;

namespace {

/// The turns as "0-3.5 Speaker 1: Hello there.", joined by "|".
std::string grouped(const std::vector<TranscriptWord>& words, double offset = 0) {
    std::ostringstream out;
    for (const TranscriptTurn& turn : TranscriptTurn::group(words, "Speaker", offset))
        out << '|' << turn.start << '-' << turn.end << ' ' << turn.speaker << ": " << turn.originalText;
    return out.str();
}

} // namespace

TEST(TranscriptTurn, GroupsWordsBySpeakerAndSilence) {
    const struct {
        const char* name;
        std::vector<TranscriptWord> words;
        double offset;
        const char* expected;
    } rows[] = {
        {"no words", {}, 0, ""},
        {"1.999 s of silence joins", {{"Hello", 0, 1, 1}, {"you", 2.999, 3.5, 1}}, 0, "|0-3.5 Speaker 1: Hello you"},
        {"2.0 s of silence splits",
         {{"Hello", 0, 1, 1}, {"you", 3, 4, 1}},
         0,
         "|0-1 Speaker 1: Hello|3-4 Speaker 1: you"},
        {"overlap joins and the later end stays",
         {{"long", 0, 5, 0}, {"short", 1, 2, 0}},
         0,
         "|0-5 Speaker 0: long short"},
        {"a change of speaker splits and never merges back",
         {{"a", 0, 1, 1}, {"b", 1, 2, 2}, {"c", 2, 3, 1}},
         0,
         "|0-1 Speaker 1: a|1-2 Speaker 2: b|2-3 Speaker 1: c"},
        {"no speaker", {{"x", 0, 1, {}}, {"", 1, 2, {}}}, 0, "|0-2 Unassigned: x "},
        {"offset counts in the silence too",
         {{"a", 1, 2, 3}, {"b", 3.5, 4, 3}, {"c", 6, 7, 3}},
         12.5,
         "|13.5-16.5 Speaker 3: a b|18.5-19.5 Speaker 3: c"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(grouped(row.words, row.offset), row.expected) << row.name;
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

TEST(Meeting, NewRecordIsReadyAndItsOwn) {
    const Meeting one = Meeting::make("Weekly"), other = Meeting::make("Weekly");
    EXPECT_EQ(one.status, "Ready");
    EXPECT_NE(one.id, other.id);
    EXPECT_GT(one.createdAt, (Date{788918400}));  // 2026-01-01
    EXPECT_LT(one.createdAt, (Date{3944678400})); // 2126-01-01
    EXPECT_EQ((MeetingSource{"eventkit", "Work", "cal", "event", {}, {}, {}, {}, true}.key()),
              "eventkit|Work|cal|event");
}

TEST(NoteItem, IdentityLeavesOutTheEvidence) {
    NoteItem item{NoteItem::Kind::action, "Send the deck", {}, "Friday", {}};
    EXPECT_EQ(item.id(), "action|Send the deck||Friday");
    item.evidence.push_back({"S1", "send it"});
    item.owner = "Ana";
    EXPECT_EQ(item.id(), "action|Send the deck|Ana|Friday");
}
