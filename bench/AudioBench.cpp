// Times the audio loops against plain loops, copies and another resampler of the same run, and measures what the
// resampler does to a signal. Prints a table and fails when a limit is missed.

#include "MeetingCore/audio/AudioTimeline.h"
#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/audio/Levels.h"
#include "MeetingCore/audio/Resampler.h"
#include "MeetingCore/audio/Waveform.h"
#include "bench/PlainLoops.h"
#include "bench/Ratios.h"

#include <fcntl.h>
#include <soxr.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <numbers>
#include <random>

namespace {

using namespace varnet;
using namespace varnet::bench;

constexpr std::size_t blockFrames = 2'560;
constexpr int rounds = 60;

std::vector<float> noise(std::size_t count) {
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> distribution(-1.1F, 1.1F);
    std::vector<float> samples(count);
    std::generate(samples.begin(), samples.end(), [&] { return distribution(generator); });
    return samples;
}

void benchPCM() {
    const auto samples = noise(4 * blockFrames);
    const auto repeat = [&](auto convert) {
        return [&samples, convert] {
            for (int i = 0; i < 150; ++i)
                keep(convert(samples));
        };
    };
    const auto [ours, theirs] = compare(repeat(&DurableWAV::pcm), repeat(&plain::pcm), rounds);
    row("float to 16-bit PCM", "plain loop, vectorisation off", theirs / ours, "x", theirs / ours >= 4, ">= 4 x");
}

void benchLevel() {
    const auto samples = noise(blockFrames);
    const auto repeat = [&](auto level) {
        return [&samples, level] {
            for (int i = 0; i < 200; ++i)
                keep(level(samples));
        };
    };
    const auto [ours, theirs] = compare(repeat(&rmsLevel), repeat(&plain::rmsLevel), rounds);
    row("level of a block, time", "strict loop", ours / theirs, "x", ours / theirs <= 1.15, "<= 1.15 x");
}

void benchTimeline() {
    constexpr std::size_t capacity = 64'000;
    constexpr std::size_t blocks = 250;
    const auto samples = noise(blockFrames);
    const auto ours = [&] {
        AudioTimeline timeline(capacity);
        for (std::size_t i = 0; i < blocks; ++i) {
            const auto frame = static_cast<std::int64_t>(i * blockFrames);
            timeline.append(samples, CaptureSource::microphone, frame);
            timeline.append(samples, CaptureSource::system, frame);
            keep(timeline.drain(frame + static_cast<std::int64_t>(blockFrames), blockFrames));
        }
    };
    const auto theirs = [&] {
        std::vector<float> rings[2] = {std::vector<float>(capacity), std::vector<float>(capacity)};
        std::vector<float> block(blockFrames);
        for (std::size_t i = 0; i < blocks; ++i)
            for (auto& ring : rings) {
                float* cell = ring.data() + i * blockFrames % capacity;
                std::memcpy(cell, samples.data(), blockFrames * sizeof(float));
                keep(*cell);
                std::memcpy(block.data(), cell, blockFrames * sizeof(float));
                keep(block[0]);
            }
    };
    const auto [own, copies] = compare(ours, theirs, rounds);
    row("ring append and drain, time", "two copies of the same bytes", own / copies, "x", own / copies <= 2, "<= 2 x");
}

std::vector<float> tone(double frequency, std::size_t count) {
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] =
            static_cast<float>(0.9 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / 48'000));
    return samples;
}

std::vector<float> resample(const std::vector<float>& input) {
    Resampler resampler(48'000, 1);
    std::vector<float> output;
    output.reserve(input.size() / 3 + 1);
    for (std::size_t i = 0; i + 1'024 <= input.size(); i += 1'024) {
        const auto part = resampler.convert(std::span(input).subspan(i, 1'024));
        output.insert(output.end(), part.begin(), part.end());
    }
    return output;
}

std::vector<float> resampleWithSoxr(const std::vector<float>& input) {
    const soxr_io_spec_t format = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    soxr_t resampler = soxr_create(48'000, 16'000, 1, nullptr, &format, &quality, nullptr);
    std::vector<float> output;
    output.reserve(input.size() / 3 + 1);
    std::vector<float> part(1'024);
    for (std::size_t i = 0; i + 1'024 <= input.size(); i += 1'024) {
        std::size_t count = 0;
        soxr_process(resampler, input.data() + i, 1'024, nullptr, part.data(), part.size(), &count);
        output.insert(output.end(), part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }
    soxr_delete(resampler);
    return output;
}

void benchResampler() {
    const auto input = tone(1'000, 480'000); // ten seconds
    const auto [ours, theirs] = compare([&] { keep(resample(input)); }, [&] { keep(resampleWithSoxr(input)); }, rounds);
    row("capture resampler, speed", "libsoxr HQ", theirs / ours, "x", theirs / ours >= 0.5, ">= 0.5 x");
    std::printf("%-34s %-38s %8.0f x\n", "", "(times real time, one core)", 10 / ours);
}

/// Power of a second of output, and of what is left when the sine of that frequency is taken out of it.
std::pair<double, double> powers(const std::vector<float>& samples, double frequency) {
    constexpr std::size_t from = 8'000;
    constexpr std::size_t count = 16'000;
    const auto angle = [&](std::size_t i) {
        return 2 * std::numbers::pi * frequency * static_cast<double>(i) / 16'000;
    };
    double sine = 0;
    double cosine = 0;
    for (std::size_t i = from; i < from + count; ++i) {
        sine += samples[i] * std::sin(angle(i)) * 2 / count;
        cosine += samples[i] * std::cos(angle(i)) * 2 / count;
    }
    std::pair<double, double> result;
    for (std::size_t i = from; i < from + count; ++i) {
        result.first += samples[i] * samples[i];
        result.second += std::pow(samples[i] - sine * std::sin(angle(i)) - cosine * std::cos(angle(i)), 2);
    }
    return {result.first / count, result.second / count};
}

void measureResampler() {
    const auto [signal, rest] = powers(resample(tone(1'000, 96'000)), 1'000);
    const double clarity = 10 * std::log10(signal / rest);
    row("signal to noise at 1 kHz", "48 to 16 kHz", clarity, "dB", clarity > 130, "> 130 dB");
    for (const double frequency : {8'500.0, 10'000.0}) {
        const double folded = 10 * std::log10(powers(resample(tone(frequency, 96'000)), 1'000).first / 0.405);
        row(frequency < 9'000 ? "folded back from 8.5 kHz" : "folded back from 10 kHz", "48 to 16 kHz", folded, "dB",
            folded < -120, "< -120 dB");
    }
}

/// Two hours of a recording, in the folder for temporary files.
class LongRecording {
public:
    LongRecording() {
        std::string folder = std::filesystem::temp_directory_path() / "varnet-bench.XXXXXX";
        m_folder = ::mkdtemp(folder.data()) ? folder : ".";
        DurableWAV wav(path());
        const auto minute = DurableWAV::pcm(noise(60 * 16'000));
        for (int minutes = 0; minutes < 120; ++minutes)
            wav.append(minute);
        wav.close();
    }
    LongRecording(const LongRecording&) = delete;
    LongRecording& operator=(const LongRecording&) = delete;
    ~LongRecording() { std::filesystem::remove_all(m_folder); }

    std::filesystem::path path() const { return m_folder / "meeting.wav"; }

private:
    std::filesystem::path m_folder;
};

void benchWaveform() {
    const LongRecording recording;
    const auto read = [&] {
        const int file = ::open(recording.path().c_str(), O_RDONLY | O_CLOEXEC);
        std::vector<char> bytes(1024 * 1024);
        off_t offset = 0;
        for (ssize_t count = 0; (count = ::pread(file, bytes.data(), bytes.size(), offset)) > 0; offset += count)
            keep(bytes[0]);
        ::close(file);
    };
    const auto [ours, reading] =
        compareMedians([&] { return Waveform::read(recording.path()); }, read, rounds, cpuSeconds);
    row("waveform of two hours, time", "reading the file", ours / reading, atMost(1.5, 1.1));
    note("(seconds, of the processor)", ours, "s");
}

} // namespace

int main() {
    heading("audio");
    benchPCM();
    benchTimeline();
    benchLevel();
    benchResampler();
    measureResampler();
    benchWaveform();
    return missed ? 1 : 0;
}
