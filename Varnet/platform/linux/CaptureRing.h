#pragma once

#include "Varnet/platform/AudioCapture.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace varnet {

/// Carries captured blocks from a real-time audio callback to the thread that uses them.
///
/// One thread writes (`push`) and one thread reads (`front`, `pop`); neither ever waits for the other. All memory is
/// taken and touched at construction.
///
/// What the audio callback may do is: ask the sound server's library for its buffer and its time, `push`, give the
/// buffer back, and signal an event. It must not allocate or free, lock, log, open or write files, throw, or call
/// anything that may do so: it runs within the sound server's deadline, and being late is heard by everybody.
class CaptureRing {
public:
    struct Block {
        CaptureFormat format;
        std::int64_t time = 0;          ///< of the first sample, nanoseconds of CLOCK_MONOTONIC
        std::span<const float> samples; ///< interleaved, in one piece; valid until `pop`
    };

    /// Room for `sampleCapacity` samples (frames times channels) in at most `blockCapacity` blocks; both above 0.
    CaptureRing(std::size_t sampleCapacity, std::size_t blockCapacity);

    /// Writer, real-time safe. Copies one block in. False, and the block is counted as dropped, when there is no room.
    bool push(CaptureFormat format, std::int64_t time, std::span<const float> samples) noexcept;

    /// Reader. The oldest block, which stays in the ring until `pop`; absent when there is none.
    std::optional<Block> front() const noexcept;

    /// Reader. Frees the oldest block; there must be one.
    void pop() noexcept;

    /// Reader. The blocks dropped since the last call.
    std::uint64_t takeDroppedCount() noexcept { return m_dropped.exchange(0, std::memory_order_relaxed); }

private:
    struct Entry {
        CaptureFormat format;
        std::int64_t time = 0;
        std::uint64_t begin = 0; ///< position in the endless row of samples
        std::size_t count = 0;
    };

    std::vector<float> m_samples;
    std::vector<Entry> m_entries;
    std::uint64_t m_end = 0; ///< writer only: position after the newest block

    // On cache lines of their own: each is written by one side and read by the other for every block.
    alignas(64) std::atomic<std::uint64_t> m_written = 0; ///< blocks
    alignas(64) std::atomic<std::uint64_t> m_read = 0;    ///< blocks
    std::atomic<std::uint64_t> m_dropped = 0;
};

} // namespace varnet
