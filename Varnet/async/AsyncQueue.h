#pragma once

#include "Varnet/async/Wait.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace varnet {

/// A bounded queue from any thread to one coroutine of the main thread.
template <class T>
class AsyncQueue {
public:
    enum class Offer { accepted, full, ended };

    explicit AsyncQueue(std::size_t capacity) : m_state(std::make_shared<State>()) { m_state->capacity = capacity; }
    ~AsyncQueue() { end(); }
    AsyncQueue(const AsyncQueue&) = delete;
    AsyncQueue& operator=(const AsyncQueue&) = delete;

    /// Puts a value at the back. A full queue keeps what it holds and refuses the new one. Any thread; never blocks
    /// for longer than a move.
    Offer offer(T value) {
        const std::lock_guard lock(m_state->mutex);
        if (m_state->ended)
            return Offer::ended;
        if (m_state->values.size() >= m_state->capacity)
            return Offer::full;
        m_state->values.push_back(std::move(value));
        m_state->wake();
        return Offer::accepted;
    }

    /// Takes no more values; those in the queue can still be taken out. Any thread.
    void end() {
        const std::lock_guard lock(m_state->mutex);
        m_state->ended = true;
        m_state->wake();
    }

    /// The value at the front, waiting for one if need be; absent once the queue has ended and is empty, or `stop` was
    /// requested. Main thread, one coroutine at a time, which may outlive the queue.
    Task<std::optional<T>> next(std::stop_token stop = {}) { return take(m_state, std::move(stop)); }

private:
    struct State {
        std::mutex mutex;
        std::size_t capacity = 0;
        std::deque<T> values;
        bool ended = false;
        std::shared_ptr<Wait> reader;

        void wake() {
            if (const auto wait = std::exchange(reader, nullptr))
                wait->finish(WaitOutcome::fired);
        }

        /// The next value or the end, or else a wait for either.
        std::shared_ptr<Wait> poll(std::optional<T>& value) {
            const std::lock_guard lock(mutex);
            if (!values.empty()) {
                value = std::move(values.front());
                values.pop_front();
            } else if (!ended) {
                reader = std::make_shared<Wait>();
                return reader;
            }
            return nullptr;
        }
    };

    static Task<std::optional<T>> take(std::shared_ptr<State> state, std::stop_token stop) {
        std::optional<T> value;
        while (!stop.stop_requested()) {
            const std::shared_ptr<Wait> wait = state->poll(value);
            if (!wait)
                break;
            co_await Wait::ended(wait, noTimeout, stop);
        }
        co_return value;
    }

    std::shared_ptr<State> m_state;
};

} // namespace varnet
