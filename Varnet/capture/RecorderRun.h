#pragma once

#include "Varnet/capture/SerialQueue.h"
#include "Varnet/platform/AudioCapture.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace varnet {

/// What a recording runs on, the capture and the recorder's queue, and how it begins and ends on them.
///
/// The last member of its recorder: its destructor ends a recording that was not stopped, keeping its audio, while the
/// rest of the recorder is still there. The capture always ends first, then the queue does what it has been given.
class RecorderRun {
public:
    /// The recorder's own part.
    class Recorder {
    public:
        virtual ~Recorder() = default;

        virtual void deliver(const CaptureBuffer& buffer) = 0; ///< on the capture's delivery thread

        // On the queue.
        virtual void fail(const std::exception_ptr& failure) = 0; ///< the capture has ended; not while stopping
        virtual void started() = 0;                               ///< the capture runs; throws what failed by now
        virtual void finish(std::int64_t stopTime) = 0;           ///< writes and closes; throws the recording's failure
        virtual void abandon() = 0;                               ///< nothing could be captured: leaves no file
    };

    /// `thread` is the queue's name in debuggers.
    RecorderRun(Recorder& recorder, std::unique_ptr<AudioCapture> capture, const std::string& thread,
                SerialQueue::Clock clock);
    ~RecorderRun();
    RecorderRun(const RecorderRun&) = delete;
    RecorderRun& operator=(const RecorderRun&) = delete;

    SerialQueue& queue() { return m_queue; }

    /// Does `open` on the queue and starts the capture. A failure of the capture leaves nothing running: `abandon` has
    /// been called when it was not available, `finish` otherwise. Main thread.
    Task<> start(std::vector<CaptureSource> sources, std::function<void()> open,
                 std::function<void(std::string)> onNotice);

    /// Ends the capture, then calls `finish`, whatever fails; throws what that throws before what the capture does.
    /// Does nothing when nothing runs. Main thread.
    Task<> stop();

private:
    Task<> undoStart(bool unavailable);
    bool beginStop();

    Recorder& m_recorder;
    const SerialQueue::Clock m_clock;
    bool m_running = false;      ///< of the queue
    std::int64_t m_stopTime = 0; ///< of the queue
    SerialQueue m_queue;
    std::unique_ptr<AudioCapture> m_capture;
};

} // namespace varnet
