#include "engine/VoicePrint.h"

#include "engine/Failure.h"

#include <sphinxbase/fe.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace engine {
namespace {

constexpr int pitchRate = 8000;
constexpr int shortestPeriod = pitchRate / 400;
constexpr int longestPeriod = pitchRate / 60;
constexpr int correlated = 160; // samples at pitchRate
constexpr double voiced = 0.6;  // normalised correlation at one period's distance

std::vector<float> atPitchRate(std::span<const std::int16_t> samples) {
    std::vector<float> halved(samples.size() / 2);
    for (std::size_t i = 0; i < halved.size(); ++i)
        halved[i] = 0.5F * (static_cast<float>(samples[2 * i]) + static_cast<float>(samples[2 * i + 1]));
    return halved;
}

float correlation(const float* a, const float* b) {
    float sum = 0;
    for (int i = 0; i < correlated; ++i)
        sum += a[i] * b[i];
    return sum;
}

/// The pitch in Hz at a place of a signal at pitchRate, absent where there is none.
std::optional<double> pitchAt(const float* signal) {
    const float energy = correlation(signal, signal);
    if (energy < correlated * 100.0F)
        return {};
    std::array<float, longestPeriod + 2> strength{};
    float best = 0;
    for (int period = shortestPeriod; period <= longestPeriod; ++period) {
        const float* later = signal + period;
        strength[static_cast<std::size_t>(period)] =
            correlation(signal, later) / std::sqrt(energy * correlation(later, later) + 1);
        best = std::max(best, strength[static_cast<std::size_t>(period)]);
    }
    if (best < voiced)
        return {};
    // The first peak that is nearly as good: the later ones are its multiples.
    for (std::size_t period = shortestPeriod + 1; period <= longestPeriod; ++period) {
        if (strength[period] > 0.88F * best && strength[period] >= strength[period - 1] &&
            strength[period] >= strength[period + 1])
            return static_cast<double>(pitchRate) / static_cast<double>(period);
    }
    return {};
}

} // namespace

void VoiceAnalyzer::Release::operator()(fe_s* frontEnd) const {
    fe_free(frontEnd);
}

VoiceAnalyzer::VoiceAnalyzer() {
    cmd_ln_t* options =
        cmd_ln_init(nullptr, fe_get_args(), TRUE, "-ncep", "20", "-nfilt", "30", "-lowerf", "100", "-upperf", "6800",
                    "-transform", "dct", "-remove_noise", "no", "-remove_silence", "no", nullptr);
    m_frontEnd.reset(fe_init_auto_r(options));
    cmd_ln_free_r(options);
    if (!m_frontEnd)
        throw Failure("The voice analysis could not be set up.");
}

std::vector<std::array<double, VoicePrint::dimensions>> VoiceAnalyzer::cepstra(std::span<const std::int16_t> samples) {
    mfcc_t** block = nullptr;
    int32 count = 0;
    fe_start_utt(m_frontEnd.get());
    if (fe_process_utt(m_frontEnd.get(), samples.data(), samples.size(), &block, &count) < 0)
        return {};
    std::vector<std::array<double, VoicePrint::dimensions>> result(static_cast<std::size_t>(count));
    for (std::size_t frame = 0; frame < result.size(); ++frame)
        std::copy_n(block[frame] + 1, VoicePrint::dimensions, result[frame].begin());
    fe_free_2d(static_cast<void*>(block));
    return result;
}

VoicePrint VoiceAnalyzer::measure(std::span<const std::int16_t> samples) {
    const auto frames = cepstra(samples);
    const std::vector<float> signal = atPitchRate(samples);
    VoicePrint print;
    std::vector<double> pitches;
    for (std::size_t frame = 0; frame < frames.size(); ++frame) {
        const std::size_t place = frame * pitchRate / 100;
        if (place + correlated + longestPeriod > signal.size())
            break;
        const std::optional<double> pitch = pitchAt(signal.data() + place);
        if (!pitch)
            continue;
        pitches.push_back(std::log(*pitch));
        for (std::size_t i = 0; i < VoicePrint::dimensions; ++i)
            print.cepstrum[i] += frames[frame][i];
    }
    if (pitches.empty())
        return print;
    print.frames = static_cast<int>(pitches.size());
    for (double& value : print.cepstrum)
        value /= print.frames;
    const auto middle = pitches.begin() + print.frames / 2;
    std::nth_element(pitches.begin(), middle, pitches.end());
    print.pitch = *middle;
    return print;
}

} // namespace engine
