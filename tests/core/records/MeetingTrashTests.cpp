#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingHistory.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "MeetingCore/records/MeetingTrash.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/TreeSnapshot.h"

#include <gmock/gmock.h>

#include <functional>

namespace fs = std::filesystem;
using namespace varnet;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Kind = MeetingTrashError::Kind;

namespace {

class MeetingTrash : public testing::Test {
protected:
    /// A saved meeting with audio and a version.
    Meeting saved() {
        Meeting meeting = Meeting::make("meeting");
        repository.save(meeting);
        repository.archiveBeforeTranscription(meeting);
        writeFileAtomically(repository.directory(meeting.id) / "meeting.wav", "audio");
        return meeting;
    }
    Meeting deleted(double at) {
        Meeting meeting = saved();
        repository.moveToDeleted(meeting.id, Date{at});
        return meeting;
    }
    fs::path marker(const Uuid& id) const { return repository.deletedDirectory(id) / "deleted.json"; }

    /// Whether the call fails with that kind and moves nothing.
    bool refuses(Kind kind, const std::function<void()>& call) const {
        const auto before = test::treeOf(folder.path());
        return test::kindThrown<MeetingTrashError>(call) == kind && test::treeOf(folder.path()) == before;
    }

    test::TemporaryFolder folder;
    MeetingRepository repository{folder / "library/"};
};

} // namespace

TEST_F(MeetingTrash, WholeFolderGoesAndComesBack) {
    const Meeting meeting = saved();
    const auto before = test::treeOf(repository.root());
    repository.moveToDeleted(meeting.id, Date{5});
    EXPECT_THAT(repository.loadRecovering().meetings, IsEmpty());
    EXPECT_THAT(repository.loadDeleted(Date{9}), ElementsAre(DeletedMeeting{meeting, Date{5}}));
    EXPECT_EQ(readFile(folder / "deleted-meetings" / meeting.id.text() / "deleted.json"), "{\n  \"deletedAt\": 5\n}\n");

    EXPECT_EQ(repository.restoreDeleted(meeting.id), meeting);
    EXPECT_EQ(test::treeOf(repository.root()), before);
    EXPECT_THAT(repository.loadDeleted(Date{9}), IsEmpty());
}

TEST_F(MeetingTrash, NothingIsEverOverwritten) {
    const Meeting meeting = deleted(1);
    const Uuid nobody = Uuid::random();
    EXPECT_TRUE(refuses(Kind::notFound, [&] { repository.moveToDeleted(nobody, Date{2}); }));
    EXPECT_TRUE(refuses(Kind::notFound, [&] { repository.restoreDeleted(nobody); }));
    EXPECT_TRUE(refuses(Kind::notFound, [&] { repository.eraseDeleted(nobody); }));

    repository.save(meeting);
    EXPECT_TRUE(refuses(Kind::alreadyDeleted, [&] { repository.moveToDeleted(meeting.id, Date{2}); }));
    EXPECT_TRUE(refuses(Kind::alreadyInLibrary, [&] { repository.restoreDeleted(meeting.id); }));

    // Links do not count as meetings.
    fs::rename(repository.directory(meeting.id), folder / "elsewhere");
    fs::create_directory_symlink(folder / "elsewhere", repository.directory(nobody));
    EXPECT_TRUE(refuses(Kind::notFound, [&] { repository.moveToDeleted(nobody, Date{2}); }));
    fs::rename(repository.directory(nobody), repository.deletedDirectory(nobody));
    EXPECT_TRUE(refuses(Kind::notFound, [&] { repository.restoreDeleted(nobody); }));
    EXPECT_EQ(repository.loadDeleted(Date{2}).size(), 1u);
}

TEST_F(MeetingTrash, FailedMarkerLeavesTheMeetingInTheLibrary) {
    const Meeting meeting = saved();
    const auto before = test::treeOf(repository.root());
    {
        const test::FileSizeLimit diskFull(0);
        EXPECT_THROW(repository.moveToDeleted(meeting.id, Date{5}), FileFailure);
    }
    EXPECT_EQ(test::treeOf(repository.root()), before);
    EXPECT_THAT(repository.loadDeleted(Date{9}), IsEmpty());
}

TEST_F(MeetingTrash, UnreadableRecordStaysWhereItIs) {
    const Meeting meeting = deleted(1);
    writeFileAtomically(repository.deletedDirectory(meeting.id) / "meeting.json", "{");
    const auto before = test::treeOf(folder.path());
    EXPECT_THROW(repository.restoreDeleted(meeting.id), JsonFailure);
    EXPECT_THAT(repository.loadDeleted(Date{9}), IsEmpty());
    EXPECT_THAT(repository.eraseExpired(Date{1e9}, deletedRetention), IsEmpty());
    EXPECT_EQ(test::treeOf(folder.path()), before);
}

TEST_F(MeetingTrash, ErasedAfterThirtyDaysAndNeverEarlier) {
    const double now = 800'000'000;
    const Meeting onTheDay = deleted(now - 2'592'000), older = deleted(0), younger = deleted(now - 2'591'999),
                  future = deleted(now + 9e9), unmarked = deleted(0), damaged = deleted(0), linked = deleted(0);
    fs::remove(marker(unmarked.id));
    writeFileAtomically(marker(damaged.id), "{}");
    fs::rename(marker(linked.id), folder / "marker");
    fs::create_symlink(folder / "marker", marker(linked.id));
    EXPECT_EQ(repository.loadDeleted(Date{now}).at(1).deletedAt, Date{now}); // counts as deleted now

    EXPECT_THAT(repository.eraseExpired(Date{now}, deletedRetention), UnorderedElementsAre(onTheDay.id, older.id));
    const auto left = repository.loadDeleted(Date{now + 777}); // last deleted first
    ASSERT_EQ(left.size(), 5u);
    EXPECT_EQ(left.front(), (DeletedMeeting{future, Date{now + 9e9}}));
    for (const std::size_t withoutMarker : {1, 2, 3})
        EXPECT_EQ(left[withoutMarker].deletedAt, Date{now});
    EXPECT_EQ(left.back(), (DeletedMeeting{younger, Date{now - 2'591'999}}));
    EXPECT_EQ(repository.eraseExpired(Date{now + 2'592'000}, deletedRetention).size(), 4u);
}

TEST_F(MeetingTrash, ErasingFollowsNoLinkAndFinishesWhatWasCutShort) {
    const Meeting meeting = deleted(1), cutShort = deleted(1), both = deleted(1);
    fs::create_directory(folder / "outside");
    writeFileAtomically(folder / "outside/file", "kept");
    fs::create_directory_symlink(folder / "outside", repository.deletedDirectory(meeting.id) / "link");
    fs::create_directory(repository.deletedRoot() / "not a meeting");
    const auto erasing = [&](const Meeting& one) { return repository.deletedRoot() / (".erasing-" + one.id.text()); };
    fs::rename(repository.deletedDirectory(cutShort.id), erasing(cutShort));
    fs::create_directory(erasing(both));

    EXPECT_EQ(repository.loadDeleted(Date{2}).size(), 2u);
    repository.eraseDeleted(meeting.id);
    repository.eraseDeleted(both.id);
    EXPECT_THAT(repository.eraseExpired(Date{2}, deletedRetention), IsEmpty());
    EXPECT_THAT(test::treeOf(repository.deletedRoot()), ElementsAre(testing::Pair("not a meeting", "folder")));
    EXPECT_EQ(readFile(folder / "outside/file"), "kept");
}
