#include "Varnet/models/VersionHistory.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>

namespace varnet::test {
namespace {

Meeting planning() {
    auto meeting = Meeting::make("Planning");
    meeting.turns = {{Uuid::random(), 0, 1, "Speaker 1", "Hello", {}}, {Uuid::random(), 2, 3, "Speaker 2", "Hi", {}}};
    meeting.notes = "Ask Jonas.";
    return meeting;
}

} // namespace

TEST(VersionDifference, SaysInWordsWhatTheVersionHasOtherwise) {
    const auto now = planning();
    struct Row {
        std::function<void(Meeting&)> change;
        QString line;
        bool otherAudio = false;
    };
    const std::vector<Row> rows{
        {[](Meeting& version) { version.turns.pop_back(); }, "1 turn fewer"},
        {[](Meeting& version) { version.turns.resize(14); }, "12 turns more"},
        {[](Meeting& version) { version.speakerNames.emplace()["Speaker 1"] = "Ines"; }, "Speaker names differ"},
        {[](Meeting& version) { version.speakerNames.emplace(); }, "Same as now"},
        {[](Meeting& version) { version.notes = "Else", version.generatedNotes.emplace(); },
         "Notes differ · Draft differs"},
        {[](Meeting& version) { version.audioFilename = "other.wav", version.turns.clear(), version.notes.clear(); },
         "Different audio: the transcript can't be restored · No notes", true},
    };
    for (const auto& [change, line, otherAudio] : rows) {
        auto version = now;
        change(version);
        const auto difference = VersionDifference::of(now, version);
        EXPECT_EQ(difference.line(), line);
        EXPECT_EQ(difference.otherAudio, otherAudio) << line.toStdString();
    }
}

namespace {

class Versions : public StoreFixture {
protected:
    /// The meeting, and one version of it that has one turn, other notes and a draft.
    Versions() {
        repository.save(meeting);
        auto version = meeting;
        version.turns.pop_back();
        version.notes = "Ask Ines.";
        version.generatedNotes.emplace();
        repository.archiveBeforeTranscription(version);
        openStore();
        store().setSelectedID(meeting.id);
    }

    void opened() {
        history.emplace(store());
        history->open();
        ASSERT_TRUE(eventually([this] { return !history->loading(); }));
    }

    Meeting meeting = planning();
    std::optional<VersionHistory> history;
};

} // namespace

TEST_F(Versions, WhatIsChosenComesBackAndWhatWasThereIsAVersion) {
    std::ofstream(repository.directory(meeting.id) / "history" / (Uuid::random().text() + ".json")) << "{broken";
    ASSERT_NO_FATAL_FAILURE(opened());
    const QAbstractItemModelTester tester(&*history, QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(history->count(), 1);
    EXPECT_EQ(history->data(history->index(0), VersionHistory::DifferenceRole),
              "1 turn fewer · Notes differ · Draft differs");
    EXPECT_EQ(history->unreadableText(), "1 more version can't be read. Its file is left as it is.");
    EXPECT_EQ(history->notesText(), "Ask Ines.");
    EXPECT_FALSE(history->restoreEnabled());
    history->takePersonalNotes(true);
    ASSERT_TRUE(history->restoreEnabled());
    history->restore();
    EXPECT_EQ(onDisk(meeting.id).notes, "Ask Ines.");
    EXPECT_EQ(onDisk(meeting.id).turns.size(), 2) << "not chosen";
    ASSERT_TRUE(eventually([this] { return !history->loading(); }));
    EXPECT_EQ(history->error(), "");
    ASSERT_EQ(history->count(), 2);
    EXPECT_FALSE(history->personalNotes().enabled) << "the same as now";

    store().setTitle("Budget", meeting.id);
    history->takeTranscript(true);
    history->restore();
    EXPECT_NE(history->error(), "") << "the meeting has changed since";
}

TEST_F(Versions, ATranscriptOfOtherAudioCannotBeChosen) {
    auto changed = onDisk(meeting.id);
    changed.audioFilename = "meeting.wav";
    repository.save(changed);
    openStore();
    store().setSelectedID(meeting.id);
    ASSERT_NO_FATAL_FAILURE(opened());
    EXPECT_FALSE(history->transcript().enabled);
    history->takeTranscript(true);
    EXPECT_FALSE(history->restoreEnabled());
    EXPECT_TRUE(history->generatedNotes().enabled);
}

} // namespace varnet::test
