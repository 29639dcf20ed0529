#include "tests/platform/SoundLab.h"

#include <gmock/gmock.h>

#include <csignal>

namespace varnet::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using enum CaptureSource;

constexpr double callTone = 440;
constexpr double voiceTone = 1000;

void destroyNode(const QString& name) {
    run("pw-cli", {"destroy", name});
}

/// A device has ports once the session manager has taken it up.
void waitForPorts(const QString& node) {
    EXPECT_TRUE(eventually([&] { return QString::fromStdString(run("pw-link", {"-io"})).contains(node + u':'); }));
}

void makeSink(const QString& name) {
    run("pw-cli", {"create-node", "adapter",
                   QStringLiteral("{ factory.name = support.null-audio-sink node.name = %1 media.class = Audio/Sink "
                                  "audio.position = [ FL FR ] priority.session = 1000 object.linger = true }")
                       .arg(name)});
    waitForPorts(name);
}

void setDefaultSink(const QString& name) {
    run("pw-metadata",
        {"0", "default.configured.audio.sink", QStringLiteral("{\"name\":\"%1\"}").arg(name), "Spa:String:JSON"});
}

CaptureUnavailable::Reason failureOfStart(std::vector<CaptureSource> sources) {
    CaptureLab lab;
    try {
        lab.start(std::move(sources));
    } catch (const CaptureUnavailable& failure) {
        return failure.reason();
    }
    ADD_FAILURE() << "the capture started";
    return {};
}

/// Both tones are captured on their own tracks.
bool hearsBoth(const CaptureLab& lab) {
    return lab.hears(microphone, voiceTone) > 0.4 && lab.hears(system, callTone) > 0.4;
}

struct CaptureDevices : testing::Test {
    CaptureLab lab;
    Tone voice{"mic_feed", voiceTone};
    Tone call{"speakers", callTone};

    void SetUp() override {
        lab.start();
        ASSERT_TRUE(eventually([&] { return hearsBoth(lab); }, 5s));
    }
};

TEST_F(CaptureDevices, EachTrackHearsItsOwnDeviceAndStopEndsTheCallbacks) {
    listen(500ms); // for tones without their beginning
    lab.stop();
    const std::size_t count = lab.count(microphone) + lab.count(system);
    EXPECT_LT(lab.hears(microphone, callTone), 0.001);
    EXPECT_LT(lab.hears(system, voiceTone), 0.001);
    lab.stop();
    listen(100ms);
    EXPECT_EQ(lab.count(microphone) + lab.count(system), count);
    EXPECT_THAT(lab.errors(), IsEmpty());
}

TEST_F(CaptureDevices, FollowsTheDefaultOutputAndGoesOnWhenItWasDestroyedAndMadeAgain) {
    makeSink("headphones");
    const Tone other("headphones", 660);
    setDefaultSink("headphones");
    EXPECT_TRUE(eventually([&] { return lab.hears(system, 660) > 0.4 && lab.hears(system, callTone) < 0.01; }, 5s));
    setDefaultSink("speakers");
    EXPECT_TRUE(eventually([&] { return hearsBoth(lab) && lab.hears(system, 660) < 0.01; }, 5s));
    destroyNode("headphones");

    destroyNode("speakers");
    makeSink("speakers");
    const Tone again("speakers", 550);
    EXPECT_TRUE(eventually([&] { return lab.hears(system, 550) > 0.4 && lab.hears(microphone, voiceTone) > 0.4; }, 8s));
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_THAT(lab.notices(), IsEmpty());
}

/// A microphone of its own process: `second` is the device, `second_feed` speaks into it.
struct AnotherMicrophone {
    Background process{
        "pw-loopback",
        {"--capture-props={ media.class = Audio/Sink node.name = second_feed audio.position = [ MONO ] }",
         "--playback-props={ media.class = Audio/Source node.name = second audio.position = [ MONO ] "
         "priority.session = 2000 }"}};
    AnotherMicrophone() {
        waitForPorts("second_feed");
        waitForPorts("second");
    }
};

using CaptureWithoutMicrophone = CaptureDevices;

TEST_F(CaptureWithoutMicrophone, NeverTakesTheCallForTheVoice) {
    destroyNode("mic");
    ASSERT_TRUE(eventually([&] { return !lab.notices().empty(); }, 6s));
    EXPECT_THAT(run("pw-link", {"-l"}), HasSubstr("|-> Zelvik microphone:input_FL"))
        << "the session manager has linked the microphone's stream to no monitor, so nothing is tested here";
    listen(1s);
    for (const CaptureLab::Piece& piece : lab.pieces(microphone))
        ASSERT_LT(std::abs(toneIn(piece.samples, callTone, piece.sampleRate)), 0.05);
    EXPECT_GT(lab.hears(system, callTone), 0.4);
    EXPECT_THAT(lab.notices(), ElementsAre("The microphone can't be heard at the moment. Your side is recorded as "
                                           "silence until it is back."));

    const AnotherMicrophone another;
    const Tone voiceAgain("second_feed", 880);
    EXPECT_TRUE(eventually([&] { return lab.hears(microphone, 880) > 0.4; }, 8s));
    EXPECT_LT(lab.hears(microphone, callTone), 0.01);
    EXPECT_EQ(lab.notices().size(), 1u);
    EXPECT_THAT(lab.errors(), IsEmpty());
    lab.stop();
    destroyNode("second");
    EXPECT_EQ(failureOfStart({system, microphone}), CaptureUnavailable::Reason::noMicrophone);
}

TEST(CaptureWithoutSessionManager, ComesBackWithIt) {
    CaptureLab lab;
    lab.start();
    kill(processID("VARNET_TEST_WIREPLUMBER_PID"), SIGTERM);
    EXPECT_TRUE(eventually([&] { return lab.notices().size() == 2; }, 8s));
    const Background sessionManager("wireplumber", {});
    // It makes sound cards anew; these devices are the server's, and one that it finds set up already it never uses.
    for (const char* device : {"speakers", "mic", "mic_feed"})
        destroyNode(device);
    makeSink("speakers");
    const AnotherMicrophone another;
    const Tone voice("second_feed", voiceTone);
    const Tone call("speakers", callTone);
    EXPECT_TRUE(eventually([&] { return hearsBoth(lab); }, 10s));
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_EQ(lab.notices().size(), 2u);
}

TEST(CaptureWithoutSessionManager, StartFailsInTime) {
    EXPECT_EQ(failureOfStart({system}), CaptureUnavailable::Reason::streamFailed);
}

TEST(CaptureWithoutServer, StartSaysSoWhetherItHangsOrIsGone) {
    for (const int signal : {SIGSTOP, SIGKILL}) {
        kill(processID("VARNET_TEST_PIPEWIRE_PID"), signal);
        EXPECT_EQ(failureOfStart({microphone}), CaptureUnavailable::Reason::noServer);
    }
}

} // namespace
} // namespace varnet::test
