#include "MeetingCore/audio/Waveform.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

TEST(Waveform, IsTheLargestMagnitudeOfEachColumn) {
    const TemporaryFolder folder;
    std::vector<std::int16_t> samples(1'050'000); // 525 a column, more than is read at once
    samples[0] = 16'384;
    samples[524] = -8'192;
    samples[525] = -32'768;
    samples[1'049] = 32'767;
    samples[524'288] = 4'096;
    samples[1'049'999] = -1;
    writeRecording(folder / "meeting.wav", samples);
    const auto waveform = Waveform::read(folder / "meeting.wav");
    ASSERT_TRUE(waveform);
    std::vector<float> expected(2'000);
    expected[0] = 0.5F;
    expected[1] = 1;
    expected[998] = 0.125F;
    expected[1'999] = 1 / 32'768.0F;
    EXPECT_EQ(waveform->peaks, expected);
}

TEST(Waveform, HasAllColumnsOfAShortFileAndNoneOfAnother) {
    const TemporaryFolder folder;
    writeRecording(folder / "short.wav", {8'192, -16'384});
    auto waveform = Waveform::read(folder / "short.wav");
    ASSERT_TRUE(waveform);
    std::vector<float> expected(2'000); // the two frames end with columns 999 and 1999
    expected[999] = 0.25F;
    expected[1'999] = 0.5F;
    EXPECT_EQ(waveform->peaks, expected);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(Waveform::read(folder / "short.wav", stop.get_token()));

    writeRecording(folder / "empty.wav", {});
    waveform = Waveform::read(folder / "empty.wav");
    ASSERT_TRUE(waveform);
    EXPECT_EQ(waveform->peaks, std::vector<float>(2'000));

    auto stereo = readFile(folder / "short.wav");
    stereo[22] = 2;
    stereo[32] = 4;
    writeFileAtomically(folder / "stereo.wav", stereo);
    EXPECT_FALSE(Waveform::read(folder / "stereo.wav"));
    EXPECT_FALSE(Waveform::read(folder / "missing.wav"));
}

} // namespace
} // namespace varnet::test
