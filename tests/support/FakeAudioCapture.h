#pragma once

#include "Varnet/platform/AudioCapture.h"

#include <atomic>
#include <optional>
#include <span>
#include <utility>

namespace varnet::test {

/// A capture whose buffers, failures and notices are given by the test, on the test's thread.
///
/// The recorder owns the fake; the test keeps a pointer and uses it while the recorder lives.
class FakeAudioCapture : public AudioCapture {
public:
    Task<> start(std::vector<CaptureSource> sources, Callbacks callbacks) override {
        startedSources = std::move(sources);
        m_callbacks = std::move(callbacks);
        if (beforeStartEnds)
            beforeStartEnds();
        if (startFailure)
            std::rethrow_exception(startFailure);
        running = true;
        co_return;
    }

    Task<> stop() override {
        if (!std::exchange(running, false))
            co_return;
        m_callbacks = {};
        if (stopFailure)
            std::rethrow_exception(stopFailure);
    }

    /// `seconds` counts from `origin`, which is the clock's reading when the recording started.
    void deliver(CaptureSource source, double seconds, std::span<const float> samples, CaptureFormat format) {
        const auto time = origin + static_cast<std::int64_t>(seconds * 1e9 + (seconds < 0 ? -0.5 : 0.5));
        m_callbacks.onBuffer({source, format, samples, time});
    }

    void fail(std::exception_ptr failure) { m_callbacks.onError(std::move(failure)); }
    void notify(std::string text) { m_callbacks.onNotice(std::move(text)); }

    std::int64_t origin = 0;
    bool running = false;
    std::vector<CaptureSource> startedSources;
    std::exception_ptr startFailure;
    std::exception_ptr stopFailure;
    std::function<void()> beforeStartEnds;

private:
    Callbacks m_callbacks;
};

/// A clock that stands still until it is told, nanoseconds; readable on any thread.
class FakeClock {
public:
    std::function<std::int64_t()> reader() {
        return [this] { return m_now.load(); };
    }
    void setSeconds(double seconds) { m_now = start + static_cast<std::int64_t>(seconds * 1e9 + 0.5); }

    static constexpr std::int64_t start = 5'000'000'000'000; ///< its reading at 0 seconds

private:
    std::atomic<std::int64_t> m_now = start;
};

} // namespace varnet::test
