#pragma once

#include "Varnet/async/Task.h"
#include "Varnet/platform/Clock.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace varnet {

/// A thread of its own that does the work posted to it one by one in the order of the posts, and one repeating tick.
/// Posted work comes before a tick that is due, so that a tick sees everything that had happened by then.
/// All operations may be called on any thread.
class SerialQueue {
public:
    using Clock = std::function<std::int64_t()>; ///< nanoseconds

    /// `name` is the thread's in debuggers.
    explicit SerialQueue(const std::string& name, Clock clock = monotonicNanoseconds);

    /// Does all posted work, then ends the thread. Not called on the queue.
    ~SerialQueue();

    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    /// `work` must not throw.
    void post(std::function<void()> work);

    /// Does `work` on the queue while the main thread goes on; ends when it is done, with what it threw. Main thread.
    Task<> run(std::function<void()> work);

    /// Calls `tick`, which must not throw, `first` from now and then every `period`; ticks that were missed are left
    /// out. Replaces an earlier timer.
    void startTimer(std::chrono::nanoseconds first, std::chrono::nanoseconds period, std::function<void()> tick);

    /// On the queue, no tick comes after it.
    void stopTimer();

private:
    void serve();

    const Clock m_clock;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_work;
    std::function<void()> m_tick;
    std::int64_t m_due = 0;
    std::int64_t m_period = 0;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace varnet
