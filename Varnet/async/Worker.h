#pragma once

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Wait.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace varnet {

/// Runs `work` on the one worker thread, after what was given to it before. Any thread; `work` throws nothing.
void postToWorker(std::function<void()> work);

/// Runs `work` at once on a thread that it has to itself. Any thread; `work` throws nothing, and ends soon once the
/// program quits: the application object waits for it.
void postToOwnThread(std::function<void()> work);

/// Waits until nothing of both runs or waits to be run. Main thread; the tasks themselves go on with the next events.
void finishBackgroundWork();

/// Runs `work` where `post` brings it; see onWorker.
template <class F>
Task<std::invoke_result_t<F>> runThrough(void (*post)(std::function<void()>), F work, std::stop_token stop) {
    using Result = std::invoke_result_t<F>;
    struct Job {
        F work;
        std::optional<std::conditional_t<std::is_void_v<Result>, bool, Result>> result;
        std::exception_ptr failure;
    };
    const auto job = std::make_shared<Job>(Job{std::move(work), {}, {}});
    const auto wait = std::make_shared<Wait>();
    post([job, wait] {
        try {
            if constexpr (std::is_void_v<Result>)
                job->work();
            else
                job->result.emplace(job->work());
        } catch (...) {
            job->failure = std::current_exception();
        }
        wait->finish(WaitOutcome::fired);
    });
    const WaitOutcome outcome = co_await Wait::ended(wait, noTimeout, std::move(stop));
    if (outcome == WaitOutcome::stopped)
        throw Cancelled();
    if (job->failure)
        std::rethrow_exception(job->failure);
    if constexpr (!std::is_void_v<Result>)
        co_return std::move(*job->result);
}

/// Runs heavy pure work off the main thread and returns its result or rethrows what it threw. `work` owns what it
/// reads and is destroyed on either thread; after it, look up again by id what the result is for. Throws Cancelled as
/// soon as `stop` is requested, whatever the worker is busy with: the work itself then goes on for nobody. Main thread.
template <class F>
Task<std::invoke_result_t<F>> onWorker(F work, std::stop_token stop = {}) {
    return runThrough(postToWorker, std::move(work), std::move(stop));
}

/// The same for work that takes long, which the worker's other users should not wait for.
template <class F>
Task<std::invoke_result_t<F>> onOwnThread(F work, std::stop_token stop = {}) {
    return runThrough(postToOwnThread, std::move(work), std::move(stop));
}

} // namespace varnet
