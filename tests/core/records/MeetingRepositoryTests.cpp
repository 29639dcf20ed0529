#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TreeSnapshot.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using namespace varnet;
using test::TemporaryFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

Meeting meetingAt(double createdAt, std::string title = "") {
    Meeting meeting = Meeting::make(std::move(title));
    meeting.createdAt = {createdAt};
    return meeting;
}

void plant(const fs::path& folder, std::string_view bytes) {
    fs::create_directories(folder);
    writeFileAtomically(folder / "meeting.json", bytes);
}

mode_t modeOf(const fs::path& path) {
    struct stat status{};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

TEST(MeetingRepository, SavesPrivatelyAndLoadsBack) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder / "a/b");
    Meeting meeting = meetingAt(5, "first");
    repository.save(meeting);
    meeting.title = "second";
    repository.save(meeting);

    EXPECT_EQ(repository.load(meeting.id), meeting);
    const fs::path record = folder / "a/b" / meeting.id.text() / "meeting.json";
    EXPECT_EQ(readFile(record), encodeMeeting(meeting));
    EXPECT_EQ(modeOf(record), 0600u);
    EXPECT_EQ(modeOf(record.parent_path()), 0700u);
    EXPECT_EQ(modeOf(folder / "a/b"), 0700u);
    repository.archiveBeforeTranscription(meeting);
    EXPECT_EQ(modeOf(record.parent_path() / "history"), 0700u);
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
    fs::create_directories(folder / "huge");
    writeFileAtomically(folder / "huge/meeting.json", "");
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
