#include "Varnet/capture/SerialQueue.h"
#include "tests/support/Await.h"
#include "tests/support/FakeAudioCapture.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

using namespace std::chrono_literals;

TEST(SerialQueue, TakesPostedWorkBeforeATickThatIsDue) {
    test::FakeClock clock;
    std::string order; // of the queue until it has ended
    {
        SerialQueue queue("test", clock.reader());
        queue.startTimer(400ms, 80ms, [&] { order += 'T'; });
        test::await(queue.run([&] {
            clock.setSeconds(1.0); // eight ticks late: one is made up for
            queue.post([&] { order += 'a'; });
            queue.post([&] { order += 'b'; });
        }));
        ASSERT_TRUE(test::eventually([&] {
            std::size_t length = 0;
            test::await(queue.run([&] { length = order.size(); }));
            return length == 3;
        }));
        test::await(queue.run([&] {
            queue.stopTimer();
            clock.setSeconds(9.0);
        }));
        queue.post([&] { order += 'c'; });
    }
    EXPECT_EQ(order, "abTc") << "and what was posted is done before the end";
}

} // namespace
} // namespace varnet
