#include "Varnet/store/WaveformCache.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

#include <chrono>

namespace varnet::test {
namespace {

namespace fs = std::filesystem;

struct WaveformCacheFiles : testing::Test {
    TemporaryFolder folder;
    fs::path wav = folder / "meeting.wav", cache = folder / "waveforms";

    WaveformCacheFiles() { writeRecording(wav, std::vector<std::int16_t>(2'000, 16'384)); }
    std::vector<fs::path> files() const { return {fs::directory_iterator(cache), fs::directory_iterator()}; }
    float firstPeak() const { return WaveformCache::waveform(wav, cache).value().peaks.at(0); }
};

TEST_F(WaveformCacheFiles, AnswerUntilTheRecordingChanges) {
    EXPECT_EQ(firstPeak(), 0.5F);
    ASSERT_EQ(files().size(), 1U);
    // Under the same size and time it is not read again.
    const auto time = fs::last_write_time(wav);
    writeRecording(wav, std::vector<std::int16_t>(2'000, 8'192));
    fs::last_write_time(wav, time);
    EXPECT_EQ(firstPeak(), 0.5F);
    fs::last_write_time(wav, time + std::chrono::seconds(1));
    EXPECT_EQ(firstPeak(), 0.25F);
    EXPECT_EQ(files().size(), 1U) << "the former state's waveform is kept";
    fs::remove(wav);
    EXPECT_FALSE(WaveformCache::waveform(wav, cache));
}

TEST_F(WaveformCacheFiles, AreMadeAnewWhenTheyAreBroken) {
    ASSERT_EQ(firstPeak(), 0.5F);
    const auto file = files().front();
    const auto good = readFile(file);
    auto tooLoud = good;
    tooLoud.replace(tooLoud.size() - 4, 4, std::string("\0\0\x80\x7F", 4)); // infinity
    for (const auto& broken :
         {std::string(), good.substr(0, 100), good + "x", std::string(good.size(), 'x'), tooLoud}) {
        writeFileAtomically(file, broken);
        EXPECT_EQ(firstPeak(), 0.5F);
        EXPECT_EQ(readFile(file), good);
    }
}

} // namespace
} // namespace varnet::test
