#include "Varnet/async/Worker.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <limits>

namespace varnet {

namespace {

struct Threads {
    QThreadPool worker;
    QThreadPool own;

    Threads() {
        worker.setObjectName("worker");
        worker.setMaxThreadCount(1);
        own.setObjectName("long work");
        own.setMaxThreadCount(std::numeric_limits<int>::max());
        // What ends while the application object is being destroyed must not post to it any more.
        qAddPostRoutine([] {
            threads().worker.clear();
            finishBackgroundWork();
        });
    }

    static Threads& threads() {
        static Threads threads;
        return threads;
    }
};

} // namespace

void postToWorker(std::function<void()> work) {
    Threads::threads().worker.start(std::move(work));
}

void postToOwnThread(std::function<void()> work) {
    Threads::threads().own.start(std::move(work));
}

void finishBackgroundWork() {
    Threads::threads().worker.waitForDone();
    Threads::threads().own.waitForDone();
}

} // namespace varnet
