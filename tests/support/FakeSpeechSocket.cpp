#include "tests/support/FakeSpeechSocket.h"

#include "MeetingCore/base/Failures.h"
#include "tests/support/Await.h"

#include <utility>

namespace varnet::test {

class FakeSpeechSocket final : public SpeechSocket {
public:
    explicit FakeSpeechSocket(std::shared_ptr<FakeSpeechEngine::State> state) : m_state(std::move(state)) {}
    ~FakeSpeechSocket() override { m_state->toClient.end(); }

    void start() override { answer(R"({"type":"session.created"})"); }

    Task<> send(SpeechMessage message) override {
        const auto state = m_state;
        co_await state->sendsPass.wait();
        if (state->closeCode)
            throw Cancelled();
        state->heard.push_back(message);
        if (message.bytes.find("session.update") != std::string::npos)
            answer(R"({"type":"session.updated"})");
        if (message.bytes.find("input_audio_buffer.commit") != std::string::npos)
            answer(R"({"type":"input_audio_buffer.committed"})");
    }

    Task<SpeechMessage> receive() override {
        const auto state = m_state;
        const auto next = co_await state->toClient.next();
        if (!next || state->closeCode)
            throw Cancelled();
        if (const auto* failure = std::get_if<std::exception_ptr>(&*next))
            std::rethrow_exception(*failure);
        co_return std::get<SpeechMessage>(*next);
    }

    void cancel(int closeCode) override {
        if (!m_state->closeCode)
            m_state->closeCode = closeCode;
        m_state->toClient.end();
        m_state->sendsPass.set();
    }

private:
    void answer(std::string json) {
        if (m_state->cooperative)
            m_state->toClient.offer(SpeechMessage{SpeechMessage::Kind::text, std::move(json)});
    }

    std::shared_ptr<FakeSpeechEngine::State> m_state;
};

std::unique_ptr<SpeechSocket> FakeSpeechEngine::makeSocket() {
    return std::make_unique<FakeSpeechSocket>(m_state);
}

FakeSpeechEngine FakeSpeechEngine::cooperative() {
    FakeSpeechEngine engine;
    engine.m_state->cooperative = true;
    return engine;
}

SpeechTiming FakeTime::timing() {
    SpeechTiming timing;
    timing.now = [state = m_state] { return state->now; };
    timing.sleep = [state = m_state](std::chrono::nanoseconds duration, std::stop_token stop) {
        return sleep(state, duration, std::move(stop));
    };
    return timing;
}

Task<bool> FakeTime::sleep(std::shared_ptr<State> state, std::chrono::nanoseconds duration, std::stop_token stop) {
    const auto wait = std::make_shared<Wait>();
    state->sleeping.emplace_back(state->now + duration, wait);
    co_await Wait::ended(wait, noTimeout, stop);
    co_return !stop.stop_requested();
}

void FakeTime::advance(std::chrono::nanoseconds duration) {
    const std::chrono::nanoseconds end = m_state->now + duration;
    settle();
    while (m_state->now < end) {
        m_state->now = std::min(end, m_state->now + std::chrono::milliseconds(250));
        std::erase_if(m_state->sleeping, [this](const auto& sleeper) {
            const bool due = sleeper.first <= m_state->now;
            if (due)
                sleeper.second->finish(WaitOutcome::fired);
            return due;
        });
        settle();
    }
}

} // namespace varnet::test
