#include "Varnet/models/VersionHistory.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

class Versions : public StoreFixture {
protected:
    /// The meeting, and one version of it that has one turn and other notes.
    Versions() {
        meeting.turns = {{Uuid::random(), 0, 1, "Speaker 1", "Hello", {}},
                         {Uuid::random(), 2, 3, "Speaker 2", "Hi", {}}};
        meeting.notes = "Ask Jonas.";
        repository.save(meeting);
        auto version = meeting;
        version.turns.pop_back();
        version.notes = "Ask Ines.";
        repository.archiveBeforeTranscription(version);
        openStore();
        store().setSelectedID(meeting.id);
    }

    Meeting meeting = Meeting::make("Planning");
};

} // namespace

TEST_F(Versions, WhatIsChosenComesBackAndWhatWasThereIsAVersion) {
    VersionHistory history(store());
    history.open();
    ASSERT_TRUE(eventually([&] { return !history.loading(); }));
    ASSERT_EQ(history.count(), 1);
    EXPECT_EQ(history.data(history.index(0), VersionHistory::DifferenceRole),
              "1 turn fewer than now\u00A0· Personal notes differ");
    EXPECT_FALSE(history.restoreEnabled());
    history.takePersonalNotes(true);
    history.restore();
    EXPECT_EQ(onDisk(meeting.id).notes, "Ask Ines.");
    EXPECT_EQ(onDisk(meeting.id).turns.size(), 2) << "not chosen";
    ASSERT_TRUE(eventually([&] { return !history.loading(); }));
    EXPECT_EQ(history.error(), "");
    EXPECT_EQ(history.count(), 2);

    store().setTitle("Budget", meeting.id);
    history.takeTranscript(true);
    history.restore();
    EXPECT_NE(history.error(), "") << "the meeting has changed since";
}

} // namespace varnet::test
