#include "Varnet/capture/AudioFailure.h"
#include "Varnet/capture/AudioRecorder.h"
#include "tests/app/capture/RecorderFixture.h"
#include "tests/support/FileSizeLimit.h"

namespace varnet {
namespace {

using enum CaptureSource;
using test::half;

class AudioRecorderTest : public test::RecorderFixture<AudioRecorder> {
protected:
    AudioRecorderTest() : RecorderFixture("microphone.wav") {}
    void deliver(double seconds, std::size_t count) { RecorderFixture::deliver(microphone, seconds, count); }
};

TEST_F(AudioRecorderTest, WritesTheMicrophoneAndTellsWhatItWrote) {
    start();
    EXPECT_EQ(sound.captures.back()->sources, std::vector{microphone});
    for (int i = 0; i < 10; ++i)
        deliver(0.1 * i, 1'600);
    EXPECT_EQ(stop(), "");
    const auto written = samples("microphone.wav");
    ASSERT_EQ(written.size(), 16'000U);
    for (std::size_t i = 200; i < 15'800; ++i)
        ASSERT_NEAR(written[i], half, 2) << i;
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(heard.data()), heard.size()),
              readFile(folder / "microphone.wav").substr(44));
    EXPECT_NEAR(levels.at(2).first, 0.5F, 0.01F);
}

TEST_F(AudioRecorderTest, FillsAGapWithSilenceAndDropsOnlyWhatComesTooEarlyOrTooLate) {
    start();
    deliver(-0.05, 8'800); // 800 of them lie before the start
    clock.setSeconds(60);  // filled up to half a second behind the clock
    deliver(60, 0);
    ASSERT_TRUE(waitForHeard(59 * 16'000 + 8'000));
    deliver(59.4, 17'600); // 1,600 of them come too late
    EXPECT_EQ(stop(), "");
    const auto written = samples("microphone.wav");
    ASSERT_EQ(written.size(), 60U * 16'000 + 8'000);
    EXPECT_NEAR(written[400], half, 2);
    EXPECT_NEAR(written[7'950], half, 2'000) << "the end before the gap is whole";
    EXPECT_EQ(written[8'000], 0);
    EXPECT_EQ(written[59 * 16'000 + 7'999], 0);
    EXPECT_NEAR(written[59 * 16'000 + 8'100], half, 2);
}

TEST_F(AudioRecorderTest, EndsAtTheFirstFailureAndSaysItAgainAtTheStop) {
    start();
    deliver(0.0, 1'600);
    ASSERT_TRUE(waitForHeard(1'500));
    const std::size_t before = heardFrames();
    {
        const test::FileSizeLimit diskFull(44 + 2 * before + 10);
        deliver(0.1, 1'600);
        ASSERT_TRUE(waitForError());
    }
    deliver(0.2, 1'600);
    sound.fail("later");
    EXPECT_EQ(stop(), errors[0]);
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_EQ(heardFrames(), before);
    EXPECT_FALSE(sound.captures.back()->running);
    EXPECT_EQ(stop(), "");
}

} // namespace
} // namespace varnet
