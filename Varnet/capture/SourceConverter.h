#pragma once

#include "MeetingCore/audio/Resampler.h"
#include "Varnet/capture/ClockFollower.h"
#include "Varnet/platform/AudioCapture.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace varnet {

/// Samples at 16,000 frames a second and where they belong: `frame` n lies n/16000 seconds after the origin.
struct PlacedSamples {
    std::int64_t frame = 0;
    std::vector<float> samples;

    bool operator==(const PlacedSamples&) const = default;
};

/// Brings one source's buffers to 16 kHz mono and places them by their timestamps.
///
/// The first buffer is anchored at its rounded frame; from there the samples are counted on, so that no rounding ever
/// tears a hole or an overlap, and the conversion rate follows the timestamps, since the device runs on its own clock.
/// Only a real jump of the timestamps, lost audio, anchors the source anew; audio before and after it does not mix, and
/// the end of the audio before it is handed out in full. One object is used by one thread at a time.
class SourceConverter {
public:
    /// `origin` is the time of frame 0, nanoseconds of the buffers' clock.
    explicit SourceConverter(std::int64_t origin) : m_origin(origin) {}

    /// What is ready, in order; what follows one another without a gap comes as one. Throws AudioFailure for a format
    /// that cannot be converted, and TimelineFailure::invalidTimestamp for a buffer of more than 1 second before the
    /// origin or more than 2 seconds after `now`.
    std::vector<PlacedSamples> convert(const CaptureBuffer& buffer, std::int64_t now);

    /// Ends the stretch: hands out what the samples so far still owe.
    std::optional<PlacedSamples> finish();

    /// The same, if the samples so far end before `time`: a source that has stopped must not keep its last words.
    std::optional<PlacedSamples> finishIfQuietSince(std::int64_t time);

private:
    double position() const;
    std::optional<PlacedSamples> place(std::vector<float> samples);

    std::int64_t m_origin;
    ClockFollower m_follower;
    std::optional<Resampler> m_resampler; ///< while a stretch is under way
    CaptureFormat m_format;
    bool m_anchored = false;
    double m_anchorOffset = 0;    ///< the anchor less its exact place, within half a frame
    std::int64_t m_nextFrame = 0; ///< of the next sample handed out
    std::int64_t m_endTime = 0;   ///< of the samples so far
};

} // namespace varnet
