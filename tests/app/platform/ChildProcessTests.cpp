#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/platform/ChildProcess.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace varnet;
using namespace std::chrono_literals;
using test::eventually;

namespace {

struct Child : ::testing::Test {
    test::TemporaryFolder folder;

    ChildProcess::Launch shell(const std::string& script) {
        return {"/bin/sh", {"-c", script}, folder.path(), {}, folder / "logs/child.log"};
    }

    std::string output(const ChildProcess::Launch& launch) {
        const auto child = ChildProcess::start(launch);
        EXPECT_TRUE(eventually([&] { return !child->running(); }));
        return readFile(folder / "logs/child.log");
    }

    bool exists(const char* name) { return std::filesystem::exists(folder / name); }
};

/// Whether the process still does something; one that only waits to be collected does not.
bool alive(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    std::string id, name, state;
    return status >> id >> name >> state && state != "Z" && state != "X";
}

} // namespace

TEST_F(Child, InheritsNoOpenFileAndNoBlockedSignal) {
    const int leak = ::fcntl(STDIN_FILENO, F_DUPFD, 200); // without O_CLOEXEC
    ASSERT_GE(leak, 200);
    sigset_t term;
    sigemptyset(&term);
    sigaddset(&term, SIGTERM);
    sigprocmask(SIG_BLOCK, &term, nullptr);
    const std::string open = "[ -e /proc/$$/fd/" + std::to_string(leak) + " ] && echo open; ";
    EXPECT_EQ(output(shell(open + "cat; exec grep SigBlk /proc/self/status")), "SigBlk:\t0000000000000000\n");
    sigprocmask(SIG_UNBLOCK, &term, nullptr);
    ::close(leak);
}

TEST_F(Child, OutlivesItsHandle) {
    const std::weak_ptr child = ChildProcess::start(shell("until [ -e go ]; do sleep 0.01; done; touch done"));
    std::ofstream(folder / "go") << "now";
    EXPECT_TRUE(eventually([&] { return child.expired(); }));
    EXPECT_TRUE(exists("done"));
}

TEST_F(Child, TerminateAsksFirstAndKillsLater) {
    const auto polite =
        ChildProcess::start(shell("trap 'touch asked; exit' TERM; touch up; while :; do sleep 0.01; done"));
    const auto stubborn = ChildProcess::start(shell("trap '' TERM; touch deaf; while :; do sleep 0.01; done"));
    ASSERT_TRUE(eventually([&] { return exists("up") && exists("deaf"); }));
    polite->terminate(1h);
    stubborn->terminate(20ms);
    EXPECT_TRUE(polite->running()) << "terminate waited";
    EXPECT_TRUE(eventually([&] { return !polite->running() && !stubborn->running(); }));
    EXPECT_TRUE(exists("asked"));
    EXPECT_FALSE(polite->exitedBySignal());
    EXPECT_TRUE(stubborn->exitedBySignal());
}

TEST_F(Child, DiesWithTheApplication) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t application = ::fork();
    if (application == 0) {
        const pid_t child = static_cast<pid_t>(ChildProcess::start(shell("exec sleep 1000"))->processID());
        std::ignore = ::write(pipe[1], &child, sizeof child);
        ::pause();
        ::_exit(0);
    }
    pid_t child = 0;
    ASSERT_EQ(::read(pipe[0], &child, sizeof child), static_cast<ssize_t>(sizeof child));
    EXPECT_TRUE(alive(child));
    ::kill(application, SIGKILL);
    ::waitpid(application, nullptr, 0);
    EXPECT_TRUE(eventually([&] { return !alive(child); }));
    ::close(pipe[0]);
    ::close(pipe[1]);
}
