#include "Varnet/async/Worker.h"

#include <QThreadPool>

namespace varnet {

namespace {

std::unique_ptr<QThreadPool> makePool() {
    auto pool = std::make_unique<QThreadPool>();
    pool->setObjectName("worker");
    pool->setMaxThreadCount(1);
    return pool;
}

} // namespace

void postToWorker(std::function<void()> work) {
    static const std::unique_ptr<QThreadPool> pool = makePool();
    pool->start(std::move(work));
}

} // namespace varnet
