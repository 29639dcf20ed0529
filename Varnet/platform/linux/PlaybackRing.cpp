#include "Varnet/platform/linux/PlaybackRing.h"

#include "MeetingCore/base/Assert.h"

#include <algorithm>

namespace varnet {

PlaybackRing::PlaybackRing(std::uint32_t sampleRate, std::size_t capacity, std::size_t fadeFrames)
    : m_sampleRate(sampleRate), m_fadeFrames(fadeFrames), m_samples(capacity) {
    VARNET_ASSERT(sampleRate > 0 && capacity > fadeFrames);
}

std::size_t PlaybackRing::room() const noexcept {
    return m_samples.size() - static_cast<std::size_t>(m_written.load(std::memory_order_relaxed) - taken());
}

void PlaybackRing::write(std::span<const float> frames) noexcept {
    VARNET_ASSERT(frames.size() <= room());
    const std::uint64_t begin = m_written.load(std::memory_order_relaxed);
    for (std::size_t i = 0; i < frames.size(); ++i)
        m_samples[cell(begin + i)] = frames[i];
    m_written.store(begin + frames.size(), std::memory_order_release);
}

std::uint64_t PlaybackRing::cut() noexcept {
    const std::uint64_t end = m_written.load(std::memory_order_relaxed);
    m_cut.store(end, std::memory_order_release);
    return end;
}

void PlaybackRing::take(std::span<float> frames, std::int64_t time) noexcept {
    std::uint64_t next = m_taken.load(std::memory_order_relaxed);
    std::size_t filled = 0;
    if (const std::uint64_t cut = m_cut.load(std::memory_order_acquire); next < cut) {
        const auto old = static_cast<std::size_t>(std::min<std::uint64_t>(cut - next, m_fadeFrames));
        for (const std::size_t count = std::min(old, frames.size()); filled < count; ++filled)
            frames[filled] =
                m_samples[cell(next + filled)] * (1 - static_cast<float>(filled + 1) / static_cast<float>(count));
        next = cut;
    }
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(written() - next, frames.size() - filled));
    if (count > 0)
        m_origin.store(time + nanoseconds(filled) - nanoseconds(next), std::memory_order_release);
    for (std::size_t i = 0; i < count; ++i)
        frames[filled + i] = m_samples[cell(next + i)];
    std::ranges::fill(frames.subspan(filled + count), 0.0F);
    m_taken.store(next + count, std::memory_order_release);
}

std::int64_t PlaybackRing::heard(std::int64_t time) const noexcept {
    const std::int64_t elapsed = time - m_origin.load(std::memory_order_acquire);
    return static_cast<std::int64_t>(static_cast<double>(elapsed) * m_sampleRate / 1e9);
}

std::int64_t PlaybackRing::nanoseconds(std::uint64_t frames) const noexcept {
    return static_cast<std::int64_t>(static_cast<double>(frames) * 1e9 / m_sampleRate);
}

} // namespace varnet
