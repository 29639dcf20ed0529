#pragma once

#include "Varnet/async/Task.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>

namespace varnet {

/// How a wait ended. When several are true by the time the coroutine goes on, `destroyed` wins, then `stopped`: after
/// any other outcome the object that was waited for is alive.
enum class WaitOutcome {
    fired,     ///< what was waited for has happened
    stopped,   ///< the stop token asked to give up
    timedOut,  ///< the time is over
    destroyed, ///< the object that was waited for is gone
};

/// As a timeout: wait without a limit.
inline constexpr std::chrono::nanoseconds noTimeout = std::chrono::nanoseconds::max();

/// One suspension of a coroutine of the main thread; every other wait is made of it. It is held by shared_ptr, so that
/// whoever ends it may come late and from any thread.
class Wait : public std::enable_shared_from_this<Wait> {
public:
    /// Ends the wait; only the first call counts. Any thread. The coroutine goes on from the main thread's event loop,
    /// never inside this call.
    void finish(WaitOutcome outcome);

    /// Suspends the one coroutine that awaits `wait` until it is finished, `timeout` is over, or `stop` is requested on
    /// any thread. A wait that was finished already ends without suspending once its end has been delivered.
    static Task<WaitOutcome> ended(std::shared_ptr<Wait> wait, std::chrono::nanoseconds timeout = noTimeout,
                                   std::stop_token stop = {});

private:
    struct Awaiter;
    void deliver(WaitOutcome outcome);

    std::atomic<bool> m_finished = false;
    // Of the main thread only.
    std::optional<WaitOutcome> m_outcome;
    std::coroutine_handle<> m_coroutine;
};

} // namespace varnet
