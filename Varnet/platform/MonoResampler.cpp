#include "Varnet/platform/MonoResampler.h"

#include "Varnet/platform/AudioFileReader.h"

#include <algorithm>
#include <string>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/frame.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

namespace varnet {

namespace {

/// Beyond them a header is damaged, and a short file would become endless.
constexpr int lowestRate = 1'000, highestRate = 768'000;

std::uint64_t placesOf(const AVFrame& frame) {
    return frame.ch_layout.order == AV_CHANNEL_ORDER_NATIVE ? frame.ch_layout.u.mask : 0;
}

} // namespace

void MonoResampler::Deleter::operator()(SwrContext* context) const {
    ::swr_free(&context);
}

void MonoResampler::begin(const AVFrame& frame) {
    if (frame.sample_rate < lowestRate || frame.sample_rate > highestRate)
        throw UnreadableAudio("its sample rate of " + std::to_string(frame.sample_rate) + " Hz is not one of sound");
    m_sampleFormat = frame.format;
    m_rate = frame.sample_rate;
    m_channelCount = frame.ch_layout.nb_channels;
    m_places = placesOf(frame);

    AVChannelLayout mono{};
    ::av_channel_layout_default(&mono, 1);
    const auto format = static_cast<AVSampleFormat>(frame.format);
    AVChannelLayout places{};
    places.order = AV_CHANNEL_ORDER_UNSPEC;
    places.nb_channels = m_channelCount;
    const auto open = [&](AVChannelLayout input, const std::vector<double>& weights) {
        SwrContext* context = nullptr;
        const int error =
            ::swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_S16, outputRate, &input, format, m_rate, 0, nullptr);
        m_context.reset(context);
        if (error < 0)
            return false;
        ::av_opt_set_int(context, "resampler", SWR_ENGINE_SOXR, 0);
        // Mixing and filtering in 16 bits would add their noise.
        if (m_rate != outputRate || m_channelCount != 1)
            ::av_opt_set_sample_fmt(context, "internal_sample_fmt", AV_SAMPLE_FMT_FLTP, 0);
        return (weights.empty() || ::swr_set_matrix(context, weights.data(), static_cast<int>(weights.size())) >= 0) &&
               ::swr_init(context) >= 0;
    };
    if (m_places != 0 && open(frame.ch_layout, {}))
        return;
    const std::vector<double> even(static_cast<std::size_t>(m_channelCount), 1.0 / m_channelCount);
    if (!open(places, even))
        throw UnreadableAudio("its sample format cannot be converted");
}

void MonoResampler::convert(const AVFrame& frame, std::vector<std::int16_t>& samples) {
    if (m_context && (frame.format != m_sampleFormat || frame.sample_rate != m_rate ||
                      frame.ch_layout.nb_channels != m_channelCount || placesOf(frame) != m_places))
        finish(samples);
    if (!m_context)
        begin(frame);
    run(frame.extended_data, frame.nb_samples, samples);
}

void MonoResampler::finish(std::vector<std::int16_t>& samples) {
    if (m_context)
        run(nullptr, 0, samples);
    m_context.reset();
}

void MonoResampler::run(const std::uint8_t* const* planes, int frameCount, std::vector<std::int16_t>& samples) {
    int count = 0;
    do {
        // At the end the context tells less than it still holds, and gives it in more than one call.
        const int room = std::max(::swr_get_out_samples(m_context.get(), frameCount), 4096);
        const std::size_t before = samples.size();
        samples.resize(before + static_cast<std::size_t>(room));
        auto* target = reinterpret_cast<std::uint8_t*>(samples.data() + before);
        count = ::swr_convert(m_context.get(), &target, room, const_cast<const std::uint8_t**>(planes), frameCount);
        samples.resize(before + static_cast<std::size_t>(std::max(count, 0)));
        if (count < 0)
            throw UnreadableAudio("its samples cannot be converted");
    } while (!planes && count > 0);
}

} // namespace varnet
