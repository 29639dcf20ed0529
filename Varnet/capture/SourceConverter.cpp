#include "Varnet/capture/SourceConverter.h"

#include "Varnet/capture/AudioFailure.h"

#include <algorithm>
#include <cmath>

namespace varnet {

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr double frameRate = Resampler::outputRate;

/// The distance between clock and count from which audio has been lost. A lost buffer must be seen as such; a smaller
/// distance is a timestamp that is not quite right, or a little that is caught up without being heard.
double jumpFrames(double bufferSeconds) {
    return frameRate * std::clamp(0.75 * bufferSeconds, 0.004, 0.020);
}

void requirePlausible(std::int64_t time, std::int64_t origin, std::int64_t now) {
    if (time < origin - second || time > now + 2 * second)
        throw TimelineFailure(TimelineFailure::Kind::invalidTimestamp);
}

} // namespace

std::vector<PlacedSamples> SourceConverter::convert(const CaptureBuffer& buffer, std::int64_t now) {
    requirePlausible(buffer.time, m_origin, now);
    const auto& [sampleRate, channelCount] = buffer.format;
    if (sampleRate <= 0 || channelCount <= 0 || buffer.samples.size() % static_cast<std::size_t>(channelCount) != 0)
        throw AudioFailure(AudioFailure::Kind::format);
    if (sampleRate > Resampler::maximumRate)
        throw AudioFailure(AudioFailure::Kind::conversion);
    if (buffer.samples.empty())
        return {};
    const auto count = static_cast<std::int64_t>(buffer.samples.size()) / channelCount;
    const double seconds = static_cast<double>(count) / sampleRate;
    const double clock = static_cast<double>(buffer.time - m_origin) * frameRate / second;

    std::vector<PlacedSamples> placed;
    const double behind = clock + m_anchorOffset - position();
    const bool goesOn = m_anchored && std::abs(behind) <= jumpFrames(seconds);
    if (!goesOn || buffer.format != m_format)
        if (auto rest = finish())
            placed.push_back(std::move(*rest));
    if (!goesOn) {
        m_nextFrame = std::llround(clock);
        m_anchorOffset = static_cast<double>(m_nextFrame) - clock;
        m_anchored = true;
    }
    if (!m_resampler) {
        m_resampler.emplace(sampleRate, channelCount);
        m_format = buffer.format;
    }
    m_resampler->setCorrection(m_follower.correction(goesOn ? behind : 0, seconds));
    if (auto next = place(m_resampler->convert(buffer.samples))) {
        if (!placed.empty() && goesOn)
            placed.back().samples.insert(placed.back().samples.end(), next->samples.begin(), next->samples.end());
        else
            placed.push_back(std::move(*next));
    }
    m_endTime = buffer.time + count * second / sampleRate;
    return placed;
}

std::optional<PlacedSamples> SourceConverter::finish() {
    if (!m_resampler)
        return std::nullopt;
    auto rest = m_resampler->finish();
    m_resampler.reset();
    return place(std::move(rest));
}

std::optional<PlacedSamples> SourceConverter::finishIfQuietSince(std::int64_t time) {
    return m_endTime < time ? finish() : std::nullopt;
}

/// Where the samples so far end, in frames with a fraction.
double SourceConverter::position() const {
    return static_cast<double>(m_nextFrame) + (m_resampler ? m_resampler->pendingFrames() : 0);
}

std::optional<PlacedSamples> SourceConverter::place(std::vector<float> samples) {
    if (samples.empty())
        return std::nullopt;
    PlacedSamples placed{m_nextFrame, std::move(samples)};
    m_nextFrame += static_cast<std::int64_t>(placed.samples.size());
    return placed;
}

} // namespace varnet
