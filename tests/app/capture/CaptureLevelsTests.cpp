#include "Varnet/capture/CaptureLevels.h"
#include "tests/support/Await.h"
#include "tests/support/FakeAudioCapture.h"

#include <gtest/gtest.h>

#include <thread>

namespace varnet {
namespace {

TEST(CaptureLevels, JumpUpAtOnceAndFallByAQuarter) {
    CaptureLevels levels;
    levels.reset(true);
    EXPECT_EQ(levels.call(), 0.0F);
    const float expected[] = {1.0F, 0.75F, 0.5625F, 0.6F};
    const float reported[] = {1.0F, 0.0F, 0.0F, 0.6F};
    for (int i = 0; i < 4; ++i) {
        levels.apply(reported[i], reported[i] * 0.5F);
        EXPECT_FLOAT_EQ(levels.microphone(), expected[i]);
        EXPECT_FLOAT_EQ(levels.call().value(), expected[i] * 0.5F);
    }
}

TEST(CaptureLevels, WarnOnceWhenTheCallIsMissing) {
    test::FakeClock clock;
    CaptureLevels levels(nullptr, clock.reader());
    int warnings = 0;
    QObject::connect(&levels, &CaptureLevels::callMissingChanged, [&] { ++warnings; });
    levels.reset(true);
    levels.apply(0.5F, 0.4F);
    for (const double time : {1, 31, 32}) { // the raw level counts, not the meter that still falls
        clock.setSeconds(time);
        EXPECT_FALSE(levels.callMissing() && time <= 31);
        levels.apply(0.5F, 0.0F);
    }
    EXPECT_TRUE(levels.callMissing());
    EXPECT_EQ(warnings, 1);
    levels.reset(true);
    EXPECT_FALSE(levels.callMissing());
}

TEST(CaptureLevels, TakeReportsOfOtherThreadsOnTheMainThread) {
    CaptureLevels levels;
    levels.reset(true);
    const std::thread::id mainThread = std::this_thread::get_id();
    std::optional<std::thread::id> changedOn;
    QObject::connect(&levels, &CaptureLevels::changed, [&] { changedOn = std::this_thread::get_id(); });
    std::thread([&] { levels.report(0.5F, 0.25F); }).join();
    EXPECT_EQ(levels.microphone(), 0);
    ASSERT_TRUE(test::eventually([&] { return changedOn.has_value(); }));
    EXPECT_EQ(levels.microphone(), 0.5F);
    EXPECT_EQ(changedOn, mainThread);
}

} // namespace
} // namespace varnet
