#include "Varnet/capture/SerialQueue.h"

#include "Varnet/async/Wait.h"

#include <pthread.h>

#include <exception>

namespace varnet {

SerialQueue::SerialQueue(const std::string& name, Clock clock) : m_clock(std::move(clock)) {
    m_thread = std::thread([this, shortName = name.substr(0, 15)] {
        pthread_setname_np(pthread_self(), shortName.c_str());
        serve();
    });
}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void SerialQueue::post(std::function<void()> work) {
    {
        const std::lock_guard lock(m_mutex);
        m_work.push_back(std::move(work));
    }
    m_wake.notify_one();
}

Task<> SerialQueue::run(std::function<void()> work) {
    const auto done = std::make_shared<Wait>();
    const auto failure = std::make_shared<std::exception_ptr>();
    post([work = std::move(work), done, failure] {
        try {
            work();
        } catch (...) {
            *failure = std::current_exception();
        }
        done->finish(WaitOutcome::fired);
    });
    co_await Wait::ended(done);
    if (*failure)
        std::rethrow_exception(*failure);
}

void SerialQueue::startTimer(std::chrono::nanoseconds first, std::chrono::nanoseconds period,
                             std::function<void()> tick) {
    {
        const std::lock_guard lock(m_mutex);
        m_tick = std::move(tick);
        m_period = period.count();
        m_due = m_clock() + first.count();
    }
    m_wake.notify_one();
}

void SerialQueue::stopTimer() {
    const std::lock_guard lock(m_mutex);
    m_tick = nullptr;
}

void SerialQueue::serve() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        std::function<void()> next;
        if (!m_work.empty()) {
            next = std::move(m_work.front());
            m_work.pop_front();
        } else if (m_ending) {
            return;
        } else if (!m_tick) {
            m_wake.wait(lock);
            continue;
        } else if (const std::int64_t late = m_clock() - m_due; late < 0) {
            m_wake.wait_for(lock, std::chrono::nanoseconds(-late));
            continue;
        } else {
            m_due += (late / m_period + 1) * m_period;
            next = m_tick;
        }
        lock.unlock();
        next();
        next = nullptr;
        lock.lock();
    }
}

} // namespace varnet
