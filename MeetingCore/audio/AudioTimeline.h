#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace varnet {

/// The two tracks of a recording.
enum class CaptureSource { microphone, system };

inline constexpr std::array allCaptureSources{CaptureSource::microphone, CaptureSource::system};

/// "microphone" or "system".
std::string_view rawValue(CaptureSource source);

/// The source with that raw value; absent for any other text.
std::optional<CaptureSource> captureSource(std::string_view rawValue);

/// A refused call of AudioTimeline.
class TimelineFailure : public std::exception {
public:
    enum class Kind { exceededCapacity, invalidTimestamp };

    explicit TimelineFailure(Kind kind) : m_kind(kind) {}
    Kind kind() const { return m_kind; }
    const char* what() const noexcept override;

private:
    Kind m_kind;
};

/// One aligned stretch of both tracks, of equal length when drained from a timeline.
struct AudioBlock {
    std::vector<float> microphone;
    std::vector<float> system;

    /// The tracks added sample by sample, limited to [-1, 1]; as long as the shorter one.
    std::vector<float> mixed() const;
};

/// Places the samples of two independently clocked sources at their own frame positions and hands both tracks out in
/// blocks. Mono, 32-bit float, 16,000 frames a second; frame 0 is the start of the recording. Samples behind the read
/// position are dropped and counted; what never arrives is silence. Nothing is shifted or stretched.
///
/// No lock: all calls come from one serial context. The rings are allocated once.
class AudioTimeline {
public:
    /// `capacity` in frames is the length of each ring and the furthest that writes may run ahead of the read position.
    /// It must be above 0; otherwise the program ends.
    explicit AudioTimeline(std::int64_t capacity);

    /// Writes `samples` of one source from `frame` on; a later write to the same frames replaces an earlier one, and
    /// non-finite values become 0. Throws TimelineFailure, leaving everything unchanged: invalidTimestamp for a frame
    /// below -capacity or beyond 64 bits, exceededCapacity if the samples would end past renderedFrames + capacity.
    void append(std::span<const float> samples, CaptureSource source, std::int64_t frame);

    /// Hands out all frames up to `until` (exclusive) in blocks of `chunkSize` frames, the last one shorter. Nothing
    /// to do gives an empty list. Throws TimelineFailure::exceededCapacity for a chunk size of 0 or less, or if more
    /// than `capacity` frames would be drained.
    std::vector<AudioBlock> drain(std::int64_t until, std::int64_t chunkSize);

    std::int64_t capacity() const { return m_capacity; }

    /// The read position: frames below it have been handed out.
    std::int64_t renderedFrames() const { return m_renderedFrames; }

    /// Samples that came too late, both sources together.
    std::int64_t lateFrames() const { return m_lateFrames; }

private:
    std::int64_t m_capacity;
    std::int64_t m_renderedFrames = 0;
    std::int64_t m_lateFrames = 0;
    std::vector<float> m_microphone;
    std::vector<float> m_system;
};

} // namespace varnet
