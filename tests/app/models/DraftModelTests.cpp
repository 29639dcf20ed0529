#include "MeetingCore/records/Meeting.h"
#include "Varnet/models/DraftModel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

/// The rows as "heading|words|detail", a quote that leads to a turn with ">" and the start of that turn behind it.
std::vector<std::string> rows(const DraftModel& model, const Meeting& meeting) {
    std::vector<std::string> result;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto text = [&](DraftModel::Role role) { return model.index(row).data(role).toString().toStdString(); };
        auto line =
            text(DraftModel::HeadingRole) + "|" + text(DraftModel::WordsRole) + "|" + text(DraftModel::DetailRole);
        for (const auto& turn : meeting.turns)
            if (turn.id.text() == text(DraftModel::TurnRole))
                line += " > " + std::to_string(static_cast<int>(turn.start));
        result.push_back(line);
    }
    return result;
}

/// A decision, and an action whose two quotes come from turns at 9 and 75 s.
Meeting drafted() {
    auto meeting = Meeting::make("Planning");
    meeting.turns = {{Uuid::random(), 9, 20, "Speaker 1", "We ship on Friday.", {}},
                     {Uuid::random(), 75, 80, "Speaker 2", "I'll send the deck by noon.", {}}};
    auto& draft = meeting.generatedNotes.emplace();
    draft.sources = {{"S1", meeting.turns[0].id, 9, 20, "Speaker 1", "We ship on Friday."},
                     {"S2", meeting.turns[1].id, 75, 80, "Mara", "I'll send the deck by noon."}};
    draft.items = {
        {NoteItem::Kind::action, "Send the deck", "Mara", "by noon", {{"S2", "send the deck"}, {"S1", "ship"}}},
        {NoteItem::Kind::decision, "Ship on Friday", {}, {}, {{"S1", "We ship"}}}};
    return meeting;
}

} // namespace

TEST(Draft, QuotesLeadToTheirTurnsForAsLongAsTheTranscriptHasThem) {
    DraftModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    auto meeting = drafted();
    model.show(&meeting);
    const std::vector<std::string> whole{
        "Decisions|Ship on Friday|",
        "|“We ship”|Speaker 1 · 00:09 > 9",
        "Action items|Send the deck|Owner: Mara · Due: by noon",
        "|“send the deck”|Mara · 01:15 > 75",
        "|“ship”|Speaker 1 · 00:09 > 9",
    };
    EXPECT_EQ(rows(model, meeting), whole);
    EXPECT_EQ(model.index(3).data(DraftModel::SpokenRole), "Quote, Mara, 01:15: “send the deck”");

    const QSignalSpy reset(&model, &DraftModel::modelReset), updated(&model, &DraftModel::dataChanged);
    model.show(&meeting, true);
    EXPECT_EQ(updated.count(), 0);
    meeting.turns.pop_back();
    model.show(&meeting, true);
    EXPECT_EQ(rows(model, meeting)[3], "|“send the deck”|Mara · 01:15 · no longer in the transcript");
    EXPECT_EQ(updated.count(), 1);
    EXPECT_EQ(reset.count(), 0) << "a reader's place in the draft holds";

    meeting.generatedNotes->createdAt.secondsSinceReference += 1;
    meeting.generatedNotes->items.pop_back();
    model.show(&meeting);
    EXPECT_EQ(reset.count(), 1) << "another draft is read from its beginning";
}

} // namespace varnet::test
