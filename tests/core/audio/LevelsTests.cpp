#include "MeetingCore/audio/CallAudioMonitor.h"
#include "MeetingCore/audio/Levels.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

float level(std::vector<float> samples) {
    return rmsLevel(samples);
}

TEST(RmsLevel, SkipsWhatIsNotFiniteButCountsIt) {
    EXPECT_EQ(level({}), 0);
    EXPECT_EQ(level({3, 4}), 3.5355339F); // the root of 12.5
    EXPECT_EQ(level({NAN, 2}), 1.4142135F);
    EXPECT_EQ(level({INFINITY, -INFINITY}), 0);
}

TEST(RmsLevel, AddsInArrayOrderInSinglePrecision) {
    // 2^24 + 1 is not a float: added one by one behind 2^24 the ones are lost, in any other order they are not.
    std::vector<float> samples(17, 1);
    samples[0] = 4096;
    EXPECT_EQ(level(samples), std::sqrt(16'777'216.0F / 17.0F));
}

TEST(CallAudioMonitor, RaisesTheAlarmAfterTheWindowOfSilence) {
    CallAudioMonitor monitor(30);
    EXPECT_FALSE(monitor.observe(0.02F, 0, 0));
    EXPECT_FALSE(monitor.observe(0, 0, 29.9));
    EXPECT_TRUE(monitor.observe(0, 0.0019F, 30));
    EXPECT_FALSE(monitor.observe(0, 0.002F, 40)) << "sound from the call clears it at once";
    EXPECT_FALSE(monitor.observe(1, 0, 69.9));
    EXPECT_TRUE(monitor.observe(0, 0, 70));
}

TEST(CallAudioMonitor, CountsFromTheUsersFirstWord) {
    CallAudioMonitor monitor(30);
    EXPECT_FALSE(monitor.observe(0.0099F, 0, 0)) << "too quiet to be speech";
    EXPECT_FALSE(monitor.observe(0, 0.5F, 5));
    EXPECT_FALSE(monitor.observe(0, 0, 1000)) << "nobody has spoken yet";
    EXPECT_FALSE(monitor.observe(0.01F, 0, 1020));
    EXPECT_FALSE(monitor.observe(0, 0, 1049.9));
    EXPECT_TRUE(monitor.observe(0, 0, 1050));
}

} // namespace
} // namespace varnet
