#pragma once

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Task.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <optional>

namespace varnet::test {

/// Runs the event loop until `condition` holds; false when it does not within `timeout`.
template <class Condition>
bool eventually(Condition condition, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    QTimer tick; // wakes the loop for conditions that no event announces
    tick.start(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs everything that is ready to run now, and what becomes ready by it.
inline void settle() {
    for (int i = 0; i < 20; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

/// Runs the event loop until the task is done; its result, or what it threw. A task that is not done within `timeout`
/// fails the test with a runtime_error.
template <class T>
T await(Task<T> task, std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
    if (!eventually([&task] { return task.isReady(); }, timeout))
        throw std::runtime_error("The task was not done in time.");
    struct Outcome {
        std::optional<std::conditional_t<std::is_void_v<T>, bool, T>> value;
        std::exception_ptr failure;
    } outcome;
    // A task that is done is taken apart without suspending.
    const auto take = [](Task<T>& done, Outcome& into) -> Task<> {
        try {
            if constexpr (std::is_void_v<T>)
                co_await done;
            else
                into.value.emplace(co_await done);
        } catch (...) {
            into.failure = std::current_exception();
        }
    };
    take(task, outcome);
    if (outcome.failure)
        std::rethrow_exception(outcome.failure);
    if constexpr (!std::is_void_v<T>)
        return std::move(*outcome.value);
}

/// The sentence of what the task fails with; empty when it succeeds.
template <class T>
std::string failureText(Task<T> task) {
    try {
        await(std::move(task));
        return {};
    } catch (...) {
        return describe(std::current_exception());
    }
}

} // namespace varnet::test
