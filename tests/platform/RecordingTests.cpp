#include "Varnet/capture/AudioRecorder.h"
#include "Varnet/capture/SystemAudioRecorder.h"
#include "tests/platform/SoundLab.h"
#include "tests/support/WavFile.h"

#include <gmock/gmock.h>

#include <cmath>
#include <csignal>
#include <numbers>

namespace varnet::test {
namespace {

constexpr int sampleRate = 16'000;

/// Of the graph, 48 kHz frames: long enough for a busy machine, which else makes holes in the tone before it is
/// captured; like the usual 1024 it is no whole number of the recording's frames.
constexpr int quantum = 4096;

/// The microphone of these tests hands sound on within the cycle of the graph, the output's monitor, whose device keeps
/// the graph's time, in the next one: so far is the microphone's track ahead, in frames of the recording.
constexpr double microphoneLead = quantum / 3.0;

/// Twenty seconds of clicks, each a half wave of 1 ms.
std::vector<float> clicking(double interval) {
    std::vector<float> sound(20 * 48'000);
    for (double at = interval; at < 19.9; at += interval)
        for (int i = -24; i <= 24; ++i)
            sound[static_cast<std::size_t>(at * 48'000 + i)] =
                0.8f * static_cast<float>(std::cos(std::numbers::pi * i / 48));
    return sound;
}

/// Where the clicks' tops are, in frames.
std::vector<double> clicks(const std::vector<float>& track) {
    std::vector<double> tops;
    for (std::size_t i = 1; i + 200 < track.size(); ++i) {
        if (track[i] < 0.3f)
            continue;
        const auto top = std::max_element(track.begin() + static_cast<std::ptrdiff_t>(i),
                                          track.begin() + static_cast<std::ptrdiff_t>(i) + 100);
        const double left = top[-1], middle = top[0], right = top[1];
        tops.push_back(static_cast<double>(top - track.begin()) + (left - right) / (2 * (left - 2 * middle + right)));
        i += 200;
    }
    return tops;
}

/// How far one sample of `track` is off an unbroken 1 kHz tone of any amplitude, at the worst: two samples of a tone
/// determine the next. The slight changes of the rate with which a recording follows the clock do not show.
double worstStep(std::span<const float> track) {
    const double twice = 2 * std::cos(2 * std::numbers::pi * 1'000 / sampleRate);
    double worst = 0;
    for (std::size_t i = 2; i < track.size(); ++i)
        worst = std::max(worst, std::abs(track[i] - twice * track[i - 1] + track[i - 2]));
    return worst;
}

/// Plays a sound into the microphone and into the call, both in the same cycle.
class Duet {
public:
    explicit Duet(const std::vector<float>& sound)
        : m_player("pw-play", {"-P", "{ node.name = duet }", "--target", "0",
                               QString::fromStdString(writeSound(m_folder, sound, 48'000).string())}) {
        EXPECT_TRUE(eventually([] { return run("pw-link", {"-o"}).find("duet:output_MONO") != std::string::npos; }));
        for (const char* input : {"desk:input_MONO", "speakers:playback_FL", "speakers:playback_FR"})
            run("pw-link", {"duet:output_MONO", input});
    }

private:
    TemporaryFolder m_folder;
    Background m_player;
};

/// A meeting that is being recorded on the real sound server.
struct CaptureRecording : testing::Test {
    TemporaryFolder folder;
    std::mutex mutex;
    std::vector<std::string> errors, notices;
    SystemAudioRecorder recorder{makeAudioCapture()};

    /// The devices of this suite: one quantum, and a microphone without a program in between.
    static void SetUpTestSuite() {
        run("pw-metadata", {"-n", "settings", "0", "clock.force-quantum", QString::number(quantum)});
        run("pw-cli", {"create-node", "adapter",
                       "{ factory.name = support.null-audio-sink node.name = desk audio.position = [ MONO ] "
                       "media.class = Audio/Source/Virtual priority.session = 3000 object.linger = true }"});
        ASSERT_TRUE(
            eventually([] { return run("pw-metadata", {"0"}).find(R"({"name":"desk"})") != std::string::npos; }));
    }

    void record() {
        RecorderCallbacks callbacks;
        callbacks.onError = [this](std::exception_ptr error) {
            const std::lock_guard lock(mutex);
            errors.push_back(describe(error));
        };
        callbacks.onNotice = [this](std::string text) {
            const std::lock_guard lock(mutex);
            notices.push_back(std::move(text));
        };
        await(recorder.start(folder.path() / "meeting.wav", std::move(callbacks)));
    }

    static pid_t server() { return processID("VARNET_TEST_PIPEWIRE_PID"); }

    std::vector<float> track(const char* name) const {
        std::vector<float> samples;
        for (const std::int16_t value : wavSamples(folder / name))
            samples.push_back(static_cast<float>(value) / 32'767);
        return samples;
    }

    void expectEqualLengths(std::chrono::seconds atLeast) const {
        const std::size_t length = track("meeting.wav").size();
        EXPECT_GE(length, static_cast<std::size_t>(atLeast.count() * sampleRate));
        EXPECT_EQ(track("microphone.wav").size(), length);
        EXPECT_EQ(track("system.wav").size(), length);
    }
};

TEST_F(CaptureRecording, ToneIsUnbroken) {
    constexpr int seconds = 60;
    const Duet duet(tone(1'000, seconds + 1.5, 0.5f, 48'000)); // first, for a graph that stays as it is
    record();
    listen(std::chrono::seconds(seconds + 2));
    await(recorder.stop());

    expectEqualLengths(std::chrono::seconds(seconds + 1));
    for (const char* name : {"microphone.wav", "system.wav"}) {
        const std::vector<float> samples = track(name);
        const auto onset = std::ranges::find_if(samples, [](float sample) { return sample > 0.2f; }) - samples.begin();
        const auto steady = static_cast<std::size_t>(onset) + sampleRate;
        const auto length = static_cast<std::size_t>(seconds - 1) * sampleRate;
        ASSERT_GT(samples.size(), steady + length);
        const auto sine = std::span(samples).subspan(steady, length);
        EXPECT_NEAR(std::abs(toneIn(sine.first(1'600), 1'000, sampleRate)), 0.5, 0.01) << name;
        EXPECT_LT(worstStep(sine), 0.00025) << name; // the rest is 70 dB below the tone
    }
    EXPECT_THAT(errors, testing::IsEmpty());
}

TEST_F(CaptureRecording, PauseOfTheServerIsSilenceAtItsOwnPlaceAndNothingShifts) {
    constexpr double interval = 0.25;
    std::optional<Duet> duet(clicking(interval));
    record();
    AudioRecorder alone(makeAudioCapture()); // the microphone's own mode
    await(alone.start(folder / "alone.wav", {}));
    listen(2s);
    kill(server(), SIGSTOP);
    listen(2s);
    kill(server(), SIGCONT);
    listen(3s);
    duet.reset();
    const std::int64_t soundEnd = monotonicNanoseconds();
    listen(500ms);
    const std::int64_t recordingEnd = monotonicNanoseconds();
    await(recorder.stop());
    await(alone.stop());

    expectEqualLengths(7s);
    std::map<std::string, std::vector<double>> tops;
    for (const char* name : {"microphone.wav", "system.wav", "alone.wav"}) {
        const std::vector<float> samples = track(name);
        tops[name] = clicks(samples);
        double longestSilence = 0;
        for (std::size_t i = 1; i < tops[name].size(); ++i)
            longestSilence = std::max(longestSilence, (tops[name][i] - tops[name][i - 1]) / sampleRate);
        // The server makes up for what it has missed, with holes, and the last 0.4 s of that come in time; a click may
        // be missing at either end of the two seconds.
        EXPECT_GT(longestSilence, 2 - 0.4 - 1.5 * interval) << name;
        EXPECT_LT(longestSilence, 3) << name;
        const double end = static_cast<double>(samples.size()) - double(recordingEnd - soundEnd) * 1e-9 * sampleRate;
        EXPECT_NEAR((end - tops[name].back()) / sampleRate, interval / 2, interval / 2 + 0.2) << name;
    }
    int pairs = 0;
    for (const double call : tops["system.wav"])
        for (const double voice : tops["microphone.wav"])
            if (std::abs(voice - call) < interval / 2 * sampleRate && call > 5 * sampleRate) {
                EXPECT_NEAR(voice - call, -microphoneLead, 16);
                ++pairs;
            }
    EXPECT_GE(pairs, 6);
    EXPECT_THAT(errors, testing::IsEmpty());
    EXPECT_THAT(notices, testing::IsEmpty());
}

TEST_F(CaptureRecording, EndOfTheServerLeavesWholeFiles) {
    const Duet duet(tone(1'000, 5, 0.5f, 48'000));
    record();
    listen(2s);
    kill(server(), SIGKILL);
    const auto told = [this] {
        const std::lock_guard lock(mutex);
        return !errors.empty();
    };
    EXPECT_TRUE(eventually(told, 1s));
    EXPECT_THROW(await(recorder.stop()), SpeechFailure);
    EXPECT_THAT(errors, testing::ElementsAre("The sound server has stopped, so the capture has ended."));
    expectEqualLengths(1s);
    const std::vector<float> call = track("system.wav");
    EXPECT_NEAR(std::abs(toneIn(std::span(call).last(1'600), 1'000, sampleRate)), 0.5, 0.01);
}

} // namespace
} // namespace varnet::test
