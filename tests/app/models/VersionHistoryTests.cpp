#include "Varnet/models/VersionHistory.h"
#include "tests/support/StoreFixture.h"

#include <QAbstractItemModelTester>

namespace varnet::test {
namespace {

class Versions : public StoreFixture {
protected:
    /// The meeting, and one version of it that has one turn, other notes and a draft.
    Versions() {
        meeting.turns = {{Uuid::random(), 0, 1, "Speaker 1", "Hello", {}},
                         {Uuid::random(), 2, 3, "Speaker 2", "Hi", {}}};
        meeting.notes = "Ask Jonas.";
        repository.save(meeting);
        auto version = meeting;
        version.turns.pop_back();
        version.notes = "Ask Ines.";
        version.generatedNotes.emplace();
        repository.archiveBeforeTranscription(version);
        openStore();
        store().setSelectedID(meeting.id);
    }

    Meeting meeting = Meeting::make("Planning");
};

} // namespace

TEST_F(Versions, WhatIsChosenComesBackAndWhatWasThereIsAVersion) {
    std::ofstream(repository.directory(meeting.id) / "history" / (Uuid::random().text() + ".json")) << "{broken";
    VersionHistory history(store());
    history.open();
    ASSERT_TRUE(eventually([&] { return !history.loading(); }));
    const QAbstractItemModelTester tester(&history, QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(history.count(), 1);
    EXPECT_EQ(history.data(history.index(0), VersionHistory::DifferenceRole),
              "1 turn fewer · Notes differ · Draft differs");
    EXPECT_EQ(history.unreadableText(), "1 more version can't be read. Its file is left as it is.");
    EXPECT_EQ(history.notesText(), "Ask Ines.");
    EXPECT_FALSE(history.restoreEnabled());
    history.takePersonalNotes(true);
    ASSERT_TRUE(history.restoreEnabled());
    history.restore();
    EXPECT_EQ(onDisk(meeting.id).notes, "Ask Ines.");
    EXPECT_EQ(onDisk(meeting.id).turns.size(), 2) << "not chosen";
    ASSERT_TRUE(eventually([&] { return !history.loading(); }));
    EXPECT_EQ(history.error(), "");
    ASSERT_EQ(history.count(), 2);
    EXPECT_FALSE(history.personalNotes().enabled) << "the same as now";

    store().setTitle("Budget", meeting.id);
    history.takeTranscript(true);
    history.restore();
    EXPECT_NE(history.error(), "") << "the meeting has changed since";
}

} // namespace varnet::test
