#include "MeetingCore/audio/Resampler.h"
#include "tests/support/Tone.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

std::vector<float> convertInBuffers(Resampler& resampler, const std::vector<float>& input, std::size_t size) {
    std::vector<float> output;
    for (std::size_t i = 0; i < input.size(); i += size) {
        const auto part = resampler.convert(std::span(input).subspan(i, std::min(size, input.size() - i)));
        output.insert(output.end(), part.begin(), part.end());
    }
    const auto rest = resampler.finish();
    output.insert(output.end(), rest.begin(), rest.end());
    return output;
}

struct Fit {
    double signalToNoise; // dB
    double amplitude;
    double phase; // of a sine that starts at frame 0, radians
};

Fit fit(std::span<const float> samples, double frequency) {
    const auto found = test::toneIn(samples, frequency, 16'000);
    double noise = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(i) / 16'000 + std::arg(found);
        noise += std::pow(samples[i] - std::abs(found) * std::sin(angle), 2);
    }
    const double power = std::norm(found) / 2 * static_cast<double>(samples.size());
    return {10 * std::log10(power / noise), std::abs(found), std::arg(found)};
}

TEST(Resampler, KeepsSpeechClearAndInItsPlaceAndLetsNothingFoldBackIntoIt) {
    for (const int rate : {8'000, 16'000, 44'100, 48'000, 96'000}) {
        SCOPED_TRACE(rate);
        // Channels are averaged. What the new rate cannot carry is in the second, and would be heard at 7,500 Hz.
        const bool stereo = rate > 17'000;
        const auto speech = test::tone(1'000, 2, stereo ? 1.8F : 0.9F, rate), above = test::tone(8'500, 2, 1.8F, rate);
        std::vector<float> input;
        for (std::size_t i = 0; i < speech.size(); ++i)
            input.insert(input.end(), {speech[i], above[i]});
        Resampler resampler(rate, stereo ? 2 : 1);
        const auto output = convertInBuffers(resampler, stereo ? input : speech, 1'024);
        EXPECT_NEAR(static_cast<double>(output.size()), 32'000, 1);
        const Fit result = fit(std::span(output).subspan(8'000, 16'000), 1'000);
        EXPECT_GT(result.signalToNoise, 120);
        EXPECT_NEAR(result.amplitude, 0.9, 1e-4);
        EXPECT_NEAR(result.phase, 0, 4e-4) << "a thousandth of a frame";
    }
}

} // namespace
} // namespace varnet
