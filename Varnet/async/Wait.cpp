#include "Varnet/async/Wait.h"

#include "MeetingCore/base/Assert.h"
#include "Varnet/async/MainThread.h"

#include <QTimer>

#include <utility>

namespace varnet {

namespace {

/// Beyond this a timer would overflow; `noTimeout` is.
constexpr std::chrono::hours longestTimer{24 * 20};

} // namespace

struct Wait::Awaiter {
    Wait& wait;

    bool await_ready() const noexcept { return wait.m_outcome.has_value(); }
    void await_suspend(std::coroutine_handle<> coroutine) const noexcept { wait.m_coroutine = coroutine; }
    WaitOutcome await_resume() const noexcept { return *wait.m_outcome; }
};

void Wait::finish(WaitOutcome outcome) {
    if (!m_finished.exchange(true))
        postToMain([self = shared_from_this(), outcome] { self->deliver(outcome); });
}

void Wait::deliver(WaitOutcome outcome) {
    m_outcome = outcome;
    if (auto coroutine = std::exchange(m_coroutine, nullptr))
        coroutine.resume();
}

Task<WaitOutcome> Wait::ended(std::shared_ptr<Wait> wait, std::chrono::nanoseconds timeout, std::stop_token stop) {
    VARNET_ASSERT(onMainThread());
    VARNET_ASSERT(!wait->m_coroutine);
    const std::stop_callback onStop(stop, [wait] { wait->finish(WaitOutcome::stopped); });
    QTimer timer;
    if (timeout < longestTimer) {
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer, &QTimer::timeout, &timer, [wait] { wait->finish(WaitOutcome::timedOut); });
        timer.start(std::chrono::ceil<std::chrono::milliseconds>(std::max(timeout, std::chrono::nanoseconds(0))));
    }
    const WaitOutcome outcome = co_await Awaiter{*wait};
    co_return outcome != WaitOutcome::destroyed&& stop.stop_requested() ? WaitOutcome::stopped : outcome;
}

} // namespace varnet
