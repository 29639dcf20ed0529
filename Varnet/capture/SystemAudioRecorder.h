#pragma once

#include "MeetingCore/audio/AudioTimeline.h"
#include "MeetingCore/audio/DurableWAV.h"
#include "Varnet/capture/RecorderCallbacks.h"
#include "Varnet/capture/RecorderRun.h"
#include "Varnet/capture/SourceConverter.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace varnet {

/// Records a meeting as two aligned tracks, the microphone and what the machine plays, and their mix.
///
/// Each buffer is converted on the capture's delivery thread and placed by its timestamp; 0.4 seconds behind the clock
/// the queue "varnet.system-capture" reads whole blocks of 160 ms out and writes three files: the mix at the given
/// path, "microphone.wav" and "system.wav" beside it. What does not arrive in time is silence at its own place.
/// "capture-diagnostics.json" is added at the end.
///
/// One object serves one recording. `start` and `stop` belong to the main thread; the object lives until both have
/// returned. Its destructor ends a recording that was not stopped; the audio is kept.
class SystemAudioRecorder final : RecorderRun::Recorder {
public:
    using Clock = SerialQueue::Clock;

    /// `clock` is the one that the capture's buffers are stamped with.
    explicit SystemAudioRecorder(std::unique_ptr<AudioCapture> capture, Clock clock = monotonicNanoseconds);

    /// Throws AudioFailure, SpeechFailure, CaptureUnavailable or FileFailure, with nothing running. When the capture
    /// is not available no file remains.
    Task<> start(std::filesystem::path mixedFile, RecorderCallbacks callbacks);

    /// Writes what was heard until now, closes all files whatever fails, and throws the first failure. Does nothing
    /// when nothing runs, or when it has been called already.
    Task<> stop() { return m_run.stop(); }

    /// How many frames are read out when `elapsed` nanoseconds have passed since the origin: whole blocks only.
    static std::int64_t dueFrames(std::int64_t elapsed);

private:
    // On the delivery thread.
    void deliver(const CaptureBuffer& buffer) override;

    // On the queue.
    void open(const std::filesystem::path& mixedFile);
    void place(CaptureSource source, const std::vector<PlacedSamples>& placed);
    void tick();
    void flush(std::int64_t until);
    void writeBlock(const AudioBlock& block);
    void started() override;
    void fail(const std::exception_ptr& failure) override;
    void finish(std::int64_t stopTime) override;
    void abandon() override;
    void writeDiagnostics() const;

    template <class Take>
    void placeRests(Take take);

    const Clock m_clock;
    std::int64_t m_origin = 0; ///< written before the capture starts
    RecorderCallbacks m_callbacks;

    std::mutex m_converterMutex; ///< held while samples are converted, never while files are written
    std::map<CaptureSource, SourceConverter> m_converters;

    // Of the queue only.
    std::unique_ptr<AudioTimeline> m_timeline;
    std::map<std::string, std::unique_ptr<DurableWAV>> m_files; ///< "mixed", "microphone", "system"; empty when idle
    std::filesystem::path m_mixedFile;
    std::map<CaptureSource, std::int64_t> m_received; ///< buffers placed
    bool m_failed = false;
    bool m_started = false;                       ///< the capture runs: nothing will be undone
    std::vector<std::vector<std::byte>> m_unsent; ///< blocks of the mix from before that; at most a few seconds

    RecorderRun m_run;
};

} // namespace varnet
