#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Text.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Text, CutsBetweenUserPerceivedCharacters) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"; // 18 bytes
    const std::string flag = "\U0001F1E9\U0001F1EA";                         // 8 bytes
    const struct {
        std::string text;
        std::size_t limit, expected;
    } rows[] = {
        {"abc", 3, 3},
        {"ab\r\nc", 3, 2},
        {"abu\u0308c", 3, 2}, // a letter and its mark
        {"abu\u0308c", 5, 5},
        {"a" + family + "b", 18, 1},
        {"a" + family + "b", 19, 19},
        {family + "b", 5, 18}, // too long by itself
        {flag + flag + flag, 20, 16},
        {"u\u0308\u0308\u0308", 1, 7},
        {"ab\xE2\x82", 3, 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(characterCut(row.text, row.limit), row.expected) << testing::PrintToString(row.text) << row.limit;
}

TEST(Date, TextIsTheSecondThatHasBegunInUTC) {
    const struct {
        double unixSeconds;
        std::string expected;
    } rows[] = {
        {1772721000.999, "2026-03-05T14:30:00Z"}, {-0.25, "1969-12-31T23:59:59Z"},    {-1e300, "0001-01-01T00:00:00Z"},
        {253402300799.5, "9999-12-31T23:59:59Z"}, {INFINITY, "9999-12-31T23:59:59Z"}, {NAN, "0001-01-01T00:00:00Z"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Date::fromUnix(row.unixSeconds).iso8601(), row.expected);
}
