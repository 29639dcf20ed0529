#include "MeetingCore/base/Json.h"
#include "MeetingCore/notes/DraftBuilder.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

using namespace varnet;

namespace {

using Kind = NoteItem::Kind;
using Reasons = std::vector<std::string>;

/// S1 to S8: S4 and S5 are one turn, as are S6 and S7. S7 opens the second group of sources.
Meeting planning() {
    const std::string longTurn = std::string(1782, 'x') + " we cut the budget by half"; // by half: S5
    Meeting meeting;
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    for (const auto& [speaker, text] :
         {std::pair{"Speaker 1", std::string("We ship on Friday unless the audit fails.")},
          {"Ben", "I'll send\nthe deck"},
          {"Speaker 1", "to the board by Monday. Someone books the room."},
          {"Ben", longTurn},
          {"Ben", std::string(3600, 'y')},
          {"Ben", "So we ship on Friday."}})
        meeting.turns.push_back({.id = {{1}}, .speaker = speaker, .originalText = text, .editedText = {}});
    return meeting;
}

std::string unsupported(const std::string& assignment) {
    return "The model assigned an unsupported owner or date: " + assignment + ". The previous draft was kept.";
}

std::string unproven(const std::string& source) {
    return "Generated notes failed the source check: quote does not match " + source + ". The previous draft was kept.";
}

} // namespace

TEST(DraftBuilder, WhatStandsIsWhatTheTranscriptCarries) {
    const std::vector<NoteItem> actions{
        {Kind::action, "Send the deck", "Ben", "by Monday", {{"S2", "I'll send  the deck to the board by Monday"}}},
        {Kind::action, "Book the room", "not specified", "N/A", {{"S3", "S3: “Someone books the room.”"}}},
        {Kind::summary, "Of another pass, and untrue", {}, {}, {{"S1", "never said"}}},
        {Kind::action, "Book the room", "Ana", {}, {{"S3", "Someone books the room."}}},
    };
    const std::vector<NoteItem> context{
        {Kind::decision, "True", {}, {}, {{"S1", "unless the audit fails"}}},
        {Kind::decision, "Altered", {}, {}, {{"S1", "we ship on Friday"}}},
        {Kind::decision, "Misattributed", {}, {}, {{"S4", "We ship on Friday"}}},
        {Kind::decision, "Too far off", {}, {}, {{"S5", "We ship on Friday"}}},
        {Kind::decision, "Within a turn", {}, {}, {{"S5", "we cut the budget by half"}}},
        {Kind::summary, "Invented", {}, {}, {{"S1", "We ship on Friday"}, {"S2", "the deck is ready"}}},
        {Kind::summary, "True", "Ana", {}, {{"S1", "We ship on Friday"}}},
    };
    // The same point again, from the other group, and the same words as another kind of point.
    const std::vector<NoteItem> again{{Kind::decision, "True", {}, {}, {{"S8", "So we ship on Friday."}}},
                                      {Kind::summary, "True", {}, {}, {{"S8", "So we ship on Friday."}}}};

    DraftBuilder builder(planning());
    EXPECT_EQ(builder.take(NotesPass::actions, {actions}), Reasons{unsupported("Ana")});
    EXPECT_EQ(builder.take(NotesPass::context, {context}),
              (Reasons{unproven("S1"), unproven("S5"), unproven("S2"), unsupported("True")}));
    EXPECT_EQ(builder.take(NotesPass::actions, {}), Reasons{});
    EXPECT_EQ(builder.take(NotesPass::context, {again}), Reasons{});
    const GeneratedNotes draft = std::move(builder).finish("a model", Date{5});

    std::string items;
    for (const NoteItem& item : draft.items) {
        items += item.id();
        for (const NoteEvidence& evidence : item.evidence)
            items += " [" + evidence.source + ": " + evidence.quote + "]";
        items += '\n';
    }
    EXPECT_EQ(items, "action|Send the deck|Ben|by Monday [S2: I'll send the deck] [S3: to the board by Monday]\n"
                     "action|Book the room|| [S3: Someone books the room.]\n"
                     "decision|True|| [S1: unless the audit fails]\n"
                     "decision|Misattributed|| [S1: We ship on Friday]\n"
                     "decision|Within a turn|| [S4: we cut the budget] [S5: by half]\n"
                     "summary|True|| [S8: So we ship on Friday.]\n");
    EXPECT_EQ(draft.droppedItems, 5);
    EXPECT_EQ(draft.chunks, 2);
    EXPECT_EQ(draft.sources.size(), 8U);
    EXPECT_EQ(draft.transcriptHash, "ff62159a3ddb3b3c2371a889d48c8db9645e62169134baafbcbcf6aeac81003e");
}

TEST(DraftBuilder, ARunOfWhichNothingStandsFailsAsItsFirstPointAndOneWithoutPointsIsAnEmptyDraft) {
    DraftBuilder builder(planning());
    builder.take(NotesPass::actions, {{{Kind::action, "Pay", {}, "tomorrow", {{"S1", "We ship"}}}}});
    builder.take(NotesPass::context, {{{Kind::summary, "Paid", {}, {}, {{"S1", "paid"}}}}});
    const auto failure = test::thrown<NotesFailure>([&] { std::move(builder).finish("a model", Date{}); });
    EXPECT_EQ(failure.value().what(), unsupported("tomorrow"));
    EXPECT_EQ(failure->kind(), NotesFailure::Kind::unsupportedAssignment);
    EXPECT_THROW(DraftBuilder{Meeting{}}, NotesFailure);

    DraftBuilder silent(planning()); // whose one point is of the wrong kind, and so not looked at
    silent.take(NotesPass::actions, {{{Kind::summary, "Paid", {}, {}, {{"S1", "paid"}}}}});
    EXPECT_EQ(std::move(silent).finish("a model", Date{}).items, std::vector<NoteItem>{});
}

TEST(NoteResponse, TheAnswerHasExactlyItsShape) {
    EXPECT_EQ(NoteResponse::decode(R"( {"items":[{"kind":"action","text":"Pay","due":null,"evidence":)"
                                   R"([{"source":"S1","quote":"pay"}]}]} )"),
              (NoteResponse{{{Kind::action, "Pay", {}, {}, {{"S1", "pay"}}}}}));
    const std::string action = R"({"items":[{"kind":"action",)", text = R"({"items":[{"kind":"action","text":"",)";
    for (const std::string& wrong :
         {std::string(R"({"items":[]} and more)"),
          std::string(R"({"items":[{"kind":"risk","text":"","evidence":[]}]})"), action + R"("evidence":[]}]})",
          action + R"("text":""}]})", text + R"("owner":["Ana"],"evidence":[]}]})",
          text + R"("evidence":[{"source":"S1"}]}]})", text + R"("evid)"})
        EXPECT_THROW(NoteResponse::decode(wrong), JsonFailure) << wrong;
}
