#pragma once

#include "Varnet/async/Wait.h"

#include <memory>

namespace varnet {

/// A condition of the main thread that coroutines wait for. It stays set until `reset`. Destroying it ends every wait
/// with `destroyed`, also one whose end was on its way: after `destroyed` the owner must not be touched.
class Event {
public:
    Event();
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    bool isSet() const;
    void set();
    void reset();

    /// Ends at once when the event is set. Several coroutines may wait.
    Task<WaitOutcome> wait(std::chrono::nanoseconds timeout = noTimeout, std::stop_token stop = {});

private:
    struct State;
    static Task<WaitOutcome> waitFor(std::shared_ptr<State> state, std::chrono::nanoseconds timeout,
                                     std::stop_token stop);
    std::shared_ptr<State> m_state;
};

} // namespace varnet
