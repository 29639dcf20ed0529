#include "Varnet/platform/Resampler.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Failures.h"

#include <algorithm>
#include <cmath>
#include <string>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/error.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace varnet {

namespace {

// The library's own engine, since its other one delivers in bursts and cannot follow a clock. The resampling stage is
// asked for also where the rates are equal, so that it can be corrected.
constexpr const char* options =
    "filter_size=160:cutoff=0.92:filter_type=kaiser:kaiser_beta=13:exact_rational=1:flags=res";

constexpr int correctionFrames = 1'000'000; ///< 63 seconds, far more than one call's output
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

void check(int result) {
    if (result >= 0)
        return;
    char reason[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(result, reason, sizeof reason);
    throw Failure("Audio could not be converted: " + std::string(reason) + ".");
}

} // namespace

void Resampler::Free::operator()(SwrContext* context) const {
    swr_free(&context);
}

Resampler::Resampler(int sampleRate, int channelCount)
    : m_sampleRate(sampleRate), m_channelCount(static_cast<std::size_t>(channelCount)) {
    VARNET_ASSERT(sampleRate > 0 && channelCount > 0);
    AVChannelLayout mono{};
    av_channel_layout_default(&mono, 1);
    SwrContext* context = nullptr;
    const int made = swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_FLT, outputRate, &mono, AV_SAMPLE_FMT_FLT,
                                         sampleRate, 0, nullptr);
    m_context.reset(context);
    check(made);
    check(av_opt_set_from_string(context, options, nullptr, "=", ":"));
    check(swr_init(context));
}

std::vector<float> Resampler::convert(std::span<const float> samples) {
    VARNET_ASSERT(samples.size() % m_channelCount == 0);
    if (samples.empty())
        return {};
    m_mono.resize(samples.size() / m_channelCount);
    const float share = 1.0F / static_cast<float>(m_channelCount);
    for (std::size_t frame = 0; frame < m_mono.size(); ++frame) {
        float sum = 0;
        for (const float sample : samples.subspan(frame * m_channelCount, m_channelCount))
            sum += sample;
        // The filter would spread one bad sample over hundreds.
        m_mono[frame] = std::isfinite(sum) ? sum * share : 0.0F;
    }
    return run(m_mono);
}

std::vector<float> Resampler::finish() {
    const auto owed = static_cast<std::size_t>(std::llround(pendingFrames()));
    // Silence pushes out what the filter holds back. The library's own way of ending swallows a stretch that is shorter
    // than its filter.
    m_mono.assign(static_cast<std::size_t>(std::max(m_sampleRate / 20, 1'000)), 0.0F);
    std::vector<float> output = run(m_mono);
    output.resize(owed);
    return output;
}

std::vector<float> Resampler::run(std::span<const float> mono) {
    const int room = swr_get_out_samples(m_context.get(), static_cast<int>(mono.size()));
    check(room);
    std::vector<float> output(static_cast<std::size_t>(room));
    auto* target = reinterpret_cast<std::uint8_t*>(output.data());
    const auto* source = reinterpret_cast<const std::uint8_t*>(mono.data());
    const int count = swr_convert(m_context.get(), &target, room, &source, static_cast<int>(mono.size()));
    check(count);
    output.resize(static_cast<std::size_t>(count));
    return output;
}

double Resampler::pendingFrames() const {
    return static_cast<double>(swr_get_delay(m_context.get(), nanosecondsPerSecond)) * outputRate /
           nanosecondsPerSecond;
}

void Resampler::setCorrection(double correction) {
    const double limited = std::clamp(correction, -0.01, 0.01);
    const int frames = static_cast<int>(std::lround(limited * correctionFrames));
    // The first correction costs some milliseconds for its filters; without one the exact ones are used.
    if (frames == 0 && !m_corrected)
        return;
    m_corrected = true;
    check(swr_set_compensation(m_context.get(), frames, correctionFrames));
}

} // namespace varnet
