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
    QSignalSpy inserted(&model, &TranscriptModel::rowsInserted), changed(&model, &TranscriptModel::dataChanged),
        reset(&model, &TranscriptModel::modelReset);
    meeting.speakerNames = std::map<std::string, std::string>{{"Speaker 2", "Mara"}};
    meeting.turns.push_back(turn(75, "Speaker 1", "Good"));
    model.show(meeting, meeting.turns, hues);
    EXPECT_EQ(rows(model).at(1), "Mara/1/01:05/Hi");
    EXPECT_EQ(rows(model).at(3), "Speaker 1/0/01:15/Good");
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toModelIndex().row(), 1);
    EXPECT_EQ(inserted.count(), 1);

    model.show(meeting, std::span(meeting.turns).first(1), hues);
    EXPECT_EQ(model.count(), 1);
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(Page, NotesThatAreBeingTypedAreNotReplaced) {
    const RecordingClock clock(store());
    const Uuid id = store().create("Planning").id;
    MeetingPage page(store(), clock);
    const QSignalSpy replaced(&page, &MeetingPage::notesReplaced);
    page.typeNotes("mine");
    store().setNotes("restored", id);
    EXPECT_EQ(replaced.count(), 0) << "what is being typed stays";
    EXPECT_TRUE(eventually([&] { return store().meeting(id)->notes == "mine"; }));
    EXPECT_EQ(replaced.count(), 0) << "their own echo is no news";
    store().setNotes("restored again", id);
    EXPECT_EQ(replaced.count(), 1);
}

TEST_F(Page, ShowsTheLiveMeetingAsItIsHeard) {
    const RecordingClock clock(store());
    MeetingPage page(store(), clock);
    const QAbstractItemModelTester tester(page.turns(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    await(store().startRecording());
    EXPECT_TRUE(page.live() && page.capturingCall() && !page.callMissing());
    hear(R"({"type":"x.delta","transcript":"hello","words":[{"word":"hello","start":1,"end":2,"speaker":1}]})");
    EXPECT_EQ(page.partialText(), "") << "the words stand in a turn of their own";
    EXPECT_EQ(rows(*page.partialTurns()), QStringList{"Speaker 1/0/00:01/hello"});
    hear(R"({"type":"x.completed","words":[{"word":"Hello.","start":1,"end":2,"speaker":1}]})");
    hear(R"({"type":"x.completed","words":[{"word":"Hi!","start":3,"end":4,"speaker":2}]})");
    EXPECT_EQ(rows(*page.turns()), (QStringList{"Speaker 1/0/00:01/Hello.", "Speaker 2/1/00:03/Hi!"}));
    EXPECT_EQ(page.partialTurns()->count(), 0);
    await(store().stopRecording());
    EXPECT_FALSE(page.live() || page.callMissing());
    store().levels().preview(0.1F, 0.0005F, true);
    EXPECT_TRUE(page.live() && page.callMissing()) << "for a picture";
}

} // namespace varnet::test
