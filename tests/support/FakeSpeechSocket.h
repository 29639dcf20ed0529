#pragma once

#include "Varnet/async/AsyncQueue.h"
#include "Varnet/async/Event.h"
#include "Varnet/speech/LiveSpeech.h"

#include <variant>

namespace varnet::test {

/// The engine's end of a fake connection. It outlives the socket, which the session owns. Main thread.
class FakeSpeechEngine {
public:
    /// The client's end; one for each engine.
    std::unique_ptr<SpeechSocket> makeSocket();

    /// Answers "session.created", "session.updated" and "input_audio_buffer.committed" by itself.
    static FakeSpeechEngine cooperative();

    void say(std::string json) { say({SpeechMessage::Kind::text, std::move(json)}); }
    void say(SpeechMessage message) { m_state->toClient.offer(std::move(message)); }
    /// The next receive, after what was said, fails with this.
    void breakWith(std::exception_ptr failure) { m_state->toClient.offer(std::move(failure)); }
    /// From now on sends wait until they are let through; those that wait are let through by `holdSends(false)`.
    void holdSends(bool hold) { hold ? m_state->sendsPass.reset() : m_state->sendsPass.set(); }

    std::optional<int> closeCode() const { return m_state->closeCode; }
    const std::vector<SpeechMessage>& heard() const { return m_state->heard; }

private:
    friend class FakeSpeechSocket;
    struct State {
        AsyncQueue<std::variant<SpeechMessage, std::exception_ptr>> toClient{100000};
        std::vector<SpeechMessage> heard;
        Event sendsPass;
        bool cooperative = false;
        std::optional<int> closeCode;

        State() { sendsPass.set(); }
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// Time that passes only by `advance`, for code that takes its clock and its sleep as functions.
class FakeTime {
public:
    /// The usual limits of a session, on this clock.
    SpeechTiming timing();
    /// Lets time pass in small steps, running everything that becomes ready after each.
    void advance(std::chrono::nanoseconds duration);

private:
    struct State {
        std::chrono::nanoseconds now{std::chrono::hours(1)};
        std::vector<std::pair<std::chrono::nanoseconds, std::shared_ptr<Wait>>> sleeping;
    };
    static Task<bool> sleep(std::shared_ptr<State> state, std::chrono::nanoseconds duration, std::stop_token stop);
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace varnet::test
