#include "Varnet/shell/StorageLock.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace varnet::test {

TEST(StorageLocks, OneProcessHoldsALibraryUnderAllItsPaths) {
    const TemporaryFolder folder;
    const auto root = folder / "Varnet" / "meetings";
    std::optional<StorageLock> waiting;
    pid_t engine = 0; // a child that outlives the holder
    {
        const StorageLock first(root);
        std::string program = "sleep", seconds = "100";
        char* arguments[] = {program.data(), seconds.data(), nullptr};
        ASSERT_EQ(posix_spawnp(&engine, "sleep", nullptr, nullptr, arguments, environ), 0);
        EXPECT_TRUE(first.held());
        EXPECT_FALSE(waiting.emplace(root).tryAgain());
        EXPECT_EQ(StorageLock(root).holder(), getpid());
        EXPECT_FALSE(std::filesystem::exists(root)) << "the library itself is not made";
        std::filesystem::create_directories(root);
        std::filesystem::create_directory_symlink(root, folder / "link");
        for (const auto& same : {root, folder / "link", folder / "Varnet/meetings/", folder / "x/../Varnet/meetings"})
            EXPECT_FALSE(StorageLock(same).held()) << same;
        EXPECT_TRUE(StorageLock(folder / "Varnet" / "others").held()) << "another library is another lock";
    }
    EXPECT_TRUE(eventually([&] { return waiting->tryAgain(); })) << "its children do not hold the lock";
    EXPECT_EQ(StorageLock(root).holder(), getpid());
    kill(engine, SIGKILL);
    waitpid(engine, nullptr, 0);
}

} // namespace varnet::test
