// Times the measuring of a two-hour meeting's turns against a program that reads the same spans, each at once, and sums
// their squares. Prints a table and fails when a limit is missed.

#include "MeetingCore/speech/SpeakerAttribution.h"
#include "bench/Ratios.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace varnet;
using namespace varnet::bench;

constexpr std::size_t headerBytes = 44;
constexpr std::uint32_t seconds = 7'200;
constexpr std::size_t sampleRate = 16'000;
constexpr std::size_t sampleBytes = 2;
constexpr int rounds = 15;

/// Noise, so that no sample can be foreseen.
void writeTrack(const std::filesystem::path& path, unsigned seed) {
    std::string header("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0\x80\x3E\0\0\0\x7D\0\0\x02\0\x10\0data", 40);
    const std::uint32_t bytes = seconds * sampleRate * sampleBytes;
    header.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
    std::mt19937 generator(seed);
    std::vector<std::uint32_t> second(sampleRate * sampleBytes / sizeof(std::uint32_t));
    std::ofstream file(path, std::ios::binary);
    file << header;
    for (std::uint32_t i = 0; i < seconds; ++i) {
        std::generate(second.begin(), second.end(), std::ref(generator));
        file.write(reinterpret_cast<const char*>(second.data()), sampleRate * sampleBytes);
    }
}

/// Of 2 to 30 seconds with short pauses between them.
std::vector<TranscriptTurn> conversation() {
    std::mt19937 generator(7);
    std::vector<TranscriptTurn> turns;
    for (double start = 0.5; start < seconds - 40;) {
        TranscriptTurn turn;
        turn.start = start;
        turn.end = start + 2 + generator() % 2'800 * 0.01;
        turn.speaker = turns.size() % 2 == 0 ? "Speaker 0" : "Speaker 1";
        start = turn.end + 0.4;
        turns.push_back(turn);
    }
    return turns;
}

std::vector<double> plainSums(const std::vector<TranscriptTurn>& turns, const std::filesystem::path& folder) {
    const int tracks[] = {::open((folder / "microphone.wav").c_str(), O_RDONLY),
                          ::open((folder / "system.wav").c_str(), O_RDONLY)};
    std::vector<double> sums;
    std::vector<std::int16_t> samples;
    for (const TranscriptTurn& turn : turns)
        for (const int track : tracks) {
            const auto first = static_cast<std::size_t>(turn.start * sampleRate);
            samples.resize(static_cast<std::size_t>(turn.end * sampleRate) - first);
            if (::pread(track, samples.data(), samples.size() * sampleBytes,
                        static_cast<off_t>(headerBytes + first * sampleBytes)) < 0)
                std::abort();
            std::int64_t sum = 0;
            for (const std::int16_t sample : samples)
                sum += sample * sample;
            sums.push_back(static_cast<double>(sum));
        }
    for (const int track : tracks)
        ::close(track);
    return sums;
}

/// The most memory that this process has held, in KiB.
long peak() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

int main() {
    std::string name = std::filesystem::temp_directory_path() / "attribution-bench.XXXXXX";
    if (!::mkdtemp(name.data()))
        return 1;
    const std::filesystem::path folder = name;
    writeTrack(folder / "microphone.wav", 1);
    writeTrack(folder / "system.wav", 2);
    const std::vector<TranscriptTurn> turns = conversation();

    heading("speakers");
    const long before = peak();
    keep(SpeakerAttribution::turnLevels(turns, folder));
    const long grown = peak() - before;
    const auto [ours, theirs] = compare([&] { return SpeakerAttribution::turnLevels(turns, folder); },
                                        [&] { return plainSums(turns, folder); }, rounds);
    row("attribution of two hours, time", "reading each turn, summing squares", ours / theirs, atMost(1.5, 1.0));
    note("time", 1000 * ours, "ms");
    note("memory on top", static_cast<double>(grown) / 1024, "MiB");
    std::filesystem::remove_all(folder);
    return missed ? 1 : 0;
}
