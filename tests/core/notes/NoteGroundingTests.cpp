#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/MeetingJson.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>

#include <memory>
#include <random>

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

/// Whether ICU finds the pattern.
bool matches(const icu::RegexPattern& pattern, const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto input = icu::UnicodeString::fromUTF8(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(input, status));
    return matcher->find(status) && U_SUCCESS(status);
}

std::unique_ptr<icu::RegexPattern> compiled(const std::string& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::RegexPattern>(
        icu::RegexPattern::compile(icu::UnicodeString::fromUTF8(pattern), UREGEX_CASE_INSENSITIVE, status));
}

/// One to nine of the pieces in a row, the same in every run.
std::string drawn(std::span<const std::string_view> pieces) {
    static std::mt19937 random(3);
    std::string text;
    for (auto count = 1 + random() % 9; count > 0; --count)
        text += pieces[random() % pieces.size()];
    return text;
}

/// The sentence that the check gives, or nothing.
std::string verdict(const NoteItem& item, const std::vector<NoteSource>& sources) {
    try {
        NoteGrounding::validate({&item, 1}, sources);
        return {};
    } catch (const NotesFailure& failure) {
        return failure.what();
    }
}

} // namespace

TEST(NoteGrounding, SourcesAreTurnsInPiecesOf1800Bytes) {
    Meeting meeting;
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    meeting.turns = {turn(1, "Speaker 1", std::string(4000, 'x')), turn(5, "Speaker 2", " \u00A0\n"),
                     turn(7, "Speaker 2", "as heard")};
    meeting.turns[2].editedText = " as corrected ";
    const auto sources = NoteGrounding::sources(meeting);
    ASSERT_EQ(sources.size(), 4U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(sources[i],
                  (NoteSource{"S" + std::to_string(i + 1), {{7}}, 1, 2, "Ana", std::string(i < 2 ? 1800 : 400, 'x')}));
    EXPECT_EQ(sources[3], (NoteSource{"S4", {{7}}, 7, 8, "Speaker 2", " as corrected "}));
}

TEST(NoteGrounding, GroupsKeepTheLimitAndTheOrder) {
    // {"end":0,"id":"S1","speaker":"ana","start":0,"text":"aa","turnID":"00000000-0000-0000-0000-000000000000"}: 105
    const auto sources = spoken({"aa", "bb", "c", "d", std::string(300, 'e'), "f"});
    ASSERT_EQ(encodeSources({sources.data(), 2}).size(), 213U);
    const auto sizes = [&](std::size_t limit) {
        std::string text;
        for (const auto& group : NoteGrounding::chunks(sources, limit))
            text += group.front().id + "x" + std::to_string(group.size()) + " ";
        return text;
    };
    EXPECT_EQ(sizes(213), "S1x2 S3x2 S5x1 S6x1 ");
    EXPECT_EQ(sizes(212), "S1x1 S2x2 S4x1 S5x1 S6x1 ");
    EXPECT_EQ(sizes(0), "S1x1 S2x1 S3x1 S4x1 S5x1 S6x1 ");
    EXPECT_EQ(sizes(6000), "S1x6 ");
    EXPECT_THROW(NoteGrounding::chunks({}, 6000), NotesFailure);
}

TEST(NoteGrounding, PhrasesStandWholeInAnyCase) {
    const struct {
        std::string text, phrase;
        bool expected;
    } rows[] = {
        {"Anatoly", "Ana", false},
        {"Anatoly, then ANA", "Ana", true}, // the first match has the wrong neighbour
        {"by\u00A0 Friday.", "by friday", true},
        {"5Ana", "Ana", false},
        {"in der STRASSE", "Straße", true},
        {"Maß", "mas", false}, // half a character
        {"a.b (c)", "A.B (C)", true},
        {"日本ana", "ana", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(NoteGrounding::containsPhrase(row.text, row.phrase), row.expected) << row.text << " / " << row.phrase;
}

TEST(NoteGrounding, PhrasesAreFoundWhereICUFindsThem) {
    static constexpr std::string_view pieces[] = {"ana", "ANA", "n", "K", "\u212A", "s", "\u017F", "ß",      "ﬁ",  "fi",
                                                  "é",   " ",   "_", "5", ".",      "’", "\u0301", "\u0345", "日", "İ"};
    for (const std::string phrase : {"ana", "k", "s", "ss", "fi", "na n", "_", "5.", "é", "ana’", "i"}) {
        const auto pattern = compiled("(?<![\\p{L}\\p{N}])\\Q" + phrase + "\\E(?![\\p{L}\\p{N}])");
        for (int i = 0; i < 1'000; ++i) {
            const std::string text = drawn(pieces);
            ASSERT_EQ(NoteGrounding::containsPhrase(text, phrase), matches(*pattern, NoteGrounding::normalized(text)))
                << text << " / " << phrase;
        }
    }
}

TEST(NoteGrounding, CommitmentsAreFoundWhereICUFindsThem) {
    static constexpr std::string_view pieces[] = {"I",
                                                  "i",
                                                  "I",
                                                  "ı",
                                                  "İ",
                                                  " ",
                                                  " will",
                                                  " WILL",
                                                  "'ll",
                                                  "’LL",
                                                  " am going to",
                                                  "'m going to",
                                                  "’m going to",
                                                  " commit to",
                                                  " take responsibility",
                                                  " ta\u212Ae re\u017Fponsibility",
                                                  "x",
                                                  "5",
                                                  "_",
                                                  ".",
                                                  "é",
                                                  "\u0301",
                                                  "\u200D"};
    const auto pattern = compiled(R"((?<![\p{L}\p{N}])I(?: will\b|['’]ll\b| am going to\b|['’]m going to\b)"
                                  R"(| commit to\b| take responsibility\b))");
    int found = 0;
    for (int i = 0; i < 20'000; ++i) {
        const std::string text = drawn(pieces);
        const bool expected = matches(*pattern, NoteGrounding::normalized(text));
        found += expected;
        ASSERT_EQ(NoteGrounding::isCommitment(text), expected) << text;
    }
    EXPECT_GT(found, 1'000);
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
        {"S4", "one", {{"S2", "one"}}},
        {"S5", "S6: say the word", {{"S7", "say the word"}}},
        {"S4", "twice", {{"S4", "twice"}}}, // four away
        {"S9", "say the", {{"S8", "say the"}}},
        {"S5", "The first", {{"S5", "The first"}}},
        {"S5", "S4: \"we ship\" on", {{"S5", "we ship\" on"}}}, // marks inside stay
        {"S1", "first half of it", {{"S3", "first half"}, {"S4", "of it"}}},
        {"S6", half, {{"S6", half}}}, // five sources
        {"S77", "one", {{"S77", "one"}}},
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
        {action("by Friday.", {}, "Friday"), ""},
        {action("by Friday", {}, "next Friday"), assigned("next Friday")},
        {action("by Friday", {}, ""), assigned("")},
        {action("by Friday", " ", {}), assigned(" ")},
        {action("by friday", {}, {}), evidence("quote does not match S1")},
        {action(" ", {}, {}), evidence("quote does not match S1")},
        {action("send it", {}, {}), ""},
        {{Kind::summary, "Sent", {}, "Friday", {{"S1", "by Friday"}}}, assigned("Sent")},
        {{Kind::decision, "Sent", {}, {}, {{"S1", "by"}, {"S9", "by"}}}, evidence("quote does not match S9")},
        {{Kind::decision, " \n", {}, {}, {{"S1", "by"}}}, evidence("missing claim or citation")},
        {{Kind::decision, "Sent", {}, {}, {}}, evidence("missing claim or citation")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(verdict(row.item, sources), row.expected);
}

TEST(NoteGrounding, PlaceholdersAreNoAssignment) {
    std::vector<NoteItem> items(2);
    items[0].owner = "N/A";
    items[0].due = " Not\n Specified ";
    items[1].owner = "Nonesuch";
    items = NoteGrounding::normalizeMissingAssignments(items);
    EXPECT_EQ(items[0], NoteItem{});
    EXPECT_EQ(items[1].owner, "Nonesuch");
}
