#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TreeSnapshot.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using namespace varnet;
using test::TemporaryFolder;
using testing::UnorderedElementsAre;

namespace {

Meeting meetingAt(double createdAt) {
    Meeting meeting = Meeting::make("");
    meeting.createdAt = {createdAt};
    return meeting;
}

void plant(const fs::path& folder, std::string_view bytes) {
    fs::create_directories(folder);
    writeFileAtomically(folder / "meeting.json", bytes);
}

} // namespace

TEST(MeetingRepository, SavesPrivatelyAndLoadsBack) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder / "a/b");
    const Meeting meeting = meetingAt(5);
    repository.save(meeting);

    EXPECT_EQ(repository.load(meeting.id), meeting);
    const fs::path record = folder / "a/b" / meeting.id.text() / "meeting.json";
    EXPECT_EQ(readFile(record), encodeMeeting(meeting));
    EXPECT_EQ(fs::status(record).permissions(), fs::perms{0600});
    EXPECT_EQ(fs::status(record.parent_path()).permissions(), fs::perms{0700});
    EXPECT_EQ(fs::status(folder / "a/b").permissions(), fs::perms{0700});
    repository.archiveBeforeTranscription(meeting);
    EXPECT_EQ(fs::status(record.parent_path() / "history").permissions(), fs::perms{0700});
}

TEST(MeetingRepository, OddEntriesAreIgnoredOrNamedAndNeverTouchedWhileTheOthersLoadNewestFirst) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    std::vector<Meeting> good; // newest first, as they are to be loaded
    for (int age = 0; age < 20; ++age)
        repository.save(good.emplace_back(meetingAt(-age)));

    // Nothing of a meeting stands in these.
    writeFileAtomically(folder / "stray", "x");
    fs::create_directories(folder / "audio only");
    writeFileAtomically(folder / "audio only/meeting.wav", "x");
    fs::create_symlink(folder / "nowhere", folder / "dangling");
    fs::create_symlink(folder / "loop", folder / "loop");
    // These hold a record that cannot be read.
    plant(folder / "empty", "");
    plant(folder / ".hidden", "{");
    plant(folder / "latin\xE9", "{}");
    fs::create_directories(folder / "folder/meeting.json");
    fs::create_directories(folder / "pipe");
    ASSERT_EQ(::mkfifo((folder / "pipe/meeting.json").c_str(), 0600), 0);
    plant(folder / "huge", "");
    fs::resize_file(folder / "huge/meeting.json", std::uintmax_t{1} << 40);
    fs::create_directories(folder / "endless");
    fs::create_symlink("/dev/zero", folder / "endless/meeting.json");
    // And this one reaches the newest one again.
    fs::create_directory_symlink(repository.directory(good.front().id), folder / "link");
    good.insert(good.begin(), good.front());

    const auto before = test::treeOf(folder.path());
    const LoadedMeetings loaded = repository.loadRecovering();
    EXPECT_THAT(loaded.meetings, testing::ElementsAreArray(good));
    EXPECT_THAT(loaded.unreadable,
                UnorderedElementsAre("empty", ".hidden", "latin\uFFFD", "folder", "pipe", "huge", "endless"));
    EXPECT_EQ(test::treeOf(folder.path()), before);
}
