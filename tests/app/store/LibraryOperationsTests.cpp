#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/Thrown.h"

#include <QUndoStack>

namespace varnet::test {
namespace {

namespace fs = std::filesystem;

class LibraryOperations : public StoreFixture {
protected:
    LibraryOperations() {
        for (const auto* title : {"C", "B", "A"})
            ids[title] = store().create(title).id;
    }

    /// The titles of the library in its order, and behind "|" those of the deleted meetings by name.
    std::string titles() {
        std::string library, deleted;
        for (const auto& meeting : store().meetings())
            library += meeting.title;
        for (const auto& entry : store().deletedMeetings())
            deleted += entry.meeting.title;
        std::ranges::sort(deleted);
        return library + "|" + deleted;
    }
    std::set<Uuid> of(const std::string& titles) {
        std::set<Uuid> chosen;
        for (const char title : titles)
            chosen.insert(ids.at(std::string(1, title)));
        return chosen;
    }
    std::string selected() { return store().selected() ? store().selected()->title : ""; }

    /// Something stands where the record would be written.
    void breakSaving(const std::string& title) {
        const auto file = repository.directory(ids.at(title)) / "meeting.json";
        fs::remove(file);
        fs::create_directories(file / "x");
    }

    static CalendarEvent event(std::string record, bool cancelled = false) {
        CalendarEvent event;
        event.source.provider = "eventkit";
        event.source.recordID = std::move(record);
        event.source.cancelled = cancelled;
        event.title = "Review";
        event.attendees = {"Ada"};
        return event;
    }

    std::map<std::string, Uuid> ids;
    QUndoStack stack;
};

TEST_F(LibraryOperations, ADeleteIsUndoneAndDoneAgainWhole) {
    store().deleteMeetings(of("ABC"), &stack);
    EXPECT_EQ(titles() + "," + selected(), "|ABC,");
    EXPECT_EQ(stack.undoText(), "Delete 3 Meetings");
    stack.undo();
    EXPECT_EQ(titles() + "," + selected(), "ABC|,A");
    EXPECT_EQ(store().pendingUndo(), std::nullopt);
    stack.redo();
    EXPECT_EQ(titles(), "|ABC");
    openStore();
    EXPECT_EQ(titles(), "|ABC") << "the files moved too";
}

TEST_F(LibraryOperations, OneFailureLeavesThatMeetingAndMovesTheOthers) {
    fs::create_directories(repository.deletedDirectory(ids["A"]));
    breakSaving("B");
    store().setNotes("only in memory", ids["B"]);
    const auto reason = store().saveFailures().at(ids["B"]);
    store().deleteMeetings(of("ABC"), &stack);
    EXPECT_EQ(titles(), "AB|C");
    EXPECT_EQ(stack.undoText(), "Delete Meeting");
    const std::string message = *store().error();
    EXPECT_TRUE(message.starts_with("Some meetings could not be deleted. Their files were left in place.\n"))
        << message;
    EXPECT_NE(message.find("\nA: This meeting is already in Recently deleted."), std::string::npos) << message;
    EXPECT_NE(message.find("\nB: " + reason), std::string::npos) << message;
    EXPECT_EQ(store().meeting(ids["B"])->notes, "only in memory");

    fs::remove_all(repository.deletedDirectory(ids["A"]));
    store().deleteMeetings(of("A"), &stack);
    fs::create_directories(repository.directory(ids["A"]));
    store().restoreMeetings(of("AC"), &stack);
    EXPECT_EQ(titles(), "BC|A");
    EXPECT_EQ(store().error(), "Some meetings could not be restored.\n"
                               "A: A meeting with the same identity is already in the library.");
}

TEST_F(LibraryOperations, AnUndoBringsBackNoMoreThanIsStillDeleted) {
    store().deleteMeetings(of("AB"), &stack);
    store().restoreMeetings(of("A"), nullptr);
    stack.undo();
    EXPECT_EQ(titles(), "ABC|");
    stack.redo();
    EXPECT_EQ(titles(), "AC|B") << "A was not this undo's";
    store().eraseDeleted(of("B"));
    EXPECT_EQ(store().pendingUndo(), std::nullopt);
    EXPECT_FALSE(fs::exists(repository.deletedDirectory(ids["B"])));
    stack.undo();
    EXPECT_EQ(titles(), "AC|");
    EXPECT_FALSE(stack.canUndo() || stack.canRedo());
    EXPECT_EQ(store().error(), std::nullopt);
}

TEST_F(LibraryOperations, ARunningRecordingBlocksADelete) {
    store().deleteMeetings({}, &stack);
    EXPECT_EQ(store().error(), "Select a meeting first.");
    await(store().startRecording());
    auto chosen = of("A");
    chosen.insert(*store().recordingID());
    store().deleteMeetings(chosen, &stack);
    EXPECT_EQ(store().error(), "Stop recording before deleting this meeting.");
    EXPECT_FALSE(store().saveImported(event("1").makeMeeting()));
    EXPECT_EQ(store().error(), "Finish recording before importing a meeting.");
}

TEST_F(LibraryOperations, OldDeletesAreErasedAtAStartThatMayWrite) {
    const Date now = Date::now();
    repository.moveToDeleted(ids["A"], {now.secondsSinceReference - 2'592'000});
    repository.moveToDeleted(ids["B"], {now.secondsSinceReference - 2'591'000});
    StoreParts parts;
    parts.writable = false;
    EXPECT_EQ(MeetingStore(root, parts).deletedMeetings().size(), 2U);
    openStore();
    EXPECT_EQ(titles(), "C|B");
}

TEST_F(LibraryOperations, AnImportRefreshesItsMeetingAndKeepsAVersion) {
    EXPECT_TRUE(store().useCalendarEvent(event("1")));
    const Uuid id = *store().selectedID();
    EXPECT_EQ(onDisk(id).attendees, std::vector<std::string>{"Ada"});
    store().setNotes("mine", id);

    Meeting again = event("1", true).makeMeeting();
    again.importedContent = "text";
    EXPECT_TRUE(store().saveImported(again));
    EXPECT_EQ(onDisk(id).notes + *onDisk(id).importedContent, "minetext");
    EXPECT_EQ(await(store().history(id)).entries.at(0).meeting.importedContent, std::nullopt);

    store().reconcileCalendar({event("1", true), event("2")});
    EXPECT_EQ(onDisk(id).status, "Cancelled · calendar event");
    EXPECT_EQ(store().meetings().size(), 4U);

    store().setSelectedID({});
    store().setCalendarLookup([] { return event("3"); });
    for (const auto* title : {"Review", "Meeting · "}) { // a recording goes into the event of the moment, once
        await(store().startRecording());
        EXPECT_TRUE(store().meeting(*store().recordingID())->title.starts_with(title)) << title;
        await(store().stopRecording());
    }
}

TEST_F(LibraryOperations, AVersionComesBackButNeverOverPendingEdits) {
    const Uuid id = ids["A"];
    store().setNotes("old", id);
    repository.archiveBeforeTranscription(*store().meeting(id));
    store().setNotes("new", id);
    const auto entry = await(store().history(id)).entries.at(0);
    const auto restore = [&] {
        const MeetingRevisions revisions{MeetingRestoration::revision(*store().meeting(id)),
                                         MeetingRestoration::revision(entry.meeting)};
        return sentenceThrown([&] { store().restoreHistory(entry, {.personalNotes = true}, revisions); });
    };
    EXPECT_EQ(restore(), "");
    EXPECT_EQ(store().meeting(id)->notes + "," + onDisk(id).notes, "old,old");

    breakSaving("A");
    store().setNotes("unsaved", id);
    EXPECT_EQ(restore(), "Save this meeting's pending edits before restoring a version.");
    await(store().startRecording());
    EXPECT_EQ(restore(), "Finish the current operation before restoring a meeting.");
    EXPECT_EQ(store().meeting(id)->notes, "unsaved");
}

} // namespace
} // namespace varnet::test
