#pragma once

#include "MeetingCore/audio/AudioTimeline.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Task.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace varnet {

/// How a source's samples are laid out.
struct CaptureFormat {
    int sampleRate = 0; ///< frames a second
    int channelCount = 0;

    bool operator==(const CaptureFormat&) const = default;
};

/// One buffer as the sound server delivered it.
struct CaptureBuffer {
    CaptureSource source = CaptureSource::microphone;
    CaptureFormat format;
    std::span<const float> samples; ///< interleaved, nominally -1 to 1; valid during the call only
    std::int64_t time = 0;          ///< of the first sample, nanoseconds of CLOCK_MONOTONIC
};

/// Why a capture could not start.
class CaptureUnavailable : public Failure {
public:
    enum class Reason {
        accessDenied, ///< the sound server refuses this program
        noServer,     ///< no sound server answers
        noMicrophone, ///< there is no audio source
        noOutput,     ///< there is no audio sink whose sound could be captured
        streamFailed, ///< a stream did not come up in time, or on the wrong kind of node
    };

    CaptureUnavailable(Reason reason, std::string message) : Failure(std::move(message)), m_reason(reason) {}
    Reason reason() const { return m_reason; }

private:
    Reason m_reason;
};

/// Captures the default microphone and the sound that the default output plays, as timestamped buffers of one clock.
///
/// One object serves one capture. `start` and `stop` are called on the main thread, and the object lives until they
/// have returned. Device changes, a paused sound server and nodes that come and go do not end a capture: time without
/// sound has no buffers.
class AudioCapture {
public:
    struct Callbacks {
        /// On the capture's delivery thread, in order for each source: neither a real-time thread nor the main thread.
        /// It may convert, but must not wait for a disk.
        std::function<void(const CaptureBuffer&)> onBuffer;
        /// The capture has ended by itself. At most once, on any thread but the main one.
        std::function<void(std::exception_ptr)> onError;
        /// A sentence for the user about something that goes on being recorded. On any thread but the main one.
        std::function<void(std::string)> onNotice;
    };

    virtual ~AudioCapture() = default;

    /// Starts capturing `sources` and returns once each stream is linked to the right kind of device; the first buffers
    /// may come before that. Throws CaptureUnavailable, within about five seconds; nothing runs then.
    virtual Task<> start(std::vector<CaptureSource> sources, Callbacks callbacks) = 0;

    /// Stops, having delivered every buffer captured until now. No callback comes after it has returned. A second call
    /// does nothing.
    virtual Task<> stop() = 0;
};

/// The capture of this platform.
std::unique_ptr<AudioCapture> makeAudioCapture();

} // namespace varnet
