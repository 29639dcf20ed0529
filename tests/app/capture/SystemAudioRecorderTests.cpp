#include "Varnet/capture/AudioFailure.h"
#include "Varnet/capture/SystemAudioRecorder.h"
#include "tests/app/capture/RecorderFixture.h"

namespace varnet {
namespace {

using enum CaptureSource;
using test::half;

class SystemAudioRecorderTest : public test::RecorderFixture<SystemAudioRecorder> {
protected:
    SystemAudioRecorderTest() : RecorderFixture("meeting.wav") {}

    QJsonObject diagnostics() {
        return QJsonDocument::fromJson(QByteArray::fromStdString(readFile(folder / "capture-diagnostics.json")))
            .object();
    }
};

constexpr const char* streamStopped = "One of the audio streams stopped unexpectedly.";
constexpr const char* noMicrophone =
    "No microphone buffers were received. Check microphone access and the selected device.";

TEST_F(SystemAudioRecorderTest, AlignsBothTracksWhateverTheOrderOfDelivery) {
    start();
    EXPECT_EQ(sound.captures.back()->sources, (std::vector{microphone, system}));
    clock.setSeconds(1.5);
    deliver(system, 1.0, 1'600, 0.25F);
    deliver(microphone, 1.0, 1'600);
    sound.notify("The microphone is silent.");
    EXPECT_EQ(stop(), "");
    const auto microphoneTrack = samples("microphone.wav");
    const auto systemTrack = samples("system.wav");
    const auto mix = samples("meeting.wav");
    for (const auto* track : {&microphoneTrack, &systemTrack, &mix}) {
        ASSERT_EQ(track->size(), 24'000U);
        EXPECT_EQ((*track)[15'999], 0);
        EXPECT_EQ((*track)[17'600], 0);
    }
    EXPECT_NEAR(microphoneTrack[16'800], half, 2);
    EXPECT_NEAR(systemTrack[16'800], 8'191, 2);
    EXPECT_NEAR(mix[16'800], 24'575, 2);
    EXPECT_EQ(heardFrames(), 24'000U);
    EXPECT_EQ(notices, std::vector<std::string>{"The microphone is silent."});
    EXPECT_NEAR(levels.at(6).second.value(), 0.2F, 0.05F);
}

TEST_F(SystemAudioRecorderTest, KeepsTheTailOfASourceThatStopsAndItsPlaceWhenItComesBack) {
    // A sound server that stands still for two seconds. The filter holds the last 87 frames back until it knows.
    start();
    for (const CaptureSource source : {microphone, system})
        deliver(source, 0, 8'000);
    for (const double now : {0.85, 1.3, 2.0, 2.5}) { // a tick sees that nothing comes, and then reads on
        clock.setSeconds(now);
        deliver(system, now, 0); // wakes the queue
        const auto due = static_cast<std::size_t>(SystemAudioRecorder::dueFrames(std::llround(now * 1e9)));
        ASSERT_TRUE(waitForHeard(due));
    }
    for (const CaptureSource source : {microphone, system})
        deliver(source, 2.5, 8'000);
    clock.setSeconds(3.0);
    EXPECT_EQ(stop(), "");
    EXPECT_EQ(diagnostics()["late_frames_dropped"].toInt(), 0);
    EXPECT_TRUE(errors.empty());
    for (const char* name : {"microphone.wav", "system.wav"}) {
        const auto track = samples(name);
        ASSERT_EQ(track.size(), 48'000U);
        EXPECT_NEAR(track[7'950], half, 2'000) << "the tail is there";
        EXPECT_EQ(track[8'000], 0);
        EXPECT_EQ(track[39'999], 0);
        EXPECT_GT(track[40'000], 1'000);
    }
}

TEST_F(SystemAudioRecorderTest, FailsOnceOnAnImpossibleTimestamp) {
    start();
    clock.setSeconds(1);
    deliver(microphone, 0.5, 160);
    deliver(microphone, 3.5, 160); // 2.5 s ahead
    deliver(microphone, 3.6, 160);
    ASSERT_TRUE(waitForError());
    sound.fail("later");
    EXPECT_EQ(stop(), streamStopped);
    EXPECT_EQ(errors.size(), 1U);
    EXPECT_TRUE(diagnostics()["capture_failed"].toBool());
    EXPECT_EQ(samples("meeting.wav").size(), heardFrames()) << "no flush after a failure, but whole files";
    EXPECT_EQ(stop(), "");
}

TEST_F(SystemAudioRecorderTest, MissesAMicrophoneThatNeverSpoke) {
    start();
    deliver(system, 0.0, 1'600);
    clock.setSeconds(0.2);
    EXPECT_EQ(stop(), noMicrophone);
    EXPECT_NEAR(samples("meeting.wav")[800], half, 2);
    const std::string expected =
        "{\n    \"capture_failed\": false,\n    \"frames\": 3200,\n    \"late_frames_dropped\": 0,\n"
        "    \"microphone_buffers\": 0,\n    \"playout_delay_seconds\": 0.4,\n"
        "    \"sample_rate\": 16000,\n    \"system_buffers\": 1\n}\n";
    EXPECT_EQ(readFile(folder / "capture-diagnostics.json"), expected);
}

TEST_F(SystemAudioRecorderTest, ClosesTheFilesWhateverFails) {
    start();
    deliver(microphone, 0.0, 1'600);
    clock.setSeconds(0.2);
    sound.stopFailure = std::make_exception_ptr(Failure("The stream would not stop."));
    sound.failuresAreReportedToo = true;
    std::filesystem::create_directories(folder / "capture-diagnostics.json" / "in the way");
    EXPECT_NE(stop().find("capture-diagnostics.json"), std::string::npos) << "the files' failure before the stream's";
    EXPECT_TRUE(errors.empty()) << "a recording that is being stopped has not failed";
    for (const char* name : {"meeting.wav", "microphone.wav", "system.wav"})
        EXPECT_EQ(samples(name).size(), 3'200U);
}

TEST_F(SystemAudioRecorderTest, LeavesNothingWhenTheCaptureIsNotAvailable) {
    sound.callFailure =
        std::make_exception_ptr(CaptureUnavailable(CaptureUnavailable::Reason::streamFailed, "In use."));
    EXPECT_EQ(startFailure(), "In use.");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_EQ(stop(), "");
}

TEST_F(SystemAudioRecorderTest, UndoesAStartDuringWhichTheCaptureFailed) {
    sound.duringStart = [this] { deliver(microphone, 9.0, 160); };
    EXPECT_EQ(startFailure(), "Audio capture failed while starting. Check recording permissions and audio devices.");
    EXPECT_FALSE(sound.captures.back()->running);
    EXPECT_EQ(samples("meeting.wav").size(), 0U);
}

TEST_F(SystemAudioRecorderTest, KeepsTheAudioOfARecordingThatIsDropped) {
    start();
    deliver(microphone, 0.0, 1'600);
    clock.setSeconds(0.2);
    recorder.reset();
    EXPECT_EQ(samples("microphone.wav").size(), 3'200U);
}

} // namespace
} // namespace varnet
