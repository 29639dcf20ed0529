#include "MeetingCore/records/Meeting.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace varnet;

namespace {

/// The turns as "0-3.5 Speaker 1: Hello there.", joined by "|".
std::string grouped(const std::vector<TranscriptWord>& words) {
    std::ostringstream out;
    for (const TranscriptTurn& turn : TranscriptTurn::group(words, "Speaker", 0))
        out << '|' << turn.start << '-' << turn.end << ' ' << turn.speaker << ": " << turn.originalText;
    return out.str();
}

} // namespace

TEST(TranscriptTurn, GroupsWordsBySpeakerAndSilence) {
    const struct {
        const char* name;
        std::vector<TranscriptWord> words;
        const char* expected;
    } rows[] = {
        {"1.999 s of silence joins", {{"Hello", 0, 1, 1}, {"you", 2.999, 3.5, 1}}, "|0-3.5 Speaker 1: Hello you"},
        {"2.0 s splits", {{"Hello", 0, 1, 1}, {"you", 3, 4, 1}}, "|0-1 Speaker 1: Hello|3-4 Speaker 1: you"},
        {"the later end stays", {{"long", 0, 5, 0}, {"short", 1, 2, 0}}, "|0-5 Speaker 0: long short"},
        {"a change of speaker splits and never merges back",
         {{"a", 0, 1, 1}, {"b", 1, 2, 2}, {"c", 2, 3, 1}},
         "|0-1 Speaker 1: a|1-2 Speaker 2: b|2-3 Speaker 1: c"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(grouped(row.words), row.expected) << row.name;
}
