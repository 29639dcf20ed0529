#pragma once

#include "Varnet/async/Wait.h"

#include <QObject>
#include <QPointer>

class QNetworkReply;
class QProcess;

namespace varnet {

/// Waits until `sender` emits `signal`. Main thread; null counts as destroyed. The coroutine goes on from the event
/// loop, not inside the emission, so the object may have changed its state again: ask it.
///
///     if (co_await waitForSignal(reply, &QNetworkReply::finished, 5s, stop) != WaitOutcome::fired) ...
template <class Sender, class Signal>
Task<WaitOutcome> waitForSignal(Sender* sender, Signal signal, std::chrono::nanoseconds timeout = noTimeout,
                                std::stop_token stop = {}) {
    if (!sender)
        co_return WaitOutcome::destroyed;
    if (stop.stop_requested())
        co_return WaitOutcome::stopped;
    const QPointer<QObject> alive(sender);
    const auto wait = std::make_shared<Wait>();
    QObject context; // the connections end with it
    QObject::connect(sender, signal, &context, [wait] { wait->finish(WaitOutcome::fired); });
    QObject::connect(sender, &QObject::destroyed, &context, [wait] { wait->finish(WaitOutcome::destroyed); });
    const WaitOutcome outcome = co_await Wait::ended(wait, timeout, stop);
    co_return alive ? outcome : WaitOutcome::destroyed;
}

/// Waits until the reply is complete or has failed; `fired` at once when it is. Nothing is aborted here.
Task<WaitOutcome> waitForFinished(QNetworkReply* reply, std::chrono::nanoseconds timeout = noTimeout,
                                  std::stop_token stop = {});

/// Waits until the process runs no more, or could not be started; `fired` at once when that is so. Nothing is ended
/// here.
Task<WaitOutcome> waitForFinished(QProcess* process, std::chrono::nanoseconds timeout = noTimeout,
                                  std::stop_token stop = {});

} // namespace varnet
