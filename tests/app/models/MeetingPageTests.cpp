#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/models/MeetingPage.h"
#include "Varnet/models/RecordingClock.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace varnet::test {
namespace {

TranscriptTurn turn(double start, const std::string& speaker, const std::string& words) {
    return {Uuid::random(), start, start + 1, speaker, words, {}};
}

/// The rows as "speaker/hue/clock/words".
QStringList rows(const TranscriptModel& model) {
    QStringList result;
    for (int row = 0; row < model.count(); ++row) {
        QStringList cells;
        for (const auto role : {TranscriptModel::SpeakerRole, TranscriptModel::HueRole, TranscriptModel::ClockRole,
                                TranscriptModel::WordsRole})
            cells << model.data(model.index(row), role).toString();
        result << cells.join('/');
    }
    return result;
}

class Page : public StoreFixture {
protected:
    void hear(const std::string& json) {
        engine.say(json);
        settle();
    }
};

} // namespace

TEST(Transcript, ChangesTouchOnlyTheRowsThatDiffer) {
    TranscriptModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    SpeakerHues hues;
    auto meeting = Meeting::make("Planning");
    meeting.turns = {turn(2, "Speaker 1", "Hello"), turn(65, "Speaker 2", "Hi"), turn(70, "Unassigned", "Mm")};
    model.show(meeting, meeting.turns, hues);
    EXPECT_EQ(rows(model), (QStringList{"Speaker 1/0/00:02/Hello", "Speaker 2/1/01:05/Hi", "Unassigned/-1/01:10/Mm"}));

    QSignalSpy inserted(&model, &TranscriptModel::rowsInserted), changed(&model, &TranscriptModel::dataChanged),
        reset(&model, &TranscriptModel::modelReset);
    meeting.speakerNames = std::map<std::string, std::string>{{"Speaker 2", "Mara"}};
    meeting.turns.push_back(turn(75, "Speaker 1", "Good"));
    model.show(meeting, meeting.turns, hues);
    EXPECT_EQ(rows(model).at(1), "Mara/1/01:05/Hi");
    EXPECT_EQ(rows(model).at(3), "Speaker 1/0/01:15/Good");
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(inserted.count(), 1);

    model.show(meeting, std::span(meeting.turns).first(1), hues);
    EXPECT_EQ(model.count(), 1);
    EXPECT_EQ(reset.count(), 0);
}

TEST(Draft, GroupsItsPointsAndSaysWhatIsWrongWithThem) {
    DraftModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    GeneratedNotes draft;
    draft.items = {{NoteItem::Kind::action, "Send the deck", "Ana", "by Friday", {{"S2", "I will send it"}}},
                   {NoteItem::Kind::summary, "The launch moved", {}, {}, {{"S1", "it moved"}, {"S9", "gone"}}},
                   {NoteItem::Kind::action, "Call Ben", {}, {}, {}}};
    draft.sources = {{"S1", {}, 3, 4, "Mara", "it moved"}, {"S2", {}, 3725.9, 3730, "Ana", "I will send it"}};
    draft.droppedItems = 1;
    model.show(&draft, true);

    const auto cell = [&](int row, int role) { return model.data(model.index(row), role); };
    EXPECT_EQ(cell(0, DraftModel::HeadingRole), "Summary");
    EXPECT_EQ(cell(1, DraftModel::SpokenRole), "Send the deck, Owner: Ana · Due: by Friday");
    EXPECT_EQ(cell(2, DraftModel::HeadingRole), "");
    const auto quotes = cell(0, DraftModel::QuotesRole).toList();
    EXPECT_EQ(quotes.at(0).value<DraftQuote>().spoken, "Quote, Mara, 00:03: “it moved”");
    EXPECT_EQ(quotes.at(1).value<DraftQuote>().spoken, "Quote, Unknown, 00:00: “gone”");
    EXPECT_EQ(model.outdatedText(), "Draft is outdated: transcript or speaker names changed.");
    EXPECT_EQ(model.removedText(), "Removed 1 point that didn't match the transcript.");
}

TEST_F(Page, ShowsTheLiveMeetingAsItIsHeard) {
    const RecordingClock clock(store());
    MeetingPage page(store(), clock);
    const QAbstractItemModelTester tester(page.turns(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_FALSE(page.present());

    await(store().startRecording());
    EXPECT_TRUE(page.present() && page.live() && page.capturingCall() && !page.callMissing());
    EXPECT_EQ(page.clock(), "0:00");
    EXPECT_EQ(page.emptyText(), "Listening. Words appear here as people talk.");
    hear(R"({"type":"x.delta","delta":"hel"})");
    EXPECT_EQ(page.partialText(), "hel");
    hear(R"({"type":"x.delta","transcript":"hello","words":[{"word":"hello","start":1,"end":2,"speaker":1}]})");
    EXPECT_EQ(page.partialText(), "") << "the words stand in a turn of their own now";
    EXPECT_EQ(rows(*page.partialTurns()), QStringList{"Speaker 1/0/00:01/hello"});

    hear(R"({"type":"x.completed","words":[{"word":"Hello.","start":1,"end":2,"speaker":1}]})");
    hear(R"({"type":"x.completed","words":[{"word":"Hi!","start":3,"end":4,"speaker":2}]})");
    EXPECT_EQ(rows(*page.turns()), (QStringList{"Speaker 1/0/00:01/Hello.", "Speaker 2/1/00:03/Hi!"}));
    EXPECT_EQ(page.partialTurns()->count(), 0);
    store().levels().preview(0.1F, 0.0005F, true);
    EXPECT_NEAR(page.microphoneLevel(), 0.6667, 0.0001) << "-20 dB on a meter of 60";
    EXPECT_EQ(page.callLevel(), 0) << "below the foot of the meter";
    EXPECT_TRUE(page.callMissing());

    await(store().stopRecording());
    EXPECT_FALSE(page.live() || page.callMissing());
    EXPECT_EQ(page.turns()->count(), 2);
}

TEST_F(Page, AnotherMeetingStartsItsHuesAnew) {
    auto first = Meeting::make("First"), second = Meeting::make("Second");
    first.turns = {turn(0, "Speaker 1", "One"), turn(2, "Speaker 2", "Two")};
    second.turns = {turn(0, "Speaker 2", "Three")};
    second.createdAt.secondsSinceReference -= 60;
    repository.save(first);
    repository.save(second);
    openStore();
    const RecordingClock clock(store());
    MeetingPage page(store(), clock);
    EXPECT_EQ(rows(*page.turns()), (QStringList{"Speaker 1/0/00:00/One", "Speaker 2/1/00:02/Two"}));

    store().setSelectedID(second.id);
    EXPECT_EQ(page.title(), "Second");
    EXPECT_EQ(rows(*page.turns()), QStringList{"Speaker 2/0/00:00/Three"});

    store().nameSpeaker("Speaker 2", "Mara", second.id);
    EXPECT_EQ(rows(*page.turns()), QStringList{"Mara/0/00:00/Three"});
    store().setSelectedID({});
    EXPECT_FALSE(page.present());
    EXPECT_EQ(page.turns()->count(), 0);
}

} // namespace varnet::test
