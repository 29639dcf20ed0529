#include "MeetingCore/base/Failures.h"
#include "Varnet/async/MainThread.h"
#include "Varnet/async/Sleep.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/async/Worker.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <thread>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> logged;

/// Collects what is logged while it lives.
struct LogCapture {
    LogCapture() {
        logged.clear();
        previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { logged.push_back(text.toStdString()); });
    }
    ~LogCapture() { qInstallMessageHandler(previous); }
    QtMessageHandler previous;
};

Task<> recordEnd(std::shared_ptr<std::vector<std::string>> ends, std::stop_token stop) {
    const bool rested = co_await sleepFor(1h, stop);
    ends->push_back(rested ? "rested" : "stopped");
}

template <class Thrown>
Task<> failLater(Thrown failure) {
    co_await sleepFor(1ms);
    throw failure;
}

TEST(TaskScope, StopsItsTasksWhenItEnds) {
    const auto ends = std::make_shared<std::vector<std::string>>();
    {
        TaskScope scope("test");
        scope.spawn(recordEnd(ends, scope.stopToken()));
        scope.spawn(recordEnd(ends, scope.stopToken()));
    }
    EXPECT_TRUE(ends->empty()); // never inside the owner's destructor
    EXPECT_TRUE(eventually([&] { return ends->size() == 2; }));
    EXPECT_EQ(*ends, (std::vector<std::string>{"stopped", "stopped"}));
}

TEST(TaskScope, LogsWhatATaskThrowsButNotACancellation) {
    const LogCapture capture;
    TaskScope scope("Speech session");
    scope.spawn(failLater(Cancelled()));
    scope.spawn(failLater(Failure("The disk is gone.")));
    EXPECT_TRUE(eventually([] { return !logged.empty(); }));
    settle();
    EXPECT_EQ(logged, std::vector<std::string>{"Speech session: The disk is gone."});
}

TEST(MainThread, RunsPostedWorkThereInOrderAndLogsWhatItThrows) {
    const LogCapture capture;
    std::vector<int> order;
    bool elsewhere = true;
    std::thread([&] {
        elsewhere = onMainThread();
        postToMain([&] { order.push_back(onMainThread() ? 1 : -1); });
        postToMain([] { throw Failure("No."); });
        postToMain([&] { order.push_back(2); });
    }).join();
    EXPECT_FALSE(elsewhere);
    EXPECT_TRUE(eventually([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(logged, std::vector<std::string>{"Work posted to the main thread failed: No."});
}

TEST(Worker, RunsAwayFromTheMainThreadAndBringsResultsAndFailuresBack) {
    EXPECT_EQ(await(onWorker([] { return onMainThread() ? "main" : "worker"; })), std::string("worker"));
    EXPECT_THROW(await(onWorker([] { throw Failure("No."); })), Failure);
    const auto movedOnly = await(onWorker([value = std::make_unique<int>(5)]() mutable { return std::move(value); }));
    EXPECT_EQ(*movedOnly, 5);
}

TEST(Worker, RunsOnePieceAfterTheOther) {
    const auto running = std::make_shared<std::atomic<int>>(0);
    std::vector<Task<bool>> tasks;
    for (int i = 0; i < 50; ++i)
        tasks.push_back(onWorker([running] {
            const bool alone = ++*running == 1;
            std::this_thread::yield();
            --*running;
            return alone;
        }));
    for (Task<bool>& task : tasks)
        EXPECT_TRUE(await(std::move(task)));
}

} // namespace
} // namespace varnet::test
