#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/TreeSnapshot.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <functional>

namespace fs = std::filesystem;
using namespace varnet;
using test::TemporaryFolder;
using Kind = FileFailure::Kind;

namespace {

int errorOf(const std::function<void()>& call) {
    return test::thrown<FileFailure>(call).value().error();
}

} // namespace

TEST(AtomicFile, ReplacesContentAndKeepsItPrivate) {
    const TemporaryFolder folder;
    const fs::path file = folder / "meeting.json";
    writeFileAtomically(file, "first, and longer");
    fs::permissions(file, fs::perms::all);
    writeFileAtomically(file, std::string("se\0cond", 7));
    EXPECT_EQ(readFile(file), std::string("se\0cond", 7));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0600});
    writeFileAtomically(file, "", 0644);
    EXPECT_EQ(readFile(file), "");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0644});
    EXPECT_EQ(test::treeOf(folder.path()).size(), 1u);
}

TEST(AtomicFile, FailedWriteLeavesTheOldFileAndNothingElse) {
    const TemporaryFolder folder;
    const fs::path file = folder / "meeting.json";
    writeFileAtomically(file, "old");
    {
        const test::FileSizeLimit diskFull(4096);
        EXPECT_EQ(errorOf([&] { writeFileAtomically(file, std::string(10000, 'x')); }), EFBIG);
    }
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(test::treeOf(folder.path()).size(), 1u);

    fs::create_directory(folder / "taken");
    EXPECT_EQ(errorOf([&] { writeFileAtomically(folder / "taken", "x"); }), EISDIR);
    EXPECT_EQ(errorOf([&] { writeFileAtomically(folder / "absent" / "a", "x"); }), ENOENT);
    EXPECT_EQ(test::treeOf(folder.path()).size(), 2u);
}

TEST(AtomicFile, RefusesWhatIsNotARegularFileOfReasonableSize) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink(folder / "loop", folder / "loop");
    writeFileAtomically(folder / "five", "12345");
    fs::create_symlink(folder / "five", folder / "link");

    EXPECT_EQ(test::kindThrown<FileFailure>([&] { readFile(folder / "pipe"); }), Kind::fileReadCorruptFile);
    EXPECT_EQ(test::kindThrown<FileFailure>([&] { readFile("/dev/zero"); }), Kind::fileReadCorruptFile);
    EXPECT_EQ(test::kindThrown<FileFailure>([&] { readFile(folder / "absent"); }), Kind::fileReadNoSuchFile);
    EXPECT_EQ(errorOf([&] { readFile(folder.path()); }), EISDIR);
    EXPECT_EQ(errorOf([&] { readFile(folder / "loop"); }), ELOOP);
    EXPECT_EQ(errorOf([&] { readFile(folder / "five", 4); }), EFBIG);
    EXPECT_EQ(readFile(folder / "link", 5), "12345");
}
