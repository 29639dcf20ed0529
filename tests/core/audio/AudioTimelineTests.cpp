#include "MeetingCore/audio/AudioTimeline.h"
#include "tests/support/Thrown.h"

#include <gtest/gtest.h>

#include <limits>

namespace varnet {
namespace {

using enum CaptureSource;
using Samples = std::vector<float>;

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(AudioTimeline, HandsOutSilenceInWholeBlocksAndARest) {
    AudioTimeline timeline(10);
    const auto blocks = timeline.drain(10, 4);
    ASSERT_EQ(blocks.size(), 3U);
    EXPECT_EQ(blocks[1].system, Samples(4));
    EXPECT_EQ(blocks[2].microphone, Samples(2));
    EXPECT_TRUE(timeline.drain(-7, 4).empty());
    EXPECT_EQ(test::kindThrown<TimelineFailure>([&] { timeline.drain(21, 4); }),
              TimelineFailure::Kind::exceededCapacity);
}

TEST(AudioTimeline, DropsAndCountsOnlyWhatComesBehindTheReadPosition) {
    AudioTimeline timeline(10);
    timeline.drain(5, 5);
    timeline.append(Samples{1, 2, 3, 4, 5}, microphone, 3);
    EXPECT_EQ(timeline.lateFrames(), 2);
    timeline.append(Samples{9, 9, 9}, microphone, -10);
    EXPECT_EQ(timeline.lateFrames(), 5);
    EXPECT_EQ(timeline.drain(10, 10).at(0).microphone, (Samples{3, 4, 5, 0, 0}));
}

TEST(AudioTimeline, RefusesWholeBuffersAndStaysUnchanged) {
    const struct {
        const char* name;
        std::size_t count;
        std::int64_t frame;
        std::optional<TimelineFailure::Kind> expected;
    } rows[] = {
        {"as far ahead as the ring is long", 10, 0, std::nullopt},
        {"one frame too many", 11, 0, TimelineFailure::Kind::exceededCapacity},
        {"one frame too far", 1, 10, TimelineFailure::Kind::exceededCapacity},
        {"empty, too early", 0, -11, TimelineFailure::Kind::invalidTimestamp},
        {"an end beyond 64 bits", 2, largest - 1, TimelineFailure::Kind::invalidTimestamp},
        {"an end at the last frame", 1, largest - 1, TimelineFailure::Kind::exceededCapacity},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AudioTimeline timeline(10);
        EXPECT_EQ(test::kindThrown<TimelineFailure>(
                      [&] { timeline.append(Samples(row.count, 0.5F), microphone, row.frame); }),
                  row.expected);
        if (row.expected)
            EXPECT_EQ(timeline.drain(10, 10).at(0).microphone, Samples(10));
    }
}

TEST(AudioTimeline, KeepsFrameOrderAcrossTheEndOfTheRing) {
    AudioTimeline timeline(10);
    timeline.drain(8, 8);
    timeline.append(Samples{1, 2, 3, 4}, microphone, 8);
    timeline.append(Samples{5, 6}, system, 9);
    const auto blocks = timeline.drain(12, 4);
    EXPECT_EQ(blocks[0].microphone, (Samples{1, 2, 3, 4}));
    EXPECT_EQ(blocks[0].system, (Samples{0, 5, 6, 0}));
    EXPECT_EQ(timeline.drain(22, 10).at(0).microphone, Samples(10)) << "a drained cell is silent on the next lap";
}

TEST(AudioTimeline, LetsALaterWriteWinAndSilencesWhatIsNotFinite) {
    AudioTimeline timeline(10);
    timeline.append(Samples{1, 1, 1}, microphone, 0);
    timeline.append(Samples{2, NAN, INFINITY, -INFINITY}, microphone, 1);
    EXPECT_EQ(timeline.drain(5, 5).at(0).microphone, (Samples{1, 2, 0, 0, 0}));
}

TEST(AudioBlock, MixesWithinTheLimits) {
    const AudioBlock block{{0.75F, -0.75F, 0.25F, 1}, {0.5F, -0.5F, 0.5F}};
    EXPECT_EQ(block.mixed(), (Samples{1, -1, 0.75F}));
}

} // namespace
} // namespace varnet
