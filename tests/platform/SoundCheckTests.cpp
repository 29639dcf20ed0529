#include "Varnet/models/SoundCheck.h"
#include "tests/platform/SoundLab.h"

#include <gtest/gtest.h>

#include <csignal>

namespace varnet::test {

TEST(SoundCheckDevices, HearTheVoiceAndTheTestSoundAndNothingInSilence) {
    SoundCheck check;
    const auto comes = [&](SoundCheck::State state) { return eventually([&] { return check.state() == state; }, 8s); };
    {
        const Tone voice("mic_feed", 1000);
        check.listenTo(CaptureSource::microphone);
        EXPECT_TRUE(comes(SoundCheck::State::heard));
    }
    check.listenTo(CaptureSource::system);
    ASSERT_TRUE(comes(SoundCheck::State::listening));
    listen(500ms);
    EXPECT_EQ(check.level(), 0);
    EXPECT_EQ(check.state(), SoundCheck::State::listening);
    check.playTestSound();
    EXPECT_TRUE(comes(SoundCheck::State::heard)) << check.words().toStdString();

    run("pw-cli", {"destroy", "mic"});
    check.listenTo(CaptureSource::microphone);
    EXPECT_TRUE(comes(SoundCheck::State::failed));
    EXPECT_EQ(check.words(), "No microphone was found. Connect one and try again.");
    kill(processID("VARNET_TEST_PIPEWIRE_PID"), SIGKILL);
    check.tryAgain();
    EXPECT_EQ(check.state(), SoundCheck::State::starting);
    ASSERT_TRUE(comes(SoundCheck::State::failed));
    EXPECT_EQ(check.words(), "The sound server PipeWire is not running, so nothing can be heard or recorded. Start it "
                             "and try again.");
}

} // namespace varnet::test
