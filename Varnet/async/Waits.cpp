#include "Varnet/async/Waits.h"

#include <QNetworkReply>
#include <QProcess>

namespace varnet {

Task<WaitOutcome> waitForFinished(QNetworkReply* reply, std::chrono::nanoseconds timeout, std::stop_token stop) {
    if (reply && reply->isFinished())
        co_return WaitOutcome::fired;
    co_return co_await waitForSignal(reply, &QNetworkReply::finished, timeout, stop);
}

Task<WaitOutcome> waitForFinished(QProcess* process, std::chrono::nanoseconds timeout, std::stop_token stop) {
    const auto start = std::chrono::steady_clock::now();
    auto left = timeout;
    WaitOutcome outcome = process ? WaitOutcome::fired : WaitOutcome::destroyed;
    // `finished` never comes for a process that did not start; the state changes either way.
    while (outcome == WaitOutcome::fired && process->state() != QProcess::NotRunning) {
        outcome = co_await waitForSignal(process, &QProcess::stateChanged, left, stop);
        if (timeout != noTimeout)
            left = timeout - (std::chrono::steady_clock::now() - start);
    }
    co_return outcome;
}

} // namespace varnet
