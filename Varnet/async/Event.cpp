#include "Varnet/async/Event.h"

#include <utility>
#include <vector>

namespace varnet {

struct Event::State {
    bool set = false;
    bool alive = true;
    std::vector<std::weak_ptr<Wait>> waits;

    void finishAll(WaitOutcome outcome) {
        for (const auto& weak : std::exchange(waits, {})) {
            if (const auto wait = weak.lock())
                wait->finish(outcome);
        }
    }
};

Event::Event() : m_state(std::make_shared<State>()) {}

Event::~Event() {
    m_state->alive = false;
    m_state->finishAll(WaitOutcome::destroyed);
}

bool Event::isSet() const {
    return m_state->set;
}

void Event::set() {
    m_state->set = true;
    m_state->finishAll(WaitOutcome::fired);
}

void Event::reset() {
    m_state->set = false;
}

Task<WaitOutcome> Event::wait(std::chrono::nanoseconds timeout, std::stop_token stop) {
    return waitFor(m_state, timeout, std::move(stop));
}

Task<WaitOutcome> Event::waitFor(std::shared_ptr<State> state, std::chrono::nanoseconds timeout, std::stop_token stop) {
    if (stop.stop_requested())
        co_return WaitOutcome::stopped;
    if (state->set)
        co_return WaitOutcome::fired;
    std::erase_if(state->waits, [](const std::weak_ptr<Wait>& wait) { return wait.expired(); });
    const auto wait = std::make_shared<Wait>();
    state->waits.push_back(wait);
    const WaitOutcome outcome = co_await Wait::ended(wait, timeout, stop);
    co_return state->alive ? outcome : WaitOutcome::destroyed;
}

} // namespace varnet
