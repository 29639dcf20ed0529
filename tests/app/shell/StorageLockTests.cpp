#include "Varnet/shell/StorageLock.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace varnet::test {

TEST(StorageLocks, OneProcessHoldsALibraryUnderAllItsPaths) {
    const TemporaryFolder folder;
    const auto root = folder / "Varnet" / "meetings";
    {
        const StorageLock first(root);
        EXPECT_TRUE(first.held());
        EXPECT_EQ(StorageLock(root).holder(), getpid());
        EXPECT_FALSE(std::filesystem::exists(root)) << "the library itself is not made";
        std::filesystem::create_directories(root);
        std::filesystem::create_directory_symlink(root, folder / "link");
        for (const auto& same : {root, folder / "link", folder / "Varnet/meetings/", folder / "x/../Varnet/meetings"})
            EXPECT_FALSE(StorageLock(same).held()) << same;
        EXPECT_TRUE(StorageLock(folder / "Varnet" / "others").held()) << "another library is another lock";
    }
    EXPECT_TRUE(StorageLock(root).held());
}

TEST(StorageLocks, ACrashFreesTheLibraryThoughItsChildrenLiveOn) {
    const TemporaryFolder folder;
    const auto root = folder / "meetings";
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        const StorageLock lock(root);
        int running[2];
        char none;
        if (pipe2(running, O_CLOEXEC) != 0)
            _exit(1);
        if (fork() == 0) { // an engine: it inherits everything that is not closed on exec
            execlp("sleep", "sleep", "5", nullptr);
            _exit(1);
        }
        close(running[1]);
        if (read(running[0], &none, 1) != 0) // the end comes with the exec
            _exit(1);
        const auto written = write(pipeEnds[1], lock.held() ? "y" : "n", 1);
        pause();
        _exit(static_cast<int>(written));
    }
    char held = 0;
    ASSERT_EQ(read(pipeEnds[0], &held, 1), 1);
    EXPECT_EQ(held, 'y');
    EXPECT_FALSE(StorageLock(root).held());

    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_TRUE(StorageLock(root).held());
    close(pipeEnds[0]);
    close(pipeEnds[1]);
}

} // namespace varnet::test
