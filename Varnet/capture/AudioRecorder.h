#pragma once

#include "MeetingCore/audio/DurableWAV.h"
#include "Varnet/capture/RecorderCallbacks.h"
#include "Varnet/capture/RecorderRun.h"
#include "Varnet/capture/SourceConverter.h"

#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

namespace varnet {

/// Records the microphone alone into one file; frame 0 is the moment of the start.
///
/// Buffers are converted on the capture's delivery thread and written in blocks by the queue "varnet.audio", which also
/// makes the callbacks; the call level is always absent. Time without sound, such as a sound server that stands still,
/// becomes silence at its own place, in the file and for `onPCM` alike, while it lasts.
///
/// One object serves one recording. `start` and `stop` belong to the main thread; the object lives until both have
/// returned. Its destructor ends a recording that was not stopped; the audio is kept.
class AudioRecorder final : RecorderRun::Recorder {
public:
    using Clock = SerialQueue::Clock;

    /// `clock` is the one that the capture's buffers are stamped with.
    explicit AudioRecorder(std::unique_ptr<AudioCapture> capture, Clock clock = monotonicNanoseconds);

    /// Throws AudioFailure, SpeechFailure, CaptureUnavailable or FileFailure, with nothing running. When the capture
    /// is not available no file remains.
    Task<> start(std::filesystem::path file, RecorderCallbacks callbacks);

    /// Writes what was heard until now, closes the file whatever fails, and throws the first failure of the recording.
    /// Does nothing when nothing runs, or when it has been called already.
    Task<> stop() { return m_run.stop(); }

private:
    // On the delivery thread.
    void deliver(const CaptureBuffer& buffer) override;

    // On the queue.
    void open(const std::filesystem::path& path);
    void gather(PlacedSamples next);
    void writeBlock();
    void writeSilence(std::int64_t until);
    void append(std::span<const std::byte> pcm);
    std::int64_t writtenFrames() const;
    void tick();
    void started() override;
    void fail(const std::exception_ptr& failure) override;
    void finish(std::int64_t stopTime) override;
    void abandon() override;

    template <class Take>
    void takeRest(Take take);

    const Clock m_clock;
    std::int64_t m_origin = 0; ///< written before the capture starts
    RecorderCallbacks m_callbacks;

    std::mutex m_converterMutex; ///< held while samples are converted, never while the file is written
    std::optional<SourceConverter> m_converter;

    // Of the queue only.
    PlacedSamples m_block; ///< converted and not yet written
    std::filesystem::path m_path;
    std::unique_ptr<DurableWAV> m_file;
    std::exception_ptr m_failure; ///< the first one; nothing is written after it

    RecorderRun m_run;
};

} // namespace varnet
