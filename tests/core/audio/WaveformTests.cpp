#include "MeetingCore/audio/Waveform.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

TEST(Waveform, IsTheLargestMagnitudeOfEachColumn) {
    const TemporaryFolder folder;
    std::vector<std::int16_t> samples(1'050'000); // 525 a column, more than is read at once
    for (const auto& [frame, sample] :
         {std::pair{0, 16'384}, {524, -8'192}, {525, -32'768}, {1'049, 32'767}, {524'288, 4'096}, {1'049'999, -1}})
        samples[static_cast<std::size_t>(frame)] = static_cast<std::int16_t>(sample);
    std::vector<float> columns(2'000), ofTwoFrames(2'000);
    columns[0] = 0.5F;
    columns[1] = 1;
    columns[998] = 0.125F;
    columns[1'999] = 1 / 32'768.0F;
    ofTwoFrames[999] = 0.25F; // the two frames end with columns 999 and 1999
    ofTwoFrames[1'999] = 0.5F;
    const std::pair<std::vector<std::int16_t>, std::vector<float>> rows[] = {
        {samples, columns}, {{8'192, -16'384}, ofTwoFrames}, {{}, std::vector<float>(2'000)}};
    for (const auto& [recording, expected] : rows) {
        writeRecording(folder / "meeting.wav", recording);
        const auto waveform = Waveform::read(folder / "meeting.wav");
        ASSERT_TRUE(waveform);
        EXPECT_EQ(waveform->peaks, expected) << recording.size();
    }
}

} // namespace
} // namespace varnet::test
