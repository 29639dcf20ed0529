#include "MeetingCore/base/Failures.h"
#include "tests/support/Await.h"
#include "tests/support/FakeSpeechSocket.h"

#include <gtest/gtest.h>

#include <thread>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using Kind = SpeechMessage::Kind;

const std::string update = R"({"type":"session.update","session":{"sample_rate":16000,"word_timestamps":true,)"
                           R"("speaker_diarization":true,"endpointing_ms":800}})";
const std::string commit = R"({"type":"input_audio_buffer.commit"})";
const std::string delta = R"({"type":"conversation.item.delta","delta":"hello"})";
const char* const fellBehind = "The speech engine fell behind the recording. Live transcription stopped; retry from "
                               "saved audio after the meeting.";
const char* const notInTime = "Speech engine did not finish in time. Retry transcription from saved audio.";

/// A session with a fake engine, fake time, and what it told its owner.
struct Session {
    explicit Session(FakeSpeechEngine with = FakeSpeechEngine::cooperative())
        : engine(std::move(with)), live(LiveSpeech::make(engine.makeSocket(), time.timing())) {}
    ~Session() {
        live->close(std::make_exception_ptr(Cancelled()), false);
        settle();
    }

    Task<> connect(std::stop_token stop = {}) {
        return live->connect([this](SpeechEvent event) { return handle(this, std::move(event)); },
                             [this](const std::exception_ptr& failure) { errors.push_back(describe(failure)); },
                             std::move(stop));
    }
    static Task<> handle(Session* session, SpeechEvent event) {
        session->events.push_back(event.type);
        co_await session->consumerReady.wait();
        session->events.push_back("done");
    }
    void append(std::string bytes) { live->append(std::as_bytes(std::span(bytes))); }
    std::vector<SpeechMessage> heard() const { return engine.heard(); }

    FakeTime time;
    FakeSpeechEngine engine;
    std::shared_ptr<LiveSpeech> live;
    Event consumerReady;
    std::vector<std::string> events;
    std::vector<std::string> errors;
};

/// What the task fails with; "none" when it succeeds.
std::string failureOf(Task<> task) {
    try {
        await(std::move(task));
        return "none";
    } catch (...) {
        return describe(std::current_exception());
    }
}

SpeechMessage text(std::string bytes) {
    return {Kind::text, std::move(bytes)};
}
SpeechMessage binary(std::string bytes) {
    return {Kind::binary, std::move(bytes)};
}

TEST(LiveSpeech, SendsSettingsAudioAndCommitInThisOrder) {
    Session session;
    session.consumerReady.set();
    session.append("before the start");
    await(session.connect());
    session.append("block");
    session.append(std::string("\0\xff", 2));
    EXPECT_EQ(failureOf(session.live->finish()), "none");
    session.append("after the end");
    settle();
    EXPECT_EQ(session.heard(),
              (std::vector{text(update), binary("block"), binary(std::string("\0\xff", 2)), text(commit)}));
    EXPECT_EQ(session.engine.closeCode(), 1001);
    EXPECT_EQ(session.events, (std::vector<std::string>{"input_audio_buffer.committed", "done"}));
    EXPECT_TRUE(session.errors.empty());
}

TEST(LiveSpeech, HandlesEventsOneAtATimeInOrder) {
    Session session;
    await(session.connect());
    session.engine.say(delta);
    session.engine.say(binary(R"({"type":"x.completed","transcript":"hello"})"));
    settle();
    EXPECT_EQ(session.events, std::vector<std::string>{"conversation.item.delta"});
    session.consumerReady.set();
    EXPECT_EQ(failureOf(session.live->finish()), "none");
    EXPECT_EQ(session.events, (std::vector<std::string>{"conversation.item.delta", "done", "x.completed", "done",
                                                        "input_audio_buffer.committed", "done"}));
}

TEST(LiveSpeech, HandshakeFailsInItsOwnWords) {
    const auto brokenBy = [](const char* words) { return std::make_exception_ptr(SpeechFailure(words)); };
    struct Case {
        const char* name;
        std::function<void(FakeSpeechEngine&)> script;
        const char* failure;
    };
    const Case cases[] = {
        {"updated comes first", [](auto& e) { e.say(R"({"type":"session.updated"})"); },
         "Speech session did not start"},
        {"created comes twice",
         [](auto& e) {
             e.say(R"({"type":"session.created"})");
             e.say(R"({"type":"session.created"})");
         },
         "Speech settings were rejected"},
        {"an error with a message", [](auto& e) { e.say(R"({"type":"error","error":{"message":"Full."}})"); }, "Full."},
        {"an error without one", [](auto& e) { e.say(R"({"type":"error"})"); }, "Speech engine rejected the request"},
        {"another kind of message", [](auto& e) { e.say({Kind::other, "{}"}); }, "Unknown speech response"},
        {"a broken connection", [&](auto& e) { e.breakWith(brokenBy("Refused.")); }, "Refused."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Session session{FakeSpeechEngine()};
        c.script(session.engine);
        EXPECT_EQ(failureOf(session.connect()), c.failure);
        EXPECT_EQ(session.engine.closeCode(), 1001);
        EXPECT_EQ(failureOf(session.connect()), c.failure);
        EXPECT_EQ(failureOf(session.live->finish()), c.failure);
        EXPECT_TRUE(session.errors.empty());
    }
}

TEST(LiveSpeech, HandshakeTimeoutIsTheReasonAndNotTheCancelledSocket) {
    Session session{FakeSpeechEngine()};
    Task<> connecting = session.connect();
    session.time.advance(9900ms);
    EXPECT_FALSE(connecting.isReady());
    session.time.advance(100ms);
    EXPECT_EQ(failureOf(std::move(connecting)), "Speech engine setup timed out. Audio can still be recorded locally.");
    EXPECT_EQ(session.engine.closeCode(), 1001);
    EXPECT_TRUE(session.errors.empty());
}

TEST(LiveSpeech, HandshakeWatchdogEndsWithTheHandshake) {
    Session session;
    await(session.connect());
    session.time.advance(60s);
    EXPECT_FALSE(session.engine.closeCode());
}

TEST(LiveSpeech, ServesOneSessionOnly) {
    Session session;
    EXPECT_EQ(failureOf(session.live->finish()), "No active speech session to finish");
    await(session.connect());
    EXPECT_EQ(failureOf(session.connect()), "Speech session has already been used");
    EXPECT_FALSE(session.engine.closeCode());
    session.live->close(std::make_exception_ptr(SpeechFailure("First.")), true);
    session.live->close(std::make_exception_ptr(SpeechFailure("Second.")), true);
    EXPECT_EQ(failureOf(session.connect()), "First.");
    EXPECT_EQ(failureOf(session.live->finish()), "First.");
    EXPECT_EQ(session.errors, std::vector<std::string>{"First."});
}

TEST(LiveSpeech, TheBlockThatDoesNotFitBehind128EndsTheSession) {
    Session session;
    await(session.connect());
    session.engine.holdSends(true);
    session.append("stuck");
    settle();
    for (int i = 0; i < 128; ++i)
        session.append("waiting");
    EXPECT_TRUE(session.errors.empty());
    std::thread([&session] { session.append("refused"); }).join();
    EXPECT_EQ(session.errors, std::vector<std::string>{fellBehind});
    session.append("late");
    EXPECT_TRUE(eventually([&] { return session.engine.closeCode() == 1001; }));
    EXPECT_EQ(failureOf(session.live->finish()), fellBehind);
    EXPECT_EQ(session.errors.size(), 1u);
    EXPECT_EQ(session.heard(), std::vector{text(update)});
}

TEST(LiveSpeech, FailuresOfARunningSessionAreReportedOnce) {
    struct Case {
        const char* name;
        std::function<void(FakeSpeechEngine&)> script;
        const char* failure; ///< null: any sentence
    };
    const Case cases[] = {
        {"an error event", [](auto& e) { e.say(R"({"type":"error","error":{"message":"Out of memory."}})"); },
         "Out of memory."},
        {"an error without a message", [](auto& e) { e.say(R"({"type":"error"})"); },
         "Speech engine rejected the request"},
        {"another kind of message", [](auto& e) { e.say({Kind::other, delta}); }, "Unknown speech response"},
        {"no JSON", [](auto& e) { e.say("<html>"); }, nullptr},
        {"no type", [](auto& e) { e.say(R"({"delta":"x"})"); }, nullptr},
        {"a lost connection",
         [](auto& e) { e.breakWith(std::make_exception_ptr(SpeechFailure("The engine is gone."))); },
         "The engine is gone."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Session session;
        session.consumerReady.set();
        await(session.connect());
        session.engine.say(delta);
        c.script(session.engine);
        session.engine.say(delta);
        EXPECT_TRUE(eventually([&] { return session.engine.closeCode() == 1001; }));
        settle();
        EXPECT_EQ(session.events, (std::vector<std::string>{"conversation.item.delta", "done"}));
        ASSERT_EQ(session.errors.size(), 1u);
        if (c.failure)
            EXPECT_EQ(session.errors[0], c.failure);
        EXPECT_EQ(failureOf(session.live->finish()), session.errors[0]);
    }
}

TEST(LiveSpeech, AFailureOfTheEventHandlerEndsTheSession) {
    Session session;
    const auto fail = [](SpeechEvent) -> Task<> {
        throw Failure("The disk is gone.");
        co_return;
    };
    await(session.live->connect(
        fail, [&](const std::exception_ptr& failure) { session.errors.push_back(describe(failure)); }));
    session.engine.say(delta);
    EXPECT_TRUE(eventually([&] { return !session.errors.empty(); }));
    EXPECT_EQ(session.errors, std::vector<std::string>{"The disk is gone."});
}

TEST(LiveSpeech, ASessionThatBreaksAsItStartsFailsConnect) {
    Session session{FakeSpeechEngine()};
    session.engine.say(R"({"type":"session.created"})");
    session.engine.say(R"({"type":"session.updated"})");
    session.engine.breakWith(std::make_exception_ptr(SpeechFailure("Gone.")));
    EXPECT_EQ(failureOf(session.connect()), "Gone.");
    EXPECT_EQ(session.errors, std::vector<std::string>{"Gone."});
}

TEST(LiveSpeech, FinishWaitsForABacklogThatMovesAndGivesUpOnSilence) {
    Session session{FakeSpeechEngine()};
    session.engine.say(R"({"type":"session.created"})");
    session.engine.say(R"({"type":"session.updated"})");
    session.consumerReady.set();
    await(session.connect());
    Task<> finishing = session.live->finish();
    for (int i = 0; i < 5; ++i) {
        session.time.advance(20s);
        session.engine.say(delta);
        settle();
        ASSERT_FALSE(finishing.isReady()) << i;
    }
    session.time.advance(29s);
    EXPECT_FALSE(finishing.isReady());
    session.time.advance(2s);
    ASSERT_TRUE(finishing.isReady());
    EXPECT_EQ(failureOf(std::move(finishing)), notInTime);
    EXPECT_EQ(session.errors, std::vector<std::string>{notInTime});
}

TEST(LiveSpeech, BlocksThatLeaveCountAsProgressOfFinish) {
    Session session;
    session.consumerReady.set();
    await(session.connect());
    session.engine.holdSends(true);
    session.append("first");
    session.append("second");
    settle();
    Task<> finishing = session.live->finish();
    session.time.advance(25s);
    session.engine.holdSends(false);
    settle();
    EXPECT_EQ(failureOf(std::move(finishing)), "none");
    EXPECT_EQ(session.heard(), (std::vector{text(update), binary("first"), binary("second"), text(commit)}));
}

TEST(LiveSpeech, FinishEndsAfterTenMinutesHoweverBusyTheEngineIs) {
    Session session{FakeSpeechEngine()};
    session.engine.say(R"({"type":"session.created"})");
    session.engine.say(R"({"type":"session.updated"})");
    session.consumerReady.set();
    await(session.connect());
    Task<> finishing = session.live->finish();
    for (int second = 0; second < 590; second += 10) {
        session.time.advance(10s, 1s);
        session.engine.say(delta);
    }
    session.time.advance(9s);
    EXPECT_FALSE(finishing.isReady());
    session.time.advance(2s);
    ASSERT_TRUE(finishing.isReady());
    EXPECT_EQ(failureOf(std::move(finishing)), notInTime);
}

TEST(LiveSpeech, CancellationEndsConnectAndFinishWithoutAReport) {
    std::stop_source stop;
    Session connecting{FakeSpeechEngine()};
    Task<> connect = connecting.connect(stop.get_token());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_THROW(await(std::move(connect)), Cancelled);
    EXPECT_EQ(connecting.engine.closeCode(), 1001);

    Session early;
    EXPECT_THROW(await(early.connect(stop.get_token())), Cancelled);
    EXPECT_FALSE(early.engine.started());

    std::stop_source later;
    Session finishing;
    await(finishing.connect());
    finishing.engine.holdSends(true);
    Task<> finish = finishing.live->finish(later.get_token());
    later.request_stop();
    EXPECT_THROW(await(std::move(finish)), Cancelled);
    EXPECT_TRUE(finishing.errors.empty());
}

TEST(LiveSpeech, LivesAsLongAsItsSessionAndNoLonger) {
    Session session;
    std::weak_ptr<LiveSpeech> watched = session.live;
    await(session.connect());
    session.live->close(std::make_exception_ptr(Cancelled()), false);
    settle();
    std::thread([live = std::exchange(session.live, LiveSpeech::make(FakeSpeechEngine().makeSocket()))]() mutable {
        live.reset();
    }).join();
    EXPECT_TRUE(watched.expired());
    settle();
}

} // namespace
} // namespace varnet::test
