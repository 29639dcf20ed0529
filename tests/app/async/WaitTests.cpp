#include "Varnet/async/AsyncQueue.h"
#include "Varnet/async/Waits.h"
#include "tests/support/Await.h"

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
        {"stop elsewhere", [](Signal& s) { std::thread([&s] { s.stop.request_stop(); }).join(); }, noTimeout,
         WaitOutcome::stopped},
        {"the deadline", [](Signal&) {}, 5ms, WaitOutcome::timedOut},
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
        EXPECT_FALSE(timeout == noTimeout && wait.isReady())
            << "nothing resumes inside the signal, so that its sender may be deleted";
        EXPECT_EQ(await(std::move(wait)), outcome);
    }
}

TEST(AsyncQueue, GivesEveryValueOfAnotherThreadInOrderAndRefusesWhatDoesNotFit) {
    AsyncQueue<int> queue(1000);
    std::jthread producer([&queue] {
        for (int i = 0; i < 1000; ++i)
            queue.offer(i);
        queue.end();
    });
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(await(queue.next()), i);
    EXPECT_EQ(await(queue.next()), std::nullopt);
    EXPECT_EQ(queue.offer(1), AsyncQueue<int>::Offer::ended);

    AsyncQueue<int> full(1);
    full.offer(1);
    EXPECT_EQ(full.offer(2), AsyncQueue<int>::Offer::full);
}

} // namespace
} // namespace varnet::test
