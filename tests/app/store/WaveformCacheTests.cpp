#include "Varnet/store/WaveformCache.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

#include <chrono>

namespace varnet::test {
namespace {

namespace fs = std::filesystem;

TEST(WaveformCache, AnswersUntilTheRecordingChanges) {
    const TemporaryFolder folder;
    const fs::path wav = folder / "meeting.wav", cache = folder / "waveforms";
    const auto firstPeak = [&] { return WaveformCache::waveform(wav, cache).value().peaks.at(0); };
    writeRecording(wav, std::vector<std::int16_t>(2'000, 16'384));
    EXPECT_EQ(firstPeak(), 0.5F);
    // Under the same size and time it is not read again.
    const auto time = fs::last_write_time(wav);
    writeRecording(wav, std::vector<std::int16_t>(2'000, 8'192));
    fs::last_write_time(wav, time);
    EXPECT_EQ(firstPeak(), 0.5F);
    fs::last_write_time(wav, time + std::chrono::seconds(1));
    EXPECT_EQ(firstPeak(), 0.25F);
    EXPECT_EQ(std::distance(fs::directory_iterator(cache), fs::directory_iterator()), 1)
        << "the former state's waveform is kept";
    const fs::path file = fs::directory_iterator(cache)->path();
    writeFileAtomically(file, readFile(file).substr(0, 100));
    EXPECT_EQ(firstPeak(), 0.25F) << "a broken one is made anew";
}

} // namespace
} // namespace varnet::test
