#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace varnet {

/// Carries sound from the thread that reads files to a real-time audio callback, and tells when it is heard.
///
/// Frames are numbered from the ring's beginning on. One thread writes (`write`, `cut`), one reads (`take`); neither
/// ever waits for the other. All memory is taken and touched at construction. What CaptureRing says of an audio
/// callback holds here too.
class PlaybackRing {
public:
    /// `capacity` frames, above `fadeFrames`, which is how long a sound that is broken off fades.
    PlaybackRing(std::uint32_t sampleRate, std::size_t capacity, std::size_t fadeFrames);

    std::uint32_t sampleRate() const { return m_sampleRate; }

    /// Writer. Frames that `write` takes at least.
    std::size_t room() const noexcept;

    /// Writer. Appends frames, no more than `room`.
    void write(std::span<const float> frames) noexcept;

    /// Writer. Breaks off: of what was written until now the reader only fades out. The number of the next frame.
    std::uint64_t cut() noexcept;

    /// The number of the next frame that will be written, and taken. Any thread; the latter may be old at once.
    std::uint64_t written() const noexcept { return m_written.load(std::memory_order_acquire); }
    std::uint64_t taken() const noexcept { return m_taken.load(std::memory_order_acquire); }

    /// Reader, real-time safe. Fills `frames`, with silence where there is nothing; the first of them will be heard at
    /// `time`, nanoseconds of CLOCK_MONOTONIC.
    void take(std::span<float> frames, std::int64_t time) noexcept;

    /// The number of the frame that is heard at `time`, going by the last one taken; it may be one that is not yet
    /// written. Any thread.
    std::int64_t heard(std::int64_t time) const noexcept;

private:
    std::size_t cell(std::uint64_t frame) const { return static_cast<std::size_t>(frame % m_samples.size()); }
    std::int64_t nanoseconds(std::uint64_t frames) const noexcept;

    std::uint32_t m_sampleRate;
    std::size_t m_fadeFrames;
    std::vector<float> m_samples;

    alignas(64) std::atomic<std::uint64_t> m_written = 0;
    std::atomic<std::uint64_t> m_cut = 0; ///< frames before it are not played any more
    alignas(64) std::atomic<std::uint64_t> m_taken = 0;
    /// When frame 0 would have been heard, had everything since then been sound.
    std::atomic<std::int64_t> m_origin = std::numeric_limits<std::int64_t>::max() / 2;
};

} // namespace varnet
