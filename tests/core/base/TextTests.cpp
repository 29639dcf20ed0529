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
        {"abu\u0308c", 3, 2},                                // a letter and its mark
        {"a" + family + "b", 18, 1},  {family + "b", 5, 18}, // too long by itself
        {flag + flag + flag, 20, 16}, {"u\u0308\u0308\u0308", 1, 7}, {"ab\xE2\x82", 3, 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(characterCut(row.text, row.limit), row.expected) << testing::PrintToString(row.text) << row.limit;
}
