#pragma once

#include "Varnet/async/Event.h"
#include "Varnet/platform/AudioCapture.h"
#include "Varnet/platform/Clock.h"

#include <atomic>

namespace varnet::test {

/// A sound server by script: which captures come up, and what they deliver. Main thread; it must outlive its captures.
struct FakeSoundServer {
    struct Capture {
        std::vector<CaptureSource> sources;
        AudioCapture::Callbacks callbacks;
        bool running = false;
    };

    std::exception_ptr callFailure;                 ///< a capture of both sources does not start
    std::exception_ptr microphoneFailure;           ///< a capture of the microphone alone does not start
    std::exception_ptr stopFailure;                 ///< a capture does not stop as it should
    bool failuresAreReportedToo = false;            ///< such a start or stop also reports its failure through onError
    std::function<void()> duringStart;              ///< called within a start
    Event startsPass;                               ///< a start waits for it; set at first
    std::vector<std::shared_ptr<Capture>> captures; ///< in the order of their starts

    FakeSoundServer() { startsPass.set(); }
    std::unique_ptr<AudioCapture> makeCapture();

    /// Delivers so many frames of 16 kHz mono from the newest capture; `time` is that of the first one.
    void deliver(CaptureSource source, std::size_t frameCount, std::int64_t time = monotonicNanoseconds(),
                 float value = 0.25F);
    void fail(const std::string& message);
    void notify(const std::string& notice);
};

/// A clock that stands still until it is told, nanoseconds; readable on any thread.
class FakeClock {
public:
    std::function<std::int64_t()> reader() {
        return [this] { return m_now.load(); };
    }
    static std::int64_t at(double seconds) { return start + std::llround(seconds * 1e9); }
    void setSeconds(double seconds) { m_now = at(seconds); }

private:
    static constexpr std::int64_t start = 5'000'000'000'000; ///< its reading at 0 seconds

    std::atomic<std::int64_t> m_now = start;
};

} // namespace varnet::test
