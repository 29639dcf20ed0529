#include "Varnet/platform/linux/CaptureRing.h"

#include <gmock/gmock.h>

#include <thread>

namespace varnet {
namespace {

using testing::ElementsAre;

constexpr CaptureFormat mono{48'000, 1};

std::vector<float> taken(CaptureRing& ring) {
    const auto block = ring.front();
    if (!block)
        return {};
    std::vector<float> samples(block->samples.begin(), block->samples.end());
    ring.pop();
    return samples;
}

TEST(CaptureRing, DropsAndCountsWhatDoesNotFitAndKeepsWhatItHas) {
    CaptureRing ring(4, 2);
    EXPECT_TRUE(ring.push(mono, 0, std::vector{1.f, 2.f, 3.f}));
    EXPECT_FALSE(ring.push(mono, 0, std::vector{4.f, 5.f})) << "no place for its samples";
    EXPECT_TRUE(ring.push(mono, 0, std::vector{6.f}));
    EXPECT_EQ(ring.takeDroppedCount(), 1u);
    EXPECT_THAT(taken(ring), ElementsAre(1, 2, 3));
    EXPECT_TRUE(ring.push(mono, 0, std::vector{7.f}));
    EXPECT_FALSE(ring.push(mono, 0, std::vector{8.f})) << "no place for a third block";
    EXPECT_THAT(taken(ring), ElementsAre(6));
    EXPECT_THAT(taken(ring), ElementsAre(7));
}

TEST(CaptureRing, CarriesEveryBlockWholeFromOneThreadToAnother) {
    CaptureRing ring(1'000, 16);
    constexpr int blockCount = 20'000;
    const auto block = [](int i) { return std::vector<float>(static_cast<std::size_t>(1 + i % 97), float(i)); };
    std::thread writer([&] {
        for (int i = 0; i < blockCount; ++i)
            while (!ring.push(mono, i, block(i)))
                std::this_thread::yield();
    });
    int damaged = 0;
    for (int i = 0; i < blockCount; ++i) {
        while (!ring.front())
            std::this_thread::yield();
        damaged += ring.front()->time != i || taken(ring) != block(i);
    }
    writer.join();
    EXPECT_EQ(damaged, 0);
}

} // namespace
} // namespace varnet
