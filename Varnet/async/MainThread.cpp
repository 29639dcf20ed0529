#include "Varnet/async/MainThread.h"

#include "MeetingCore/base/Failures.h"

#include <QCoreApplication>
#include <QThread>

namespace varnet {

bool onMainThread() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

void postToMain(std::function<void()> work) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    auto guarded = [work = std::move(work)] {
        try {
            work();
        } catch (...) {
            qWarning("Work posted to the main thread failed: %s", describe(std::current_exception()).c_str());
        }
    };
    QMetaObject::invokeMethod(application, std::move(guarded), Qt::QueuedConnection);
}

} // namespace varnet
