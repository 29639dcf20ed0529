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

struct Signal {
    void fire() const { sender->setObjectName("renamed"); }
    void destroy() { sender.reset(); }

    std::unique_ptr<QObject> sender = std::make_unique<QObject>();
    std::stop_source stop;
};

TEST(Waits, SignalWaitEndsWhateverHappens) {
    const struct {
        const char* name;
        std::function<void(Signal&)> act;
        std::chrono::nanoseconds timeout;
        WaitOutcome outcome;
    } endings[] = {
        {"a signal", [](Signal& s) { s.fire(); }, noTimeout, WaitOutcome::fired},
        {"no sender any more", [](Signal& s) { s.destroy(); }, noTimeout, WaitOutcome::destroyed},
        {"stop", [](Signal& s) { s.stop.request_stop(); }, noTimeout, WaitOutcome::stopped},
        {"stop elsewhere", [](Signal& s) { std::thread([&s] { s.stop.request_stop(); }).join(); }, noTimeout,
         WaitOutcome::stopped},
        {"the deadline", [](Signal&) {}, 5ms, WaitOutcome::timedOut},
        {"signal, destroyed", [](Signal& s) { s.fire(), s.destroy(); }, noTimeout, WaitOutcome::destroyed},
        {"signal, stop", [](Signal& s) { s.fire(), s.stop.request_stop(); }, noTimeout, WaitOutcome::stopped},
        {"stop, destroyed", [](Signal& s) { s.stop.request_stop(), s.destroy(); }, noTimeout, WaitOutcome::destroyed},
    };
    for (const auto& [name, act, timeout, outcome] : endings) {
        SCOPED_TRACE(name);
        Signal signal;
        Task<WaitOutcome> wait =
            waitForSignal(signal.sender.get(), &QObject::objectNameChanged, timeout, signal.stop.get_token());
        settle();
        EXPECT_FALSE(timeout == noTimeout && wait.isReady());
        act(signal);
        EXPECT_EQ(await(std::move(wait)), outcome);
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
    const Signal signal;
    Task<WaitOutcome> wait = waitForSignal(signal.sender.get(), &QObject::objectNameChanged);
    signal.fire();
    EXPECT_FALSE(wait.isReady());
    EXPECT_EQ(await(std::move(wait)), WaitOutcome::fired);
}

TEST(Waits, ProcessWaitEndsForExitForAProgramThatDoesNotExistAndAtItsDeadline) {
    for (const char* program : {"true", "/no/such/program"}) {
        QProcess process;
        process.start(program, {});
        EXPECT_EQ(await(waitForFinished(&process)), WaitOutcome::fired) << program;
    }
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
    Task<WaitOutcome> first = event->wait(), second = event->wait();
    event->set();
    EXPECT_EQ(await(std::move(first)), WaitOutcome::fired);
    EXPECT_EQ(await(std::move(second)), WaitOutcome::fired);

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
