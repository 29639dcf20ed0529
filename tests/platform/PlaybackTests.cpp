#include "Varnet/platform/AudioOutput.h"
#include "Varnet/platform/Clock.h"
#include "tests/platform/SoundLab.h"
#include "tests/support/WavFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <random>

namespace varnet::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int rate = 48'000; ///< of the graph; a file with this rate is not converted on the way

/// Ten seconds at 16 kHz whose samples tell where they are in the file: 2 for each millisecond.
std::vector<std::int16_t> ramp() {
    std::vector<std::int16_t> samples(160'000);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<std::int16_t>(i / 8);
    return samples;
}

double placeOf(float sample) {
    return static_cast<double>(sample) * 32'768 / 2'000;
}

/// What is played, and what the output's monitor hears of it.
struct Playback : testing::Test {
    TemporaryFolder folder;
    std::filesystem::path file = folder / "meeting.wav";
    CaptureLab monitor;
    int ends = 0;
    std::vector<std::string> failures;
    std::unique_ptr<AudioOutput> output = makeAudioOutput(
        {[this] { ++ends; }, [this](const std::exception_ptr& failure) { failures.push_back(describe(failure)); }});

    void SetUp() override { monitor.start({CaptureSource::system}); }

    /// What the monitor has heard, and when each sample was.
    struct Sound : std::vector<float> {
        std::vector<std::int64_t> times;
        std::size_t indexAt(std::int64_t time) const {
            return static_cast<std::size_t>(std::ranges::lower_bound(times, time) - times.begin());
        }
    };

    Sound sound() const {
        Sound all;
        for (const auto& piece : monitor.pieces(CaptureSource::system))
            for (std::size_t i = 0; i < piece.samples.size(); ++i) {
                all.push_back(piece.samples[i]);
                all.times.push_back(piece.time + static_cast<std::int64_t>(i) * 1'000'000'000 / rate);
            }
        return all;
    }

    /// How far the told position is off the ramp that is heard at the same time, in milliseconds, 19 times in 20.
    double positionError(std::chrono::milliseconds duration) {
        std::vector<std::pair<std::int64_t, double>> told;
        const auto end = monotonicNanoseconds() + duration / 1ns;
        eventually([&] {
            told.emplace_back(monotonicNanoseconds(), output->position());
            return told.back().first > end;
        });
        Sound heard;
        EXPECT_TRUE(eventually([&] { return (heard = sound()).times.back() > told.back().first; }));
        std::vector<double> errors;
        for (const auto& [time, position] : told)
            errors.push_back(std::abs(position - placeOf(heard.at(heard.indexAt(time)))) * 1e3);
        std::ranges::sort(errors);
        return errors[errors.size() * 19 / 20];
    }
};

TEST_F(Playback, IsTheFileSampleForSampleAndEndsWithIt) {
    const auto forceQuantum = [](const char* frames) {
        run("pw-metadata", {"-n", "settings", "0", "clock.force-quantum", frames});
    };
    forceQuantum("4096"); // long enough for a busy machine, which else leaves cycles out
    const auto restore = qScopeGuard([&] { forceQuantum("0"); });
    std::mt19937 random(1);
    std::vector<std::int16_t> noise(3 * rate);
    std::ranges::generate(noise, [&] { return static_cast<std::int16_t>(random() % 40'000 - 20'000); });
    noise.front() = 20'000;
    writeRecording(file, noise, rate);
    output->play(file, 3, 1); // nothing is left there
    ASSERT_TRUE(eventually([&] { return ends == 1; }));
    output->play(file, 0, 1);
    ASSERT_TRUE(eventually([&] { return ends == 2; }));
    listen(300ms);
    const auto heard = sound();
    const auto first = std::ranges::find_if(heard, [](float s) { return s != 0; });
    ASSERT_GE(heard.end() - first, std::ssize(noise));
    noise.resize(static_cast<std::size_t>(heard.end() - first)); // silence to the end
    for (std::size_t i = 0; i < noise.size(); ++i)
        ASSERT_NEAR(*(first + static_cast<std::ptrdiff_t>(i)), noise[i] / 32'768.0, 1e-6) << i;
    EXPECT_DOUBLE_EQ(output->position(), 3);
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(Playback, GoesByWhatIsHeard) {
    writeRecording(file, ramp());
    output->play(file, 2, 1);
    EXPECT_EQ(output->position(), 2);
    ASSERT_TRUE(eventually([&] { return output->position() > 2.4; }));
    EXPECT_LT(positionError(1s), 50);

    const auto asked = monotonicNanoseconds();
    output->play(file, 7, 1);
    ASSERT_TRUE(eventually([&] { return output->position() > 7.3; }));
    listen(200ms);
    auto heard = sound();
    const auto jump =
        static_cast<std::size_t>(std::ranges::find_if(heard, [](float s) { return placeOf(s) > 6.5; }) - heard.begin());
    EXPECT_LT(heard.times.at(jump) - asked, 150'000'000);
    EXPECT_NEAR(placeOf(heard.at(jump + 480)) - 0.01, 7, 0.02);

    output->pause();
    const auto paused = monotonicNanoseconds();
    const double rest = output->position();
    listen(500ms);
    heard = sound();
    const auto last =
        heard.size() - static_cast<std::size_t>(
                           std::find_if(heard.rbegin(), heard.rend(), [](float s) { return s != 0; }) - heard.rbegin());
    EXPECT_LT(heard.times.at(last - 1) - paused, 150'000'000);
    EXPECT_EQ(output->position(), rest);

    output->play(file, 4, 1.5);
    ASSERT_TRUE(eventually([&] { return output->position() > 4.6; }));
    EXPECT_LT(positionError(1s), 50);
    EXPECT_EQ(ends, 0);

    output->play(writeSound(folder, tone(440, 10, 0.5f, 16'000), 16'000), 0, 1.5);
    EXPECT_TRUE(eventually([&] { return monitor.hears(CaptureSource::system, 440) > 0.4; })) << "the pitch stays";
    EXPECT_THAT(failures, IsEmpty());
}

TEST_F(Playback, SaysWhyNothingIsHeard) {
    const auto fails = [&](const char* reason) {
        const std::size_t before = failures.size();
        return eventually([&] { return failures.size() > before; }, 5s) && failures.back() == reason;
    };
    writeRecording(file, ramp());
    output->play(folder / "gone.wav", 0, 1);
    EXPECT_TRUE(fails("“gone.wav” could not be found."));

    output->play(file, 0, 1);
    ASSERT_TRUE(eventually([&] { return output->position() > 0.2; }));
    std::filesystem::resize_file(file, 20'000);
    EXPECT_TRUE(fails("The audio file ends too early, so playback has stopped."));

    for (const char* sink : {"speakers", "mic_feed"})
        run("pw-cli", {"destroy", sink});
    writeRecording(file, ramp());
    output->play(file, 0, 1);
    EXPECT_TRUE(fails("There is no audio output, so nothing can be played."));
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(failures.size(), 3u);
}

using PlaybackWithoutServer = Playback;

TEST_F(PlaybackWithoutServer, StopsWhereItIsAndSaysSo) {
    writeRecording(file, ramp());
    output->play(file, 3, 1);
    ASSERT_TRUE(eventually([&] { return output->position() > 3.2; }));
    kill(processID("VARNET_TEST_PIPEWIRE_PID"), SIGKILL);
    ASSERT_TRUE(eventually([&] { return failures.size() == 1; }, 4s));
    EXPECT_GT(output->position(), 3.2);
    EXPECT_LT(output->position(), 4);
    const double stayed = output->position();
    output->play(file, stayed, 1);
    ASSERT_TRUE(eventually([&] { return failures.size() == 2; }, 4s));
    EXPECT_EQ(output->position(), stayed);
    const std::string sentence =
        "The sound server PipeWire is not running, so nothing can be played. Start it and try again.";
    EXPECT_THAT(failures, ElementsAre(sentence, sentence));
}

} // namespace
} // namespace varnet::test
