#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/MeetingJson.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>

#include <functional>
#include <random>
#include <sstream>

using namespace varnet;

namespace {

using Kind = NoteItem::Kind;
using Evidence = std::vector<NoteEvidence>;

/// S1, S2, ... with these texts, all spoken by "ana".
std::vector<NoteSource> spoken(const std::vector<std::string>& texts) {
    std::vector<NoteSource> sources;
    for (const std::string& text : texts)
        sources.push_back(
            {.id = "S" + std::to_string(sources.size() + 1), .turnID = {}, .speaker = "ana", .text = text});
    return sources;
}

TranscriptTurn turn(double start, const std::string& speaker, const std::string& text) {
    return {.id = {{7}}, .start = start, .end = start + 1, .speaker = speaker, .originalText = text, .editedText = {}};
}

/// The rule must find what ICU finds by the pattern, in texts of one to nine of the pieces, which "|" separates.
void expectLikeICU(const std::function<bool(const std::string&)>& rule, const std::string& pattern,
                   const std::string& pieces, int count) {
    static std::mt19937 random(3); // the same in every run
    std::vector<std::string> parts;
    std::istringstream all(pieces);
    for (std::string part; std::getline(all, part, '|');)
        parts.push_back(part);
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(icu::UnicodeString::fromUTF8(pattern), UREGEX_CASE_INSENSITIVE, status);
    int found = 0;
    for (int i = 0; i < count; ++i) {
        std::string text;
        for (auto left = 1 + random() % 9; left > 0; --left)
            text += parts[random() % parts.size()];
        const auto input = icu::UnicodeString::fromUTF8(NoteGrounding::normalized(text));
        const bool expected = matcher.reset(input).find(status);
        ASSERT_TRUE(U_SUCCESS(status));
        ASSERT_EQ(rule(text), expected) << pattern << " in " << text;
        found += expected;
    }
    EXPECT_GT(found, count / 100) << pattern;
}

} // namespace

TEST(NoteGrounding, SourcesAreTurnsInPiecesOf1800BytesCutBetweenCharacters) {
    const std::string plain(1799, 'x'), flag = "\U0001F1E9\U0001F1EA"; // 8 bytes
    std::string marked = "u", flags;
    for (int i = 0; i < 1000; ++i) // one character
        marked += "\u0308";
    for (int i = 0; i < 225; ++i)
        flags += flag;
    Meeting meeting;
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    meeting.turns = {turn(1, "Speaker 1", plain + marked + flags + "y" + flags), turn(5, "Speaker 2", " \u00A0\n"),
                     turn(7, "Speaker 2", "as heard")};
    meeting.turns[2].editedText = " as corrected ";
    EXPECT_EQ(NoteGrounding::sources(meeting),
              (std::vector<NoteSource>{{"S1", {{7}}, 1, 2, "Ana", plain},
                                       {"S2", {{7}}, 1, 2, "Ana", marked},
                                       {"S3", {{7}}, 1, 2, "Ana", flags},
                                       {"S4", {{7}}, 1, 2, "Ana", "y" + flags.substr(8)},
                                       {"S5", {{7}}, 1, 2, "Ana", flag},
                                       {"S6", {{7}}, 7, 8, "Speaker 2", " as corrected "}}));
}

TEST(NoteGrounding, GroupsKeepTheLimitAndTheOrder) {
    // {"end":0,"id":"S1","speaker":"ana","start":0,"text":"aa","turnID":"00000000-0000-0000-0000-000000000000"}: 105
    const auto sources = spoken({"aa", "bb", "c", "d", std::string(300, 'e'), "f"});
    ASSERT_EQ(encodeSources({sources.data(), 2}).size(), 213U);
    const auto sizes = [&](std::size_t limit) {
        std::string text;
        for (const auto group : NoteGrounding::encoded(sources, limit).chunks)
            text += group.front().id + "x" + std::to_string(group.size()) + " ";
        return text;
    };
    EXPECT_EQ(sizes(213), "S1x2 S3x2 S5x1 S6x1 ");
    EXPECT_EQ(sizes(212), "S1x1 S2x2 S4x1 S5x1 S6x1 ");
}

TEST(NoteGrounding, PhrasesAreFoundWhereICUFindsThem) {
    for (const std::string phrase : {"ana", "k", "s", "ss", "fi", "n n", "_", "5.", "é", "ana’", "i", "straße"})
        expectLikeICU([&](const std::string& text) { return NoteGrounding::containsPhrase(text, phrase); },
                      "(?<![\\p{L}\\p{N}])\\Q" + phrase + "\\E(?![\\p{L}\\p{N}])",
                      "ana|ANA|n|K|\u212A|s|\u017F|ß|ﬁ|fi|é| |\u00A0|_|5|.|’|\u0301|\u0345|日|İ|STRASSE|" + phrase,
                      1'000);
}

TEST(NoteGrounding, CommitmentsAreFoundWhereICUFindsThem) {
    expectLikeICU(NoteGrounding::isCommitment,
                  R"((?<![\p{L}\p{N}])I(?: will\b|['’]ll\b| am going to\b|['’]m going to\b)"
                  R"(| commit to\b| take responsibility\b))",
                  "I|i|I|ı|İ| | will| WILL|'ll|’LL| am going to|'m going to|’m going to| commit to"
                  "| take responsibility| ta\u212Ae re\u017Fponsibility|x|5|_|.|é|\u0301|\u200D",
                  20'000);
}

TEST(NoteGrounding, AnyWhiteSpaceCountsAsOneBlank) {
    for (UChar32 character = 1; character < 0x11000; ++character) {
        if (U_IS_SURROGATE(character))
            continue;
        std::string c;
        icu::UnicodeString(character).toUTF8String(c);
        const std::string text = c + "a" + c + "b c" + c + c + "d" + c;
        ASSERT_EQ(NoteGrounding::normalized(text), u_isUWhiteSpace(character) ? "a b c d" : text) << character;
    }
}

TEST(NoteGrounding, QuotesMoveToTheirWords) {
    const auto sources = spoken({"zero", "one", "the first half ", "\n of it  and more", "S4: \"we ship\"\non Friday",
                                 "six", "say the word", "say the word twice", "of nine"});
    const std::string half = "half of it and more S4: \"we ship\" on Friday six say";
    const struct {
        std::string source, quote;
        Evidence expected;
    } rows[] = {
        {"S3", "S3: \"the first half\"", {{"S3", "the first half"}}},
        {"S3", " S12 :“the   first”  ", {{"S3", "the first"}}},
        {"S5", "S6: say the word", {{"S7", "say the word"}}},
        {"S4", "twice", {{"S4", "twice"}}}, // four away
        {"S9", "say the", {{"S8", "say the"}}},
        {"S5", "The first", {{"S5", "The first"}}},
        {"S5", "S4: \"we ship\" on", {{"S5", "we ship\" on"}}}, // marks inside stay
        {"S1", "first half of it", {{"S3", "first half"}, {"S4", "of it"}}},
        {"S6", half, {{"S6", half}}}, // five sources
        {"S2", "S2: \"\"", {{"S2", "S2: \"\""}}},
    };
    for (const auto& row : rows) {
        NoteItem item;
        item.evidence = {{row.source, row.quote}};
        EXPECT_EQ(NoteGrounding::repairEvidence({item}, sources, 3, 4)[0].evidence, row.expected) << row.quote;
    }
}

TEST(NoteGrounding, OnlyWhatTheQuotesCarryStands) {
    const auto sources = spoken({"Someone should send it by Friday. I'll send it. Rip will take it. i’m going to try"});
    const auto action = [](const std::string& quote, std::optional<std::string> owner,
                           std::optional<std::string> due) -> NoteItem {
        return {Kind::action, "Send it", std::move(owner), std::move(due), {{"S1", quote}}};
    };
    const auto evidence = [](const std::string& why) {
        return "Generated notes failed the source check: " + why + ". The previous draft was kept.";
    };
    const auto assigned = [](const std::string& what) {
        return "The model assigned an unsupported owner or date: " + what + ". The previous draft was kept.";
    };
    const struct {
        NoteItem item;
        std::string expected;
    } rows[] = {
        {action("I'll  send it", "Ana", {}), ""},
        {action("i’m going to", "ANA", {}), ""},
        {action("Someone should send it", "ana", {}), assigned("ana")},
        {action("Rip will take it", "ana", {}), assigned("ana")},
        {action("Rip will take it", "RIP", {}), ""},
        {action("by\u00A0 Friday.", {}, "by  friday"), ""},
        {action("by Friday", {}, "next Friday"), assigned("next Friday")},
        {action("by Friday", {}, ""), assigned("")},
        {action("by Friday", " ", {}), assigned(" ")},
        {action("by friday", {}, {}), evidence("quote does not match S1")},
        {action(" ", {}, {}), evidence("quote does not match S1")},
        {{Kind::summary, "Sent", {}, "Friday", {{"S1", "by Friday"}}}, assigned("Sent")},
        {{Kind::decision, "Sent", {}, {}, {{"S1", "by"}, {"S9", "by"}}}, evidence("quote does not match S9")},
        {{Kind::decision, " \n", {}, {}, {{"S1", "by"}}}, evidence("missing claim or citation")},
        {{Kind::decision, "Sent", {}, {}, {}}, evidence("missing claim or citation")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(test::sentenceThrown([&] { NoteGrounding::validate({&row.item, 1}, sources); }), row.expected);
}
