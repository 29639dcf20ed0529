#include "Varnet/platform/Clock.h"
#include "tests/platform/SoundLab.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

namespace varnet::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using enum CaptureSource;

constexpr double callTone = 440;
constexpr double voiceTone = 1000;

pid_t processID(const char* variable) {
    return static_cast<pid_t>(qEnvironmentVariableIntValue(variable));
}

void destroyNode(const QString& name) {
    run(QStringLiteral("pw-cli"), {QStringLiteral("destroy"), name});
}

/// A device has ports once the session manager has taken it up.
void waitForPorts(const QString& node) {
    EXPECT_TRUE(eventually([&] {
        return QString::fromStdString(run(QStringLiteral("pw-link"), {QStringLiteral("-io")})).contains(node + u':');
    }));
}

void makeSink(const QString& name) {
    run(QStringLiteral("pw-cli"),
        {QStringLiteral("create-node"), QStringLiteral("adapter"),
         QStringLiteral("{ factory.name = support.null-audio-sink node.name = %1 media.class = Audio/Sink "
                        "audio.position = [ FL FR ] priority.session = 1000 object.linger = true }")
             .arg(name)});
    waitForPorts(name);
}

void setDefaultSink(const QString& name) {
    run(QStringLiteral("pw-metadata"),
        {QStringLiteral("0"), QStringLiteral("default.configured.audio.sink"),
         QStringLiteral("{\"name\":\"%1\"}").arg(name), QStringLiteral("Spa:String:JSON")});
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

/// How far the last piece's end lies behind the clock.
double lagMilliseconds(const CaptureLab& lab, CaptureSource source) {
    const std::size_t before = lab.count(source);
    EXPECT_TRUE(eventually([&] { return lab.count(source) > before; }, 2s));
    return static_cast<double>(monotonicNanoseconds() - lab.pieces(source).back().end()) / 1e6;
}

/// Buffers that neither overlap nor leave a hole: a microsecond is the rounding of a frame's time.
void expectContinuous(const std::vector<CaptureLab::Piece>& pieces) {
    for (std::size_t i = 1; i < pieces.size(); ++i)
        ASSERT_NEAR(static_cast<double>(pieces[i].time - pieces[i - 1].end()), 0, 1'000) << "at buffer " << i;
}

struct CaptureDevices : testing::Test {
    CaptureLab lab;
    Tone voice{QStringLiteral("mic_feed"), voiceTone};
    Tone call{QStringLiteral("speakers"), callTone};

    void SetUp() override {
        lab.start();
        ASSERT_TRUE(eventually([&] { return hearsBoth(lab); }, 5s));
    }
};

TEST_F(CaptureDevices, EachTrackHearsItsOwnDeviceWithoutHolesAndStopEndsTheCallbacks) {
    listen(500ms);
    lab.stop();
    const std::size_t count = lab.count(microphone) + lab.count(system);
    EXPECT_LT(lab.hears(microphone, callTone), 0.001);
    EXPECT_LT(lab.hears(system, voiceTone), 0.001);
    // The players come and go with another latency, so only the steady half second is without a change of the graph.
    for (const CaptureSource source : allCaptureSources) {
        const std::vector<CaptureLab::Piece> pieces = lab.pieces(source);
        ASSERT_GE(pieces.size(), 10u);
        expectContinuous({pieces.end() - 10, pieces.end()});
    }
    lab.stop();
    listen(100ms);
    EXPECT_EQ(lab.count(microphone) + lab.count(system), count);
    EXPECT_THAT(lab.errors(), IsEmpty());
}

TEST_F(CaptureDevices, GoesOnAfterTheServerWasStoppedForTwoSeconds) {
    const double lagBefore = lagMilliseconds(lab, microphone);
    const pid_t server = processID("VARNET_TEST_PIPEWIRE_PID");
    kill(server, SIGSTOP);
    listen(2s);
    const std::size_t before = lab.count(microphone);
    kill(server, SIGCONT);
    ASSERT_TRUE(eventually([&] { return lab.count(microphone) > before; }, 2s));
    EXPECT_TRUE(eventually([&] { return hearsBoth(lab); }, 5s));
    for (const CaptureSource source : allCaptureSources)
        EXPECT_NEAR(lagMilliseconds(lab, source), lagBefore, 60) << rawValue(source);
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_THAT(lab.notices(), IsEmpty());
}

TEST_F(CaptureDevices, FollowsTheDefaultOutput) {
    makeSink(QStringLiteral("headphones"));
    const Tone other(QStringLiteral("headphones"), 660);
    setDefaultSink(QStringLiteral("headphones"));
    EXPECT_TRUE(eventually([&] { return lab.hears(system, 660) > 0.4 && lab.hears(system, callTone) < 0.01; }, 5s));
    setDefaultSink(QStringLiteral("speakers"));
    EXPECT_TRUE(eventually([&] { return hearsBoth(lab) && lab.hears(system, 660) < 0.01; }, 5s));
    destroyNode(QStringLiteral("headphones"));
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_THAT(lab.notices(), IsEmpty());
}

TEST_F(CaptureDevices, GoesOnWhenTheOutputWasDestroyedAndMadeAgain) {
    destroyNode(QStringLiteral("speakers"));
    makeSink(QStringLiteral("speakers"));
    const Tone again(QStringLiteral("speakers"), 550);
    EXPECT_TRUE(eventually([&] { return lab.hears(system, 550) > 0.4 && lab.hears(microphone, voiceTone) > 0.4; }, 8s));
    for (const CaptureSource source : allCaptureSources)
        EXPECT_LT(lagMilliseconds(lab, source), 200) << rawValue(source);
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_THAT(lab.notices(), IsEmpty());
}

/// A microphone of its own process: `second` is the device, `second_feed` speaks into it.
struct AnotherMicrophone {
    Background process{
        QStringLiteral("pw-loopback"),
        {QStringLiteral(
             "--capture-props={ media.class = Audio/Sink node.name = second_feed audio.position = [ MONO ] }"),
         QStringLiteral("--playback-props={ media.class = Audio/Source node.name = second audio.position = [ MONO ] "
                        "priority.session = 2000 }")}};
    AnotherMicrophone() {
        waitForPorts(QStringLiteral("second_feed"));
        waitForPorts(QStringLiteral("second"));
    }
};

using CaptureWithoutMicrophone = CaptureDevices;

TEST_F(CaptureWithoutMicrophone, NeverTakesTheCallForTheVoice) {
    destroyNode(QStringLiteral("mic"));
    ASSERT_TRUE(eventually([&] { return !lab.notices().empty(); }, 6s));
    EXPECT_THAT(run(QStringLiteral("pw-link"), {QStringLiteral("-l")}), HasSubstr("|-> Zelvik microphone:input_FL"))
        << "the session manager has linked the microphone's stream to no monitor, so nothing is tested here";
    listen(1s);
    for (const CaptureLab::Piece& piece : lab.pieces(microphone))
        ASSERT_LT(amplitude(piece.samples, callTone, piece.sampleRate), 0.05);
    EXPECT_GT(lab.hears(system, callTone), 0.4);
    EXPECT_THAT(lab.notices(), ElementsAre("The microphone can't be heard at the moment. Your side is recorded as "
                                           "silence until it is back."));

    const AnotherMicrophone another;
    const Tone voiceAgain(QStringLiteral("second_feed"), 880);
    EXPECT_TRUE(eventually([&] { return lab.hears(microphone, 880) > 0.4; }, 8s));
    EXPECT_LT(lab.hears(microphone, callTone), 0.01);
    EXPECT_EQ(lab.notices().size(), 1u);
    EXPECT_THAT(lab.errors(), IsEmpty());
    lab.stop();
    destroyNode(QStringLiteral("second"));
    EXPECT_EQ(failureOfStart({system, microphone}), CaptureUnavailable::Reason::noMicrophone);
}

TEST(CaptureWithoutSessionManager, ComesBackWithIt) {
    CaptureLab lab;
    lab.start();
    kill(processID("VARNET_TEST_WIREPLUMBER_PID"), SIGTERM);
    EXPECT_TRUE(eventually([&] { return lab.notices().size() == 2; }, 8s));
    const Background sessionManager(QStringLiteral("wireplumber"), {});
    // It makes sound cards anew; these devices are the server's, and one that it finds set up already it never uses.
    for (const char* device : {"speakers", "mic", "mic_feed"})
        destroyNode(QString::fromLatin1(device));
    makeSink(QStringLiteral("speakers"));
    const AnotherMicrophone another;
    const Tone voice(QStringLiteral("second_feed"), voiceTone);
    const Tone call(QStringLiteral("speakers"), callTone);
    EXPECT_TRUE(eventually([&] { return hearsBoth(lab); }, 10s));
    EXPECT_THAT(lab.errors(), IsEmpty());
    EXPECT_EQ(lab.notices().size(), 2u);
}

TEST(CaptureWithoutSessionManager, StartFailsInTime) {
    EXPECT_EQ(failureOfStart({system}), CaptureUnavailable::Reason::streamFailed);
}

TEST(CaptureWithoutServer, StartGivesUpOnOneThatDoesNotAnswer) {
    kill(processID("VARNET_TEST_PIPEWIRE_PID"), SIGSTOP);
    EXPECT_EQ(failureOfStart({microphone}), CaptureUnavailable::Reason::noServer);
    kill(processID("VARNET_TEST_PIPEWIRE_PID"), SIGCONT);
}

TEST(CaptureWithoutServer, EndsOnceWithinASecond) {
    CaptureLab lab;
    lab.start();
    ASSERT_TRUE(eventually([&] { return lab.count(system) > 0; }, 2s));
    kill(processID("VARNET_TEST_PIPEWIRE_PID"), SIGKILL);
    EXPECT_TRUE(eventually([&] { return !lab.errors().empty(); }, 1s));
    lab.stop();
    EXPECT_THAT(lab.errors(), ElementsAre("The sound server has stopped, so the capture has ended."));
}

TEST(CaptureWithoutServer, StartSaysSo) {
    EXPECT_EQ(failureOfStart({microphone}), CaptureUnavailable::Reason::noServer);
}

} // namespace
} // namespace varnet::test
