#include "MeetingCore/audio/Resampler.h"

#include "MeetingCore/audio/ProcessorClones.h"
#include "MeetingCore/base/Assert.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace varnet {

namespace {

constexpr double pi = std::numbers::pi;

// A sinc under a Kaiser window. Its length follows from the attenuation and the width of the transition.
constexpr double attenuation = 127;                            // dB
constexpr double beta = 0.1102 * (attenuation - 8.7);          // of the window
constexpr double slope = (attenuation - 8) / (2.285 * 2 * pi); // transition times taps, in cycles a sample
constexpr double passEdge = 0.42;                              // of the slower rate: 6.7 kHz
constexpr double stopEdge = 0.53125;                           // 8.5 kHz

constexpr std::size_t lanes = 32; // sums that do not wait for one another

// Between two of so many phases a straight line is good enough.
constexpr std::int64_t finePhases = 256;
constexpr std::int64_t mostPhases = 1'024;
constexpr int fixedPointBits = 24;

double slowerRate(int sampleRate) {
    return std::min(sampleRate, Resampler::outputRate);
}

std::size_t tapCount(int sampleRate) {
    const double taps = slope * sampleRate / ((stopEdge - passEdge) * slowerRate(sampleRate));
    return static_cast<std::size_t>(std::ceil(taps / lanes)) * lanes;
}

/// Modified Bessel function of the first kind, order 0.
double bessel(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; term > sum * 1e-17; ++k) {
        term *= (x / 2 / k) * (x / 2 / k);
        sum += term;
    }
    return sum;
}

/// The filter's response `distance` input samples from its middle; `cutoff` in cycles a sample.
double kernel(double distance, double halfLength, double cutoff) {
    const double place = distance / halfLength;
    if (std::abs(place) >= 1)
        return 0;
    const double angle = 2 * pi * cutoff * distance;
    const double sinc = angle == 0 ? 1 : std::sin(angle) / angle;
    return 2 * cutoff * sinc * bessel(beta * std::sqrt(1 - place * place)) / bessel(beta);
}

[[gnu::always_inline]] inline float dot(const float* samples, const float* taps, std::size_t count) {
    float sums[lanes] = {};
    for (std::size_t i = 0; i < count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane)
            sums[lane] += samples[i + lane] * taps[i + lane];
    for (std::size_t width = lanes / 2; width > 0; width /= 2)
        for (std::size_t lane = 0; lane < width; ++lane)
            sums[lane] += sums[lane + width];
    return sums[0];
}

void average(std::span<const float> samples, std::size_t channelCount, std::span<float> mono) {
    const float share = 1.0F / static_cast<float>(channelCount);
    std::copy_n(samples.begin(), channelCount == 1 ? mono.size() : 0, mono.begin());
    for (std::size_t frame = 0; channelCount > 1 && frame < mono.size(); ++frame) {
        const auto channels = samples.subspan(frame * channelCount, channelCount);
        mono[frame] = share * std::accumulate(channels.begin(), channels.end(), 0.0F);
    }
    for (float& sample : mono)
        sample = std::isfinite(sample) ? sample : 0.0F;
}

struct Step {
    std::size_t samples;
    std::int64_t fraction;
};

/// Fills `output`, for which the samples must be enough, and returns the position behind it. The filters of a place
/// between two phases, which lie 2 to the power of `phaseBits` apart, are mixed.
VARNET_PROCESSOR_CLONES
Step filter(const float* samples, const float* filters, std::size_t tapCount, int phaseBits, std::int64_t unit,
            Step step, std::int64_t fraction, std::span<float> output) {
    const float* const begin = samples;
    const std::int64_t mask = (std::int64_t{1} << phaseBits) - 1;
    const float width = static_cast<float>(mask + 1);
    for (float& frame : output) {
        const float* taps = filters + static_cast<std::size_t>(fraction >> phaseBits) * tapCount;
        frame = dot(samples, taps, tapCount);
        if (const std::int64_t between = fraction & mask; between != 0)
            frame += static_cast<float>(between) / width * (dot(samples, taps + tapCount, tapCount) - frame);
        samples += step.samples;
        fraction += step.fraction;
        if (fraction >= unit) {
            fraction -= unit;
            ++samples;
        }
    }
    return {static_cast<std::size_t>(samples - begin), fraction};
}

} // namespace

Resampler::Resampler(int sampleRate, int channelCount)
    : m_sampleRate(sampleRate), m_channelCount(static_cast<std::size_t>(channelCount)) {
    VARNET_ASSERT(sampleRate > 0 && sampleRate <= maximumRate && channelCount > 0);
    m_tapCount = tapCount(sampleRate);
    const std::int64_t exactPhases = outputRate / std::gcd(outputRate, sampleRate);
    const std::int64_t phases = exactPhases <= mostPhases ? exactPhases : finePhases;
    m_unit = phases << fixedPointBits;
    m_exactStep = m_step = m_unit * sampleRate / outputRate;
    makeFilters(fixedPointBits);
    m_input.resize(m_tapCount / 2 - 1);
}

void Resampler::makeFilters(int phaseBits) {
    m_phaseBits = phaseBits;
    const std::int64_t phaseCount = m_unit >> phaseBits;
    m_filters.resize(static_cast<std::size_t>(phaseCount + 1) * m_tapCount);
    const double halfLength = static_cast<double>(m_tapCount) / 2;
    const double stop = stopEdge * slowerRate(m_sampleRate) / m_sampleRate;
    const double cutoff = stop - slope / static_cast<double>(m_tapCount) / 2;
    float* tap = m_filters.data();
    for (std::int64_t phase = 0; phase <= phaseCount; ++phase) {
        const double middle = halfLength - 1 + static_cast<double>(phase) / static_cast<double>(phaseCount);
        for (std::size_t i = 0; i < m_tapCount; ++i)
            *tap++ = static_cast<float>(kernel(static_cast<double>(i) - middle, halfLength, cutoff));
    }
}

std::vector<float> Resampler::convert(std::span<const float> samples) {
    VARNET_ASSERT(samples.size() % m_channelCount == 0);
    const std::size_t before = m_input.size();
    m_input.resize(before + samples.size() / m_channelCount);
    average(samples, m_channelCount, std::span(m_input).subspan(before));
    return run(m_input.size());
}

std::vector<float> Resampler::finish() {
    const auto owed = static_cast<std::size_t>(std::llround(pendingFrames()));
    m_input.resize(m_input.size() + 2 * m_tapCount);
    return run(owed);
}

/// Makes all the output that the input allows, but at most `most` frames, and lets go of input that is done with.
std::vector<float> Resampler::run(std::size_t most) {
    if (m_input.size() < m_tapCount)
        return {};
    const auto room = static_cast<std::int64_t>(m_input.size() - m_tapCount + 1) * m_unit - m_fraction;
    const std::int64_t ready = room <= 0 ? 0 : (room - 1) / m_step + 1;
    std::vector<float> output(std::min(most, static_cast<std::size_t>(ready)));
    const Step step{static_cast<std::size_t>(m_step / m_unit), m_step % m_unit};
    const Step done =
        filter(m_input.data(), m_filters.data(), m_tapCount, m_phaseBits, m_unit, step, m_fraction, output);
    m_fraction = done.fraction;
    m_input.erase(m_input.begin(), m_input.begin() + static_cast<std::ptrdiff_t>(done.samples));
    return output;
}

double Resampler::pendingFrames() const {
    const auto lookBehind = static_cast<std::ptrdiff_t>(m_tapCount / 2) - 1;
    const auto samples = static_cast<double>(std::ssize(m_input) - lookBehind);
    return (samples * static_cast<double>(m_unit) - static_cast<double>(m_fraction)) / static_cast<double>(m_step);
}

void Resampler::setCorrection(double correction) {
    const double rate = 1 + std::clamp(correction, -0.01, 0.01);
    m_step = std::llround(static_cast<double>(m_exactStep) / rate);
    int bits = m_phaseBits;
    while (m_step != m_exactStep && m_unit >> bits < finePhases)
        --bits;
    if (bits != m_phaseBits)
        makeFilters(bits);
}

} // namespace varnet
