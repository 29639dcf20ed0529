#include "Varnet/capture/CaptureLevels.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

constexpr auto microphoneOnly =
    "Recording your microphone only. To also record the other people in the call, turn on Zelvik in System Settings › "
    "Privacy & Security › Screen & System Audio Recording, then quit and reopen Zelvik.";
constexpr auto hello =
    R"({"type":"transcription.completed","transcript":"hello there","words":[{"word":"hello","start":0.1,"end":0.4,"speaker":1},)"
    R"({"word":"there","start":0.5,"end":0.9,"speaker":1},{"word":"hi","start":1.0,"end":1.2,"speaker":2}]})";

std::exception_ptr refusal(CaptureUnavailable::Reason reason) {
    return std::make_exception_ptr(CaptureUnavailable(reason, "refused"));
}

class RecordingFlow : public StoreFixture {
protected:
    void start(CaptureMode mode) {
        store().setCaptureMode(mode);
        await(store().startRecording());
    }
    void stop() { await(store().stopRecording()); }

    /// Speaks for a quarter of a second on each track that the capture has.
    void speak() {
        for (const auto source : sound.captures.back()->sources)
            sound.deliver(source, 4000);
    }
};

TEST_F(RecordingFlow, TheFullRoadFromTwoTracksToAStoredTranscript) {
    start(CaptureMode::meeting);
    ASSERT_TRUE(store().recording());
    EXPECT_EQ(sleepInhibitors, 1);

    speak();
    EXPECT_TRUE(eventually([&] { return engine.heard().size() > 1; })) << "no audio reached the engine";
    EXPECT_TRUE(eventually([&] { return store().levels().microphone() > 0; }));
    engine.say(R"({"type":"t.delta","delta":"hel"})");
    engine.say(R"({"type":"t.delta","delta":"lo","words":[{"word":"hello","start":0.1,"end":0.4,"speaker":1}]})");
    EXPECT_TRUE(eventually([&] { return store().partial() == "hello"; }));
    ASSERT_EQ(store().partialTurns().size(), 1U);
    EXPECT_TRUE(onDisk().turns.empty()) << "partial text is never stored";
    engine.say(hello);
    EXPECT_TRUE(eventually([&] { return onDisk().turns.size() == 2; }));
    EXPECT_EQ(onDisk().turns[0].originalText, "hello there");
    EXPECT_EQ(onDisk().turns[1].speaker, "Speaker 2");
    EXPECT_TRUE(store().partial().empty() && store().partialTurns().empty());

    const Task<> stopping = store().stopRecording();
    EXPECT_TRUE(store().busy() && !store().recording());
    engine.say(R"({"type":"t.completed","transcript":"goodbye","audio_processed":2.5})");
    EXPECT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(statusesOnDisk, (Strings{"Preparing microphone", "Recording · live transcript", "Finishing transcript",
                                       "Audio saved · live transcript"}));
    store().receive(SpeechEvent::decode(hello), *lastRecorded);
    ASSERT_EQ(onDisk().turns.size(), 3U) << "the last words come in while the session finishes, and none later";
    EXPECT_EQ(onDisk().turns[2].end, 2.5);
    EXPECT_EQ(*store().meeting(*lastRecorded), onDisk());
    EXPECT_EQ(store().error(), std::nullopt);
    EXPECT_FALSE(sound.captures.back()->running);
    EXPECT_EQ(sleepInhibitors, 0);

    EXPECT_EQ(onDisk().audioFilename, "meeting.wav");
    EXPECT_EQ(filesOnDisk(),
              (Strings{"capture-diagnostics.json", "meeting.json", "meeting.wav", "microphone.wav", "system.wav"}));
    for (const auto* name : {"meeting.wav", "microphone.wav", "system.wav"})
        EXPECT_GE(fs::file_size(meetingFolder() / name), 8044U);
}

TEST_F(RecordingFlow, WithoutTheCallTheMicrophoneIsRecorded) {
    sound.callFailure = std::make_exception_ptr(Failure("no output"));
    sound.failuresAreReportedToo = true;
    start(CaptureMode::meeting);
    settle();
    ASSERT_TRUE(store().recording()) << "the failure of the capture that was given up must not end this one";
    sound.captures.front()->callbacks.onNotice("Late words of the capture that was given up.");
    settle();
    EXPECT_EQ(store().error(), microphoneOnly);
    EXPECT_EQ(store().levels().call(), std::nullopt);
    EXPECT_EQ(filesOnDisk(), (Strings{"capture-diagnostics.json", "meeting.json", "microphone.wav"}));
    speak();
    sound.notify("The microphone has been unplugged.");
    EXPECT_TRUE(eventually([&] { return store().error() == "The microphone has been unplugged."; }));
    stop();
    EXPECT_EQ(onDisk().status, "Audio saved · live transcript");
    EXPECT_EQ(onDisk().audioFilename, "microphone.wav");
    EXPECT_GE(fs::file_size(meetingFolder() / "microphone.wav"), 8044U);
}

TEST_F(RecordingFlow, WithoutAnEngineOnlyTheTranscriptIsMissing) {
    health.answer(TestServer::response(503, "loading"));
    start(CaptureMode::microphone);
    EXPECT_TRUE(engine.heard().empty());
    stop();
    EXPECT_EQ(store().error(), std::nullopt) << "that is told by the engine's state";
    EXPECT_EQ(statusesOnDisk, (Strings{"Preparing microphone", "Recording · transcription offline",
                                       "Finishing transcript", "Audio saved · retry transcription"}));

    health.answer(TestServer::response(200, "ok"));
    engine = FakeSpeechEngine();
    engine.say("garbage");
    start(CaptureMode::microphone);
    EXPECT_EQ(store().error(), "Live transcription unavailable. Audio will still be recorded locally.");
    EXPECT_EQ(engine.closeCode(), 1001);
    speak();
    stop();
    EXPECT_EQ(onDisk().status, "Audio saved · retry transcription");
    EXPECT_GE(fs::file_size(meetingFolder() / "microphone.wav"), 8044U);
}

TEST_F(RecordingFlow, AFailedStartLeavesTheStoreReadyForTheNext) {
    sound.callFailure = sound.microphoneFailure = refusal(CaptureUnavailable::Reason::accessDenied);
    for (const auto mode : {CaptureMode::meeting, CaptureMode::microphone}) {
        statusesOnDisk.clear();
        engine = FakeSpeechEngine::cooperative();
        start(mode);
        EXPECT_FALSE(store().recording() || store().busy() || store().recordingID());
        EXPECT_EQ(store().error(), "Microphone access is needed to record. Enable Zelvik in System Settings → Privacy "
                                   "& Security → Microphone.");
        EXPECT_EQ(statusesOnDisk, (Strings{"Preparing microphone", "Recording did not start"}));
        EXPECT_EQ(filesOnDisk(), Strings{"meeting.json"});
        EXPECT_EQ(engine.closeCode(), 1001);
    }
    sound.microphoneFailure = nullptr;
    engine = FakeSpeechEngine::cooperative();
    start(CaptureMode::microphone);
    EXPECT_TRUE(store().recording());
    EXPECT_EQ(store().error(), std::nullopt);
}

TEST_F(RecordingFlow, ALiveSessionThatFailsLeavesTheRecordingRunning) {
    start(CaptureMode::microphone);
    engine.say(R"({"type":"t.delta","transcript":"and then"})");
    EXPECT_TRUE(eventually([&] { return store().partial() == "and then"; }));
    engine.breakWith(std::make_exception_ptr(Failure("it is gone")));
    EXPECT_TRUE(eventually([&] { return store().error().has_value(); }));
    EXPECT_EQ(store().error(), "Live transcription interrupted: it is gone. Recording continues locally.");
    EXPECT_TRUE(store().recording());
    EXPECT_EQ(store().partial(), "");
    EXPECT_EQ(onDisk().status, "Recording · transcription offline");
    stop();
    EXPECT_EQ(onDisk().status, "Audio saved · retry transcription");
}

TEST_F(RecordingFlow, ACaptureThatEndsByItselfStopsTheRecording) {
    start(CaptureMode::microphone);
    speak();
    engine.holdSends(true);
    sound.fail("The sound server is gone.");
    EXPECT_TRUE(eventually([&] { return onDisk().status == "Finishing transcript"; }));
    const std::string finalisation =
        "Microphone capture could not be finalized. Saved audio may be incomplete: The sound server is gone.";
    EXPECT_EQ(store().error(), finalisation);
    engine.breakWith(std::make_exception_ptr(Failure("no answer")));
    EXPECT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(store().error(), finalisation + "\nLive transcript may be incomplete: no answer");
    EXPECT_EQ(onDisk().status, "Capture incomplete · check saved audio");
    EXPECT_GT(fs::file_size(meetingFolder() / "microphone.wav"), 7800U);

    start(CaptureMode::meeting);
    stop();
    EXPECT_EQ(onDisk().status, "Capture incomplete · check saved audio") << "nothing came from the microphone";
}

TEST_F(RecordingFlow, ABusyStoreRefusesSilently) {
    sound.startsPass.reset();
    store().setCaptureMode(CaptureMode::microphone);
    const Task<> starting = store().startRecording();
    EXPECT_TRUE(eventually([&] { return !sound.captures.empty(); }));
    EXPECT_TRUE(store().busy());
    await(store().startRecording());
    await(store().stopRecording());
    EXPECT_EQ(store().meetings().size(), 1U);
    EXPECT_EQ(onDisk().status, "Preparing microphone");

    store().setTitle("Renamed meanwhile", *lastRecorded);
    sound.startsPass.set();
    EXPECT_TRUE(eventually([&] { return store().recording(); }));
    EXPECT_EQ(onDisk().title, "Renamed meanwhile");
    const Task<> stopping = store().stopRecording();
    stop();
    EXPECT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(onDisk().status, "Audio saved · live transcript");
    EXPECT_EQ(store().error(), std::nullopt);
}

TEST_F(RecordingFlow, TheStoreMayGoAtAnyMoment) {
    sound.startsPass.reset();
    const Task<> starting = store().startRecording();
    EXPECT_TRUE(eventually([&] { return !sound.captures.empty(); }));
    closeStore();
    sound.startsPass.set();
    EXPECT_TRUE(eventually([&] { return starting.isReady(); }));
    EXPECT_TRUE(eventually([&] { return !sound.captures.back()->running; })) << "nobody would stop that capture";
    EXPECT_EQ(sound.captures.size(), 1U);
    EXPECT_EQ(engine.closeCode(), 1001);

    openStore();
    EXPECT_EQ(store().selected()->status, "Interrupted · check saved audio and retry");
    engine = FakeSpeechEngine::cooperative();
    start(CaptureMode::microphone);
    speak();
    closeStore();
    EXPECT_TRUE(eventually([&] { return engine.closeCode().has_value(); }));
    EXPECT_FALSE(sound.captures.back()->running);

    openStore();
    EXPECT_EQ(onDisk().status, "Interrupted · check saved audio and retry");
    EXPECT_EQ(store().error(), std::nullopt);
}

} // namespace
} // namespace varnet::test
