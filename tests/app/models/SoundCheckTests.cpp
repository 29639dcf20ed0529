#include "Varnet/models/SoundCheck.h"
#include "tests/support/Await.h"
#include "tests/support/FakeSoundServer.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

using enum CaptureSource;
using State = SoundCheck::State;

struct SoundCheckTest : ::testing::Test {
    FakeSoundServer server;
    std::unique_ptr<SoundCheck> check = std::make_unique<SoundCheck>([this] { return server.makeCapture(); });

    bool becomes(State state) {
        return eventually([&] { return check->state() == state; });
    }

    /// Delivers the value until the state comes about.
    bool heard(CaptureSource source, float value) {
        return eventually([&] {
            server.deliver(source, 320, monotonicNanoseconds(), value);
            return check->heard();
        });
    }
};

} // namespace

TEST_F(SoundCheckTest, HearsWhatIsClearlyAboveSilence) {
    check->listenTo(microphone);
    ASSERT_TRUE(becomes(State::listening));
    ASSERT_TRUE(eventually([&] {
        server.deliver(microphone, 320, monotonicNanoseconds(), 0.005F);
        return check->level() > 0;
    }));
    EXPECT_EQ(check->words(), "Listening. Say something.");
    EXPECT_TRUE(heard(microphone, 0.1F));
    EXPECT_EQ(check->words(), "We can hear you.");
    EXPECT_NEAR(check->level(), 0.667, 0.001) << "0.1 is 20 of 60 dB below the top";
    EXPECT_TRUE(eventually([&] { return check->level() == 0; })) << "the meter falls when nothing comes any more";

    check->listenTo(system);
    ASSERT_TRUE(becomes(State::listening)) << "each source is heard for itself";
    EXPECT_TRUE(heard(system, 0.005F));
    EXPECT_EQ(check->words(), "Meeting audio works.");
}

TEST_F(SoundCheckTest, OneCaptureRunsAtATimeAndNoneInTheEnd) {
    server.startsPass.reset();
    check->listenTo(microphone);
    check->listenTo(system);
    EXPECT_EQ(server.captures.size(), 1);
    server.startsPass.set();
    ASSERT_TRUE(becomes(State::listening));
    ASSERT_EQ(server.captures.size(), 2);
    EXPECT_FALSE(server.captures[0]->running);
    EXPECT_EQ(server.captures[1]->sources, std::vector{system});

    check->listenTo({});
    EXPECT_TRUE(eventually([&] { return !server.captures[1]->running; }));
    EXPECT_EQ(check->state(), State::off);
    server.startsPass.reset();
    check->listenTo(microphone);
    check.reset();
    server.startsPass.set();
    settle();
    EXPECT_FALSE(server.captures[2]->running) << "what was still starting ends as well";
}

TEST_F(SoundCheckTest, SaysWhyNothingCanBeHeardAndTriesAgainWhenAsked) {
    server.microphoneFailure = std::make_exception_ptr(
        CaptureUnavailable(CaptureUnavailable::Reason::noMicrophone, "There is no audio source."));
    check->listenTo(microphone);
    ASSERT_TRUE(becomes(State::failed));
    EXPECT_EQ(check->words(), "No microphone was found. Connect one and try again.");
    server.microphoneFailure = {};
    check->tryAgain();
    ASSERT_TRUE(becomes(State::listening));
    server.fail("The sound server has gone.");
    ASSERT_TRUE(becomes(State::failed));
    EXPECT_EQ(check->words(), "The sound server has gone.");
    EXPECT_FALSE(server.captures.back()->running);
}

} // namespace varnet::test
