#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Json.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
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
    EXPECT_EQ(repository.directory(meeting.id), record.parent_path());
    EXPECT_EQ(readFile(record), encodeMeeting(meeting));
    EXPECT_EQ(modeOf(record), 0600u);
    EXPECT_EQ(modeOf(record.parent_path()), 0700u);
    EXPECT_EQ(modeOf(folder / "a/b"), 0700u);

    Meeting version = meeting;
    version.title = "version";
    repository.archiveBeforeTranscription(version);
    EXPECT_EQ(modeOf(record.parent_path() / "history"), 0700u);
    EXPECT_EQ(repository.load(meeting.id), meeting) << "versions stand beside the live record";
}

TEST(MeetingRepository, OddEntriesAreIgnoredOrNamedAndNeverTouched) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    const Meeting good = meetingAt(1);
    repository.save(good);

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
    // And this one reaches the good one again.
    fs::create_directory_symlink(repository.directory(good.id), folder / "link");

    const LoadedMeetings loaded = repository.loadRecovering();
    EXPECT_THAT(loaded.meetings, ElementsAre(good, good));
    EXPECT_THAT(loaded.unreadable, UnorderedElementsAre("empty", ".hidden", "latin\uFFFD", "folder", "pipe", "huge"));
    EXPECT_EQ(readFile(folder / ".hidden/meeting.json"), "{");
}

TEST(MeetingRepository, RecordCountsMoreThanItsFoldersName) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    const Meeting meeting = meetingAt(1, "moved");
    plant(folder / "some name", encodeMeeting(meeting));
    EXPECT_THAT(repository.loadRecovering().meetings, ElementsAre(meeting));
    repository.save(meeting);
    EXPECT_EQ(repository.load(meeting.id), meeting);
}

TEST(MeetingRepository, NewestComeFirstAndEqualDatesKeepTheOrderOfTheListing) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    for (int i = 0; i < 40; ++i)
        repository.save(meetingAt(i % 2));
    std::vector<std::string> newer, older, loaded;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        (repository.load(*Uuid::parse(entry.path().filename().string())).createdAt == Date{1} ? newer : older)
            .push_back(entry.path().filename());
    newer.insert(newer.end(), older.begin(), older.end());
    for (const Meeting& meeting : repository.loadRecovering().meetings)
        loaded.push_back(meeting.id.text());
    EXPECT_EQ(loaded, newer);
}

TEST(MeetingRepository, RemovedRootComesBackWithTheNextSave) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder / "root");
    EXPECT_THAT(repository.loadRecovering().meetings, IsEmpty());
    fs::remove_all(folder / "root");
    EXPECT_THROW(repository.loadRecovering(), FileFailure);
    const Meeting meeting = meetingAt(1);
    EXPECT_THROW(repository.load(meeting.id), FileFailure);
    repository.save(meeting);
    EXPECT_THAT(repository.loadRecovering().meetings, ElementsAre(meeting));
}

TEST(MeetingRepository, FailedSaveTouchesNothing) {
    const TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    Meeting meeting = meetingAt(1);
    writeFileAtomically(repository.directory(meeting.id), "a file in the way");
    EXPECT_THROW(repository.save(meeting), FileFailure);
    EXPECT_THROW(repository.archiveBeforeTranscription(meeting), FileFailure);
    EXPECT_EQ(readFile(repository.directory(meeting.id)), "a file in the way");
    EXPECT_THROW(MeetingRepository(repository.directory(meeting.id)), FileFailure);
}
