#include "MeetingCore/audio/AudioTimeline.h"

#include "MeetingCore/base/Assert.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace varnet {

namespace {

void copyFinite(std::span<const float> samples, float* target) {
    for (std::size_t i = 0; i < samples.size(); ++i)
        target[i] = std::isfinite(samples[i]) ? samples[i] : 0.0F;
}

/// Takes `count` frames from `cell` on out of a ring, leaving zeros.
std::vector<float> take(std::vector<float>& ring, std::int64_t cell, std::int64_t count) {
    const auto first = ring.begin() + cell;
    const auto firstCount = std::min(count, ring.end() - first);
    std::vector<float> taken;
    taken.reserve(static_cast<std::size_t>(count));
    taken.insert(taken.end(), first, first + firstCount);
    taken.insert(taken.end(), ring.begin(), ring.begin() + (count - firstCount));
    std::fill_n(first, firstCount, 0.0F);
    std::fill_n(ring.begin(), count - firstCount, 0.0F);
    return taken;
}

} // namespace

std::string_view rawValue(CaptureSource source) {
    return source == CaptureSource::microphone ? "microphone" : "system";
}

std::optional<CaptureSource> captureSource(std::string_view text) {
    for (const CaptureSource source : allCaptureSources)
        if (rawValue(source) == text)
            return source;
    return std::nullopt;
}

const char* TimelineFailure::what() const noexcept {
    return m_kind == Kind::exceededCapacity ? "The audio and the clock of the recording are too far apart."
                                            : "An audio device delivered sound with an impossible time.";
}

std::vector<float> AudioBlock::mixed() const {
    std::vector<float> mix(std::min(microphone.size(), system.size()));
    for (std::size_t i = 0; i < mix.size(); ++i)
        mix[i] = std::max(std::min(microphone[i] + system[i], 1.0F), -1.0F);
    return mix;
}

AudioTimeline::AudioTimeline(std::int64_t capacity) : m_capacity(capacity) {
    VARNET_ASSERT(capacity > 0);
    m_microphone.resize(static_cast<std::size_t>(capacity));
    m_system.resize(static_cast<std::size_t>(capacity));
}

void AudioTimeline::append(std::span<const float> samples, CaptureSource source, std::int64_t frame) {
    const auto count = static_cast<std::int64_t>(samples.size());
    if (frame < -m_capacity || frame > std::numeric_limits<std::int64_t>::max() - count)
        throw TimelineFailure(TimelineFailure::Kind::invalidTimestamp);
    if (frame + count - m_renderedFrames > m_capacity)
        throw TimelineFailure(TimelineFailure::Kind::exceededCapacity);
    const std::int64_t late = std::clamp<std::int64_t>(m_renderedFrames - frame, 0, count);
    m_lateFrames += late;
    samples = samples.subspan(static_cast<std::size_t>(late));
    if (samples.empty())
        return;
    auto& ring = source == CaptureSource::microphone ? m_microphone : m_system;
    const auto cell = static_cast<std::size_t>((frame + late) % m_capacity);
    const std::size_t untilEnd = std::min(samples.size(), ring.size() - cell);
    copyFinite(samples.first(untilEnd), ring.data() + cell);
    copyFinite(samples.subspan(untilEnd), ring.data());
}

std::vector<AudioBlock> AudioTimeline::drain(std::int64_t until, std::int64_t chunkSize) {
    if (m_renderedFrames >= until)
        return {};
    const std::int64_t total = until - m_renderedFrames;
    if (chunkSize <= 0 || total > m_capacity)
        throw TimelineFailure(TimelineFailure::Kind::exceededCapacity);
    std::vector<AudioBlock> blocks;
    blocks.reserve(static_cast<std::size_t>((total - 1) / chunkSize + 1));
    while (m_renderedFrames < until) {
        const std::int64_t count = std::min(chunkSize, until - m_renderedFrames);
        const std::int64_t cell = m_renderedFrames % m_capacity;
        blocks.push_back({take(m_microphone, cell, count), take(m_system, cell, count)});
        m_renderedFrames += count;
    }
    return blocks;
}

} // namespace varnet
