#include "MeetingCore/base/Date.h"
#include "MeetingCore/base/Text.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Text, TrimsUnicodeWhiteSpaceAtBothEndsOnly) {
    const struct {
        std::string text, expected;
    } rows[] = {
        {"", ""},
        {" \t\r\n\v\f", ""},
        {"  a b\n", "a b"},
        {"\u00A0\u2003\u3000Weekly\u2028sync\u2029\u0085\u202F", "Weekly\u2028sync"},
        {"\u200Bzero width stays\uFEFF", "\u200Bzero width stays\uFEFF"},
        {" \xFF ", "\xFF"},
        {"\x85", "\x85"},
        {"é ", "é"},
        {"\u3000", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(trimmed(row.text), row.expected) << testing::PrintToString(row.text);
}

TEST(Text, BadBytesBecomeReplacementCharacters) {
    const struct {
        std::string text, expected;
    } rows[] = {
        {"Grüße 日本 \U0001F600", "Grüße 日本 \U0001F600"},
        {"caf\xE9", "caf\uFFFD"},
        {"\xC0\xAF", "\uFFFD\uFFFD"},                     // overlong slash
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},           // a surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"}, // beyond U+10FFFF
        {"\xF0\x9F\x98", "\uFFFD"},                       // cut off: one character
        {"a\x80z", "a\uFFFDz"},
        {std::string("a\0b", 3), std::string("a\0b", 3)},
    };
    for (const auto& row : rows)
        EXPECT_EQ(validUtf8(row.text), row.expected) << testing::PrintToString(row.text);
}

TEST(Text, LowerCaseIsUnicodesFullMapping) {
    const struct {
        std::string text, expected;
    } rows[] = {
        {"", ""},
        {"Weekly SYNC @[`{ 2026", "weekly sync @[`{ 2026"},
        {"GRÜSSE, ÉCOLE ẞ", "grüsse, école ß"},
        {"ПРИВЕТ İI \u212A\u2126", "привет i\u0307i k\u03C9"},
        {"ΟΔΟΣ ΟΔΟΣ. Σ ΑΣΑ", "οδος οδος. σ ασα"},
        {"AΣ\u0301B AΣ\u0301", "aσ\u0301b aς\u0301"}, // a mark does not end a word
        {"\U0001F600\U00010400 \u01C5", "\U0001F600\U00010428 \u01C6"},
        {"\xFF"
         "A\xC3",
         "\xFF"
         "a\xC3"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(lowerCased(row.text), row.expected) << testing::PrintToString(row.text);
}

TEST(Text, CutsBetweenUserPerceivedCharacters) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467"; // 18 bytes
    const std::string flag = "\U0001F1E9\U0001F1EA";                         // 8 bytes
    const struct {
        std::string text;
        std::size_t limit, expected;
    } rows[] = {
        {"abc", 3, 3},
        {"abcd", 3, 3},
        {"ab\r\nc", 3, 2},
        {"abü", 3, 2},
        {"abu\u0308c", 3, 2}, // a letter and its mark
        {"abu\u0308c", 5, 5},
        {"a" + family + "b", 18, 1},
        {"a" + family + "b", 19, 19},
        {family + "b", 5, 18}, // too long by itself
        {flag + flag + flag, 20, 16},
        {"u\u0308\u0308\u0308", 1, 7},
        {"ab\xE2\x82", 3, 2},
        {"ab\x80\x80", 3, 3},
    };
    for (const auto& row : rows)
        EXPECT_EQ(characterCut(row.text, row.limit), row.expected) << testing::PrintToString(row.text) << row.limit;
}

TEST(Date, TextIsTheSecondThatHasBegunInUTC) {
    const struct {
        double unixSeconds;
        std::string expected;
    } rows[] = {
        {1772721000, "2026-03-05T14:30:00Z"},
        {1772721000.999, "2026-03-05T14:30:00Z"},
        {-0.25, "1969-12-31T23:59:59Z"},
        {951782400, "2000-02-29T00:00:00Z"},
        {-62135596800, "0001-01-01T00:00:00Z"},
        {-1e300, "0001-01-01T00:00:00Z"},
        {253402300799.5, "9999-12-31T23:59:59Z"},
        {INFINITY, "9999-12-31T23:59:59Z"},
        {NAN, "0001-01-01T00:00:00Z"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Date::fromUnix(row.unixSeconds).iso8601(), row.expected);
}
