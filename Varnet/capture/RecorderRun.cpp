#include "Varnet/capture/RecorderRun.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/capture/AudioFailure.h"

#include <QDebug>

#include <utility>

namespace varnet {

RecorderRun::RecorderRun(Recorder& recorder, std::unique_ptr<AudioCapture> capture, const std::string& thread,
                         SerialQueue::Clock clock)
    : m_recorder(recorder), m_clock(std::move(clock)), m_queue(thread, m_clock), m_capture(std::move(capture)) {}

RecorderRun::~RecorderRun() {
    m_capture.reset();
    m_queue.post([this] {
        try {
            if (beginStop())
                m_recorder.finish(m_stopTime);
        } catch (const std::exception& failure) {
            qWarning("Ending an unstopped recording: %s", failure.what());
        }
    });
}

Task<> RecorderRun::start(std::vector<CaptureSource> sources, std::function<void()> open,
                          std::function<void(std::string)> onNotice) {
    co_await m_queue.run([this, open = std::move(open)] {
        open();
        m_running = true;
    });
    std::exception_ptr failure;
    bool unavailable = false;
    try {
        AudioCapture::Callbacks callbacks;
        callbacks.onBuffer = [this](const CaptureBuffer& buffer) { m_recorder.deliver(buffer); };
        callbacks.onError = [this](const std::exception_ptr& error) {
            m_queue.post([this, error] {
                if (m_running)
                    m_recorder.fail(error);
            });
        };
        callbacks.onNotice = std::move(onNotice);
        co_await m_capture->start(std::move(sources), std::move(callbacks));
        co_await m_queue.run([this] { m_recorder.started(); });
        co_return;
    } catch (const CaptureUnavailable& reason) {
        failure = startFailure(reason);
        unavailable = true;
    } catch (...) {
        failure = std::current_exception();
    }
    try {
        co_await undoStart(unavailable);
    } catch (const std::exception& second) {
        qWarning("Undoing the start of a recording: %s", second.what());
    }
    std::rethrow_exception(failure);
}

Task<> RecorderRun::undoStart(bool unavailable) {
    if (!unavailable)
        co_return co_await stop();
    co_await m_queue.run([this] {
        if (beginStop())
            m_recorder.abandon();
    });
}

Task<> RecorderRun::stop() {
    bool begun = false;
    co_await m_queue.run([this, &begun] { begun = beginStop(); });
    if (!begun)
        co_return;
    std::exception_ptr captureFailure;
    try {
        co_await m_capture->stop();
    } catch (...) {
        captureFailure = std::current_exception();
    }
    co_await m_queue.run([this] { m_recorder.finish(m_stopTime); });
    if (captureFailure)
        std::rethrow_exception(captureFailure);
}

bool RecorderRun::beginStop() {
    if (!std::exchange(m_running, false))
        return false;
    m_queue.stopTimer();
    m_stopTime = m_clock();
    return true;
}

} // namespace varnet
