#include "Varnet/capture/AudioFailure.h"
#include "Varnet/capture/SourceConverter.h"
#include "tests/support/Tone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace varnet {
namespace {

constexpr std::int64_t origin = 77'000'000'000;
constexpr std::int64_t farAhead = std::numeric_limits<std::int64_t>::max() / 2;
constexpr CaptureFormat mono48{48'000, 1};
constexpr double quantum = 1'024 / 48'000.0;

CaptureBuffer buffer(std::span<const float> samples, double seconds, CaptureFormat format = mono48) {
    return {CaptureSource::microphone, format, samples, origin + std::llround(seconds * 1e9)};
}

/// Puts what comes out on a track and remembers the holes; nothing may overlap.
struct Track {
    std::vector<float> samples;
    std::vector<std::pair<std::int64_t, std::int64_t>> holes; // from, to

    void add(const std::vector<PlacedSamples>& placed) {
        for (const PlacedSamples& next : placed) {
            ASSERT_GE(next.frame, end());
            if (next.frame > end())
                holes.emplace_back(end(), next.frame);
            samples.resize(static_cast<std::size_t>(next.frame));
            samples.insert(samples.end(), next.samples.begin(), next.samples.end());
        }
    }
    std::int64_t end() const { return static_cast<std::int64_t>(samples.size()); }
};

TEST(SourceConverter, AnchorsASourceAtItsRoundedFrame) {
    const std::vector<float> samples(4'800, 0.5F);
    const std::pair<double, std::int64_t> rows[] = {{0.50004, 8'001}, {-0.00003, 0}, {-0.5, -8'000}, {0.00003125, 1}};
    for (const auto& [seconds, frame] : rows) {
        SourceConverter converter(origin);
        EXPECT_EQ(converter.convert(buffer(samples, seconds), farAhead).at(0).frame, frame) << seconds;
    }
}

TEST(SourceConverter, KeepsLostAudioSilentAtItsOwnPlace) {
    // The buffer after the first ten is lost: frames 3413.33 to 3754.67.
    SourceConverter converter(origin);
    const std::vector<float> samples(1'024, 0.5F);
    Track track;
    for (const int i : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13})
        track.add(converter.convert(buffer(samples, i * quantum), farAhead));
    ASSERT_EQ(track.holes.size(), 1U);
    EXPECT_NEAR(static_cast<double>(track.holes[0].first), 3'413.33, 1);
    EXPECT_EQ(track.holes[0].second, 3'755);
    EXPECT_GT(track.samples[3'410], 0.3F) << "the end before the gap is whole";
    EXPECT_EQ(track.samples[3'500], 0) << "and does not reach into it";
    EXPECT_GT(track.samples[3'760], 0.3F);
}

TEST(SourceConverter, GoesOnThroughAChangeOfFormat) {
    SourceConverter converter(origin);
    Track track;
    track.add(converter.convert(buffer(std::vector<float>(4'800, 0.5F), 0), farAhead));
    track.add(converter.convert(buffer(std::vector<float>(8'820, 0.5F), 0.1, {44'100, 2}), farAhead));
    track.add({*converter.finish()});
    EXPECT_TRUE(track.holes.empty());
    EXPECT_NEAR(static_cast<double>(track.samples.size()), 3'200, 1);
}

TEST(SourceConverter, RefusesImpossibleTimesAndFormats) {
    const std::vector<float> samples(96, 0.0F);
    const std::int64_t now = origin + 10'000'000'000;
    for (const double seconds : {-1.0, 12.0})
        EXPECT_NO_THROW(SourceConverter(origin).convert(buffer(samples, seconds), now));
    for (const double seconds : {-1.000001, 12.000001})
        EXPECT_THROW(SourceConverter(origin).convert(buffer(samples, seconds), now), TimelineFailure);
    SourceConverter converter(origin);
    for (const CaptureFormat format : {CaptureFormat{0, 1}, {48'000, 0}, {1'000'000, 1}})
        EXPECT_THROW(converter.convert(buffer(samples, 0, format), now), AudioFailure);
}

/// How far a tone of 500 Hz in `placed` is from where it belongs, in frames; a period is 32 frames.
double displacement(const PlacedSamples& placed) {
    const auto whole = std::span(placed.samples).first(placed.samples.size() / 32 * 32);
    const double turns = static_cast<double>(placed.frame) / 32;
    return std::abs(std::arg(test::toneIn(whole, 500, 16'000) * std::polar(1.0, -2 * std::numbers::pi * turns))) /
           (2 * std::numbers::pi) * 32;
}

/// A device whose clock is fast or slow. It hears a tone that is exact in true time; what comes out must be that tone
/// in true time.
void followsSkewedClock(double skew) {
    constexpr double seconds = 900;
    const double deviceRate = 16'000 * (1 + skew);
    SourceConverter converter(origin);
    std::vector<float> samples(1'024);
    std::int64_t next = 0;
    double worst = 0;
    for (int i = 0; i < static_cast<int>(seconds * deviceRate) / 1'024; ++i) {
        const double time = i * 1'024 / deviceRate;
        for (std::size_t k = 0; k < samples.size(); ++k)
            samples[k] =
                static_cast<float>(std::sin(2 * std::numbers::pi * 500 * (time + static_cast<double>(k) / deviceRate)));
        for (const PlacedSamples& placed : converter.convert(buffer(samples, time, {16'000, 1}), farAhead)) {
            ASSERT_EQ(placed.frame, next) << "neither a hole nor an overlap";
            next += static_cast<std::int64_t>(placed.samples.size());
            if (time > 0.2)
                worst = std::max(worst, displacement(placed));
        }
    }
    EXPECT_LT(worst, 0.5) << "the source began exactly on a frame";
    EXPECT_NEAR(static_cast<double>(next), seconds * 16'000, 1'200) << "all but the last buffer";
}

TEST(SourceConverter, StaysWithAFastOrSlowDevice) {
    followsSkewedClock(100e-6);
    followsSkewedClock(-100e-6);
}

} // namespace
} // namespace varnet
