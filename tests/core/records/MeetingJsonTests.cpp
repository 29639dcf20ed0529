#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingJson.h"
#include "tests/core/records/GoldenMeeting.h"

#include <gtest/gtest.h>

using namespace varnet;

namespace {

constexpr const char* smallDocument = R"({"createdAt":0,"id":"1b4e28ba-2fa1-41d2-883f-2a5c8f3d9e11","notes":"",)"
                                      R"("status":"Ready","title":"T","turns":[]})";

/// The small document with one text replaced by another.
std::string edited(std::string_view from, std::string_view to) {
    std::string document = smallDocument;
    return document.replace(document.find(from), from.size(), to);
}

/// The small document with one more member.
std::string with(const std::string& member) {
    return edited("{", "{" + member + ",");
}

std::string repeated(std::string_view text, int count) {
    std::string out;
    for (int i = 0; i < count; ++i)
        out += text;
    return out;
}

} // namespace

TEST(MeetingJson, DocumentIsTheGoldenOne) {
    const Meeting meeting = decodeMeeting(test::goldenDocument); // its Markdown shows the other fields
    EXPECT_EQ(meeting.audioFilename, "meeting.wav");
    EXPECT_EQ(meeting.attendees, std::vector<std::string>{});
    EXPECT_EQ(meeting.turns.at(1).end, 1e-7);
    EXPECT_EQ(meeting.turns[1].originalText, "um");
    EXPECT_EQ(meeting.turns[1].editedText, "");
    EXPECT_EQ(meeting.source.value().scheduledStart, "2026-03-05T14:30");
    EXPECT_TRUE(meeting.source->cancelled);
    EXPECT_EQ(encodeMeeting(meeting), test::goldenDocument);
}

TEST(MeetingJson, NumbersSurviveBitForBit) {
    Meeting meeting = Meeting::make("");
    for (const double time :
         {0.1, 0.1 + 0.2, -0.0, 5e-324, 2.2250738585072014e-308, 1.0 / 3, 1e9, 999999999.9999999, 4503.599627370497})
        meeting.turns.push_back({Uuid::random(), time, -time, "s", "t", {}});
    meeting.createdAt = {252423993599};
    const Meeting back = decodeMeeting(encodeMeeting(meeting));
    EXPECT_EQ(back, meeting);
    EXPECT_TRUE(std::signbit(back.turns[2].start)); // which the comparison does not see
}

TEST(MeetingJson, TextSurvivesAndBadBytesAreReplaced) {
    const struct {
        std::string text, expected;
    } rows[] = {
        {"日本 \U0001F600 \u2028 \x7F \uFFFF", "日本 \U0001F600 \u2028 \x7F \uFFFF"},
        {std::string("a\0b\x1F\b\f", 6), std::string("a\0b\x1F\b\f", 6)},
        {"caf\xE9", "caf\uFFFD"},
        {"\xED\xA0\x80\"", "\uFFFD\uFFFD\uFFFD\""},
        {"cut \xF0\x9F\x98", "cut \uFFFD"},
    };
    for (const auto& row : rows) {
        Meeting meeting = Meeting::make(row.text);
        meeting.speakerNames.emplace()[row.text] = row.text;
        const Meeting back = decodeMeeting(encodeMeeting(meeting));
        EXPECT_EQ(back.title, row.expected);
        EXPECT_EQ(back.speakerNames, (std::map<std::string, std::string>{{row.expected, row.expected}}));
    }
}

TEST(MeetingJson, AcceptsAnyValidDocument) {
    const Meeting expected = decodeMeeting(smallDocument);
    EXPECT_FALSE(expected.attendees || expected.generatedNotes || expected.speakerNames);

    const struct {
        const char* name;
        std::string document;
    } rows[] = {
        {"null optionals", with(R"("attendees":null,"source":null,"speakerNames": null )")},
        {"unknown keys", with(R"("next":{"a":[1,-2.5e3,{"b":[]},"\ud83d\ude00",true,false,null]},"":[[]])")},
        {"a repeated key", with(R"("title":"other","attendees":["x"],"attendees":null)")},
        {"escaped keys", edited("\"title\"", R"("\u0074itle")")},
        {"63 deep", with("\"deep\":" + repeated("[", 63) + "1" + repeated("]", 63))},
    };
    for (const auto& row : rows)
        EXPECT_EQ(decodeMeeting(row.document), expected) << row.name;
}

TEST(MeetingJson, RefusesEverythingElse) {
    const std::string small = smallDocument;
    const struct {
        const char* name;
        std::string document;
    } rows[] = {
        {"nothing", ""},
        {"trailing comma", edited("[]}", "[],}")},
        {"two documents", small + small},
        {"a byte order mark", "\xEF\xBB\xBF" + small},
        {"missing status", edited("\"status\":\"Ready\",", "")},
        {"key in another case", edited("\"title\"", "\"Title\"")},
        {"id that is none", edited("1b4e28ba-", "1b4e28ba")},
        {"date of the year 10000", edited("\"createdAt\":0", "\"createdAt\":252423993600")},
        {"number with a leading zero", edited("\"createdAt\":0", "\"createdAt\":01")},
        {"attendees with null", with(R"("attendees":["a",null])")},
        {"unknown: half a surrogate pair", with(R"("x":"\ud800")")},
        {"control character in text", edited("\"T\"", "\"a\nb\"")},
        {"Latin-1 text", edited("\"T\"", "\"caf\xE9\"")},
        {"a surrogate in UTF-8", edited("\"T\"", "\"\xED\xA0\x80\"")},
        {"65 deep", with("\"deep\":" + repeated("[", 65) + repeated("]", 65))},
        {"a million deep", with("\"deep\":" + repeated("[", 1'000'000) + repeated("]", 1'000'000))},
        {"too many elements", with("\"attendees\":[\"\"" + repeated(",\"\"", 1'000'000) + "]")},
    };
    for (const auto& row : rows)
        EXPECT_THROW(decodeMeeting(row.document), JsonFailure) << row.name;
    EXPECT_THROW(decodeMeeting(small + std::string(JsonLimits::maximumBytes, ' ')), JsonFailure);
    const std::string golden = test::goldenDocument;
    for (std::size_t length = 0; length < golden.rfind('}'); ++length)
        EXPECT_THROW(decodeMeeting(golden.substr(0, length)), JsonFailure) << length;
}

TEST(MeetingJson, NeverWritesWhatItWouldNotRead) {
    for (const double time : {double{INFINITY}, double{-INFINITY}, double{NAN}, 1e300, 1.1e9}) {
        Meeting meeting = Meeting::make("");
        meeting.turns.push_back({Uuid::random(), 0, time, "s", "t", {}});
        EXPECT_THROW(encodeMeeting(meeting), JsonFailure) << time;
    }
    Meeting meeting = Meeting::make("");
    meeting.createdAt = {1e12};
    EXPECT_THROW(encodeMeeting(meeting), JsonFailure);
}
