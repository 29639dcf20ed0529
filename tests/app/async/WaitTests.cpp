#include "Varnet/async/AsyncQueue.h"
#include "Varnet/async/Event.h"
#include "Varnet/async/Sleep.h"
#include "Varnet/async/Waits.h"
#include "tests/support/Await.h"

#include <QProcess>
#include <QTimer>

#include <gtest/gtest.h>

#include <thread>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;

/// What a test does to a wait that has begun, and how the wait must end.
struct Ending {
    const char* name;
    std::function<void(std::unique_ptr<QObject>&, std::stop_source&)> act;
    std::chrono::nanoseconds timeout;
    WaitOutcome outcome;
};

void rename(const std::unique_ptr<QObject>& sender) {
    sender->setObjectName("renamed");
}

const Ending endings[] = {
    {"a signal", [](auto& sender, auto&) { rename(sender); }, noTimeout, WaitOutcome::fired},
    {"a destroyed sender", [](auto& sender, auto&) { sender.reset(); }, noTimeout, WaitOutcome::destroyed},
    {"stop on the main thread", [](auto&, auto& stop) { stop.request_stop(); }, noTimeout, WaitOutcome::stopped},
    {"stop on another thread", [](auto&, auto& stop) { std::thread([&stop] { stop.request_stop(); }).join(); },
     noTimeout, WaitOutcome::stopped},
    {"the deadline", [](auto&, auto&) {}, 5ms, WaitOutcome::timedOut},
    {"a sender destroyed after its signal",
     [](auto& sender, auto&) {
         rename(sender);
         sender.reset();
     },
     noTimeout, WaitOutcome::destroyed},
    {"stop after the signal",
     [](auto& sender, auto& stop) {
         rename(sender);
         stop.request_stop();
     },
     noTimeout, WaitOutcome::stopped},
    {"a sender destroyed after stop",
     [](auto& sender, auto& stop) {
         stop.request_stop();
         sender.reset();
     },
     noTimeout, WaitOutcome::destroyed},
};

TEST(Waits, SignalWaitEndsWhateverHappens) {
    for (const Ending& ending : endings) {
        SCOPED_TRACE(ending.name);
        auto sender = std::make_unique<QObject>();
        std::stop_source stop;
        Task<WaitOutcome> wait =
            waitForSignal(sender.get(), &QObject::objectNameChanged, ending.timeout, stop.get_token());
        settle();
        EXPECT_FALSE(ending.timeout == noTimeout && wait.isReady());
        ending.act(sender, stop);
        EXPECT_EQ(await(std::move(wait)), ending.outcome);
    }
}

TEST(Waits, NothingIsAwaitedOfAMissingSenderOrAfterStop) {
    std::stop_source stop;
    stop.request_stop();
    QObject sender;
    EXPECT_EQ(await(waitForSignal(&sender, &QObject::objectNameChanged, noTimeout, stop.get_token())),
              WaitOutcome::stopped);
    EXPECT_EQ(await(waitForSignal(static_cast<QObject*>(nullptr), &QObject::objectNameChanged)),
              WaitOutcome::destroyed);
}

TEST(Waits, ResumesOutsideTheSignalSoThatTheSenderMayBeDeleted) {
    auto sender = std::make_unique<QObject>();
    Task<WaitOutcome> wait = waitForSignal(sender.get(), &QObject::objectNameChanged);
    rename(sender);
    EXPECT_FALSE(wait.isReady());
    EXPECT_EQ(await(std::move(wait)), WaitOutcome::fired);
}

TEST(Waits, ProcessWaitEndsForExitAndForAProgramThatDoesNotExist) {
    for (const char* program : {"true", "/no/such/program"}) {
        SCOPED_TRACE(program);
        QProcess process;
        process.start(program, {});
        EXPECT_EQ(await(waitForFinished(&process)), WaitOutcome::fired);
        EXPECT_EQ(process.state(), QProcess::NotRunning);
    }
}

TEST(Waits, ProcessWaitKeepsItsDeadlineWhileTheProcessGoesOn) {
    QProcess process;
    process.start("cat", {});
    EXPECT_EQ(await(waitForFinished(&process, 20ms)), WaitOutcome::timedOut);
    EXPECT_NE(process.state(), QProcess::NotRunning);
    process.closeWriteChannel();
    EXPECT_EQ(await(waitForFinished(&process)), WaitOutcome::fired);
}

TEST(Sleep, LastsItsTimeAndStopsFromAnyThread) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(await(sleepFor(7ms)));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 7ms);

    std::stop_source stop;
    Task<bool> sleep = sleepFor(std::chrono::hours(24 * 365), stop.get_token());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_FALSE(await(std::move(sleep)));
    EXPECT_FALSE(await(sleepFor(1h, stop.get_token())));
}

TEST(Event, WakesEveryWaiterAndOutlivesNone) {
    auto event = std::make_unique<Event>();
    Task<WaitOutcome> first = event->wait();
    Task<WaitOutcome> second = event->wait();
    event->set();
    EXPECT_EQ(await(std::move(first)), WaitOutcome::fired);
    EXPECT_EQ(await(std::move(second)), WaitOutcome::fired);
    EXPECT_EQ(await(event->wait()), WaitOutcome::fired);

    event->reset();
    Task<WaitOutcome> cutOff = event->wait();
    event->set();
    event.reset();
    EXPECT_EQ(await(std::move(cutOff)), WaitOutcome::destroyed);
}

TEST(AsyncQueue, GivesEveryValueOfAnotherThreadInOrder) {
    AsyncQueue<int> queue(1000);
    std::jthread producer([&queue] {
        for (int i = 0; i < 1000; ++i)
            queue.offer(i);
        queue.end();
    });
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(await(queue.next()), i);
    EXPECT_EQ(await(queue.next()), std::nullopt);
}

TEST(AsyncQueue, RefusesWhatDoesNotFitAndWhatComesAfterTheEnd) {
    using Offer = AsyncQueue<int>::Offer;
    AsyncQueue<int> queue(2);
    EXPECT_EQ(queue.offer(1), Offer::accepted);
    EXPECT_EQ(queue.offer(2), Offer::accepted);
    EXPECT_EQ(queue.offer(3), Offer::full);
    EXPECT_EQ(await(queue.next()), 1);
    queue.end();
    EXPECT_EQ(queue.offer(4), Offer::ended);
    EXPECT_EQ(await(queue.next()), 2);
    EXPECT_EQ(await(queue.next()), std::nullopt);
}

TEST(AsyncQueue, ReaderOfADestroyedOrStoppedQueueGoesOn) {
    auto queue = std::make_unique<AsyncQueue<int>>(1);
    Task<std::optional<int>> orphan = queue->next();
    queue.reset();
    EXPECT_EQ(await(std::move(orphan)), std::nullopt);

    AsyncQueue<int> other(1);
    std::stop_source stop;
    Task<std::optional<int>> stopped = other.next(stop.get_token());
    stop.request_stop();
    EXPECT_EQ(await(std::move(stopped)), std::nullopt);
}

} // namespace
} // namespace varnet::test
