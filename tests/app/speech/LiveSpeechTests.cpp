#include "tests/support/Await.h"
#include "tests/support/FakeSpeechSocket.h"

#include <gtest/gtest.h>

#include <thread>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using Kind = SpeechMessage::Kind;
using Strings = std::vector<std::string>;

const std::string update = R"({"type":"session.update","session":{"sample_rate":16000,"word_timestamps":true,)"
                           R"("speaker_diarization":true,"endpointing_ms":800}})";
const std::string commit = R"({"type":"input_audio_buffer.commit"})";
const std::string created = R"({"type":"session.created"})";
const std::string updated = R"({"type":"session.updated"})";
const std::exception_ptr gone = std::make_exception_ptr(SpeechFailure("Gone."));
const std::string delta = R"({"type":"conversation.item.delta","delta":"hello"})";
const char* const fellBehind = "The speech engine fell behind the recording. Live transcription stopped; retry from "
                               "saved audio after the meeting.";
const char* const notInTime = "Speech engine did not finish in time. Retry transcription from saved audio.";

/// A session with a fake engine, fake time, and what it told its owner, who cannot bear the word "unbearable".
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
        if (event.delta == "unbearable")
            throw Failure("The disk is gone.");
        session->events.push_back(event.type);
        co_return;
    }
    void append(std::string bytes) { live->append(std::as_bytes(std::span(bytes))); }

    FakeTime time;
    FakeSpeechEngine engine;
    std::shared_ptr<LiveSpeech> live;
    Strings events;
    Strings errors;
};

TEST(LiveSpeech, SendsSettingsAudioAndCommitInThisOrder) {
    Session session;
    session.append("before the start");
    await(session.connect());
    session.append("block");
    session.append(std::string("\0\xff", 2));
    EXPECT_EQ(failureText(session.live->finish()), "");
    session.append("after the end");
    settle();
    EXPECT_EQ(session.engine.heard(),
              (std::vector<SpeechMessage>{
                  {Kind::text, update}, {Kind::binary, "block"}, {Kind::binary, {"\0\xff", 2}}, {Kind::text, commit}}));
    EXPECT_EQ(session.engine.closeCode(), 1001);
    EXPECT_TRUE(session.errors.empty());
}

struct Breaking {
    const char* name;
    std::function<void(FakeSpeechEngine&)> script;
    const char* failure;
};

TEST(LiveSpeech, HandshakeFailsInItsOwnWords) {
    const Breaking cases[] = {
        {"updated comes first", [](auto& e) { e.say(updated); }, "Speech session did not start"},
        {"created comes twice", [](auto& e) { e.say(created), e.say(created); }, "Speech settings were rejected"},
        {"an error", [](auto& e) { e.say(R"({"type":"error","error":{"message":"Full."}})"); }, "Full."},
        {"a broken connection", [](auto& e) { e.breakWith(gone); }, "Gone."},
    };
    for (const auto& [name, script, failure] : cases) {
        SCOPED_TRACE(name);
        Session session{FakeSpeechEngine()};
        script(session.engine);
        EXPECT_EQ(failureText(session.connect()), failure);
        EXPECT_EQ(session.engine.closeCode(), 1001);
        EXPECT_EQ(failureText(session.live->finish()), failure);
        EXPECT_TRUE(session.errors.empty());
    }
}

TEST(LiveSpeech, HandshakeTimeoutIsTheReasonAndNotTheCancelledSocket) {
    Session session{FakeSpeechEngine()};
    Task<> connecting = session.connect();
    session.time.advance(9900ms);
    EXPECT_FALSE(connecting.isReady());
    session.time.advance(100ms);
    EXPECT_EQ(failureText(std::move(connecting)),
              "Speech engine setup timed out. Audio can still be recorded locally.");
    EXPECT_EQ(session.engine.closeCode(), 1001);
    EXPECT_TRUE(session.errors.empty());
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
    EXPECT_EQ(session.errors, Strings{fellBehind});
    EXPECT_TRUE(eventually([&] { return session.engine.closeCode() == 1001; }));
    EXPECT_EQ(failureText(session.live->finish()), fellBehind);
    EXPECT_EQ(session.errors.size(), 1u);
}

TEST(LiveSpeech, FailuresOfARunningSessionAreReportedOnce) {
    const Breaking cases[] = {
        {"an error event", [](auto& e) { e.say(R"({"type":"error","error":{"message":"Out of memory."}})"); },
         "Out of memory."},
        {"another kind of message", [](auto& e) { e.say({Kind::other, delta}); }, "Unknown speech response"},
        {"a lost connection", [](auto& e) { e.breakWith(gone); }, "Gone."},
        {"the owner", [](auto& e) { e.say(R"({"type":"x.delta","delta":"unbearable"})"); }, "The disk is gone."},
    };
    for (const auto& [name, script, failure] : cases) {
        SCOPED_TRACE(name);
        Session session;
        await(session.connect());
        session.engine.say(delta);
        script(session.engine);
        session.engine.say(delta);
        EXPECT_TRUE(eventually([&] { return session.engine.closeCode() == 1001; }));
        settle();
        EXPECT_EQ(session.events, Strings{"conversation.item.delta"});
        EXPECT_EQ(session.errors, Strings{failure});
        EXPECT_EQ(failureText(session.live->finish()), failure);
    }
}

TEST(LiveSpeech, FinishWaitsForABacklogThatMovesAndGivesUpOnSilence) {
    Session session{FakeSpeechEngine()}; // does not acknowledge by itself
    session.engine.say(created);
    session.engine.say(updated);
    await(session.connect());
    session.engine.holdSends(true);
    session.append("block");
    settle();
    Task<> finishing = session.live->finish();
    session.time.advance(25s);
    session.engine.holdSends(false); // a block that leaves is progress
    for (int i = 0; i < 5; ++i) {
        session.time.advance(20s);
        session.engine.say(delta); // and so is an event
        settle();
        ASSERT_FALSE(finishing.isReady()) << i;
    }
    session.time.advance(29s);
    EXPECT_FALSE(finishing.isReady());
    session.time.advance(2s);
    ASSERT_TRUE(finishing.isReady());
    EXPECT_EQ(failureText(std::move(finishing)), notInTime);
    EXPECT_EQ(session.errors, Strings{notInTime});
    EXPECT_EQ(session.engine.heard().back(), (SpeechMessage{Kind::text, commit}));
}

TEST(LiveSpeech, CancellationEndsConnectAndFinishWithoutAReport) {
    std::stop_source stop;
    Session connecting{FakeSpeechEngine()};
    Task<> connect = connecting.connect(stop.get_token());
    std::thread([&stop] { stop.request_stop(); }).join();
    EXPECT_THROW(await(std::move(connect)), Cancelled);
    EXPECT_EQ(connecting.engine.closeCode(), 1001);

    std::stop_source later;
    Session finishing;
    await(finishing.connect());
    finishing.engine.holdSends(true);
    Task<> finish = finishing.live->finish(later.get_token());
    later.request_stop();
    EXPECT_THROW(await(std::move(finish)), Cancelled);
    EXPECT_TRUE(finishing.errors.empty());
}

} // namespace
} // namespace varnet::test
