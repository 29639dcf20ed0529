#include "Varnet/platform/linux/PlaybackRing.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

using Frames = std::vector<float>;

Frames take(PlaybackRing& ring, std::size_t count, std::int64_t time) {
    Frames frames(count, 9);
    ring.take(frames, time);
    return frames;
}

TEST(PlaybackRing, FadesOutWhatIsCutAndTellsWhatIsHeard) {
    PlaybackRing ring(1'000, 16, 4);
    EXPECT_EQ(take(ring, 2, 0), (Frames{0, 0}));
    ring.write(Frames(10, 1));
    EXPECT_EQ(ring.room(), 6U);
    EXPECT_EQ(take(ring, 3, 5'000'000), (Frames{1, 1, 1}));
    EXPECT_EQ(ring.heard(5'000'000), 0);
    EXPECT_EQ(ring.heard(7'000'000), 2);

    EXPECT_EQ(ring.cut(), 10U);
    ring.write(Frames{2, 3});
    EXPECT_EQ(take(ring, 7, 8'000'000), (Frames{0.75F, 0.5F, 0.25F, 0, 2, 3, 0}));
    EXPECT_EQ(ring.heard(12'000'000), 10) << "the first frame after the cut comes after the four that fade";
    EXPECT_EQ(ring.taken(), 12U);
    EXPECT_EQ(ring.room(), 16U);

    // Silence on the way is no sound: what comes after it is heard by its own time.
    EXPECT_EQ(take(ring, 100, 15'000'000), Frames(100, 0));
    ring.write(Frames(16, 4));
    EXPECT_EQ(take(ring, 16, 115'000'000), Frames(16, 4));
    EXPECT_EQ(ring.heard(115'000'000), 12);
}

} // namespace
} // namespace varnet::test
