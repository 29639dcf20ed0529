#pragma once

#include <complex>
#include <numbers>
#include <span>
#include <vector>

namespace varnet::test {

/// A sine that starts at the first sample.
inline std::vector<float> tone(double frequency, double seconds, float amplitude, int sampleRate) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            amplitude * static_cast<float>(std::sin(2 * std::numbers::pi * frequency * double(i) / sampleRate));
    return samples;
}

/// The sine of that frequency which fits the samples best, over whole periods: its amplitude is the size of the
/// number, its phase at the first sample the angle.
inline std::complex<double> toneIn(std::span<const float> samples, double frequency, int sampleRate) {
    std::complex<double> sum = 0;
    for (std::size_t i = 0; i < samples.size(); ++i)
        sum += double(samples[i]) * std::polar(1.0, -2 * std::numbers::pi * frequency * double(i) / sampleRate);
    return samples.empty() ? 0 : sum * std::complex(0.0, 2 / double(samples.size()));
}

} // namespace varnet::test
