#include "Varnet/async/MainThread.h"
#include "Varnet/async/Sleep.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/async/Worker.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

#include <semaphore>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;

Task<> recordEnd(std::shared_ptr<std::vector<std::string>> ends, std::stop_token stop) {
    const bool rested = co_await sleepFor(1h, stop);
    ends->push_back(rested ? "rested" : "stopped");
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

TEST(Worker, RunsAwayFromTheMainThreadAndBringsResultsAndFailuresBack) {
    EXPECT_FALSE(await(onWorker([] { return onMainThread(); })));
    EXPECT_THROW(await(onWorker([] { throw Failure("No."); })), Failure);
}

TEST(Worker, AWaitThatIsCalledOffEndsBeforeItsWork) {
    std::binary_semaphore rest(0);
    std::stop_source stop;
    Task<> waiting = onWorker([&rest] { rest.acquire(); }, stop.get_token());
    stop.request_stop();
    EXPECT_THROW(await(std::move(waiting)), Cancelled);
    rest.release();
    finishBackgroundWork();
}

} // namespace
} // namespace varnet::test
