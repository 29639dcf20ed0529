#include "MeetingCore/audio/WavHeader.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

using namespace std::string_literals;

const auto riff = "RIFF\0\0\0\0WAVE"s;
/// Format: stereo, 44,100 frames a second, 16 bits.
const auto fmt = "fmt \x10\0\0\0\x01\0\x02\0\x44\xAC\0\0\x10\xB1\x02\0\x04\0\x10\0"s;

TEST(WavHeader, WalksTheChunksAndTrustsNoSize) {
    const auto data = "data\x08\0\0\0"s + "12345678";
    const struct {
        const char* name;
        std::string bytes;
        std::optional<std::uint64_t> frames; ///< absent: not taken for audio
    } rows[] = {
        {"an odd chunk before the audio", riff + fmt + "LIST\x03\0\0\0abc\0"s + data, 2},
        {"audio behind the end of the file", riff + fmt + "data\xFF\xFF\xFF\xFF"s + "12345678", 2},
        {"no audio yet", riff + fmt + "data\0\0\0\0"s, 0},
        {"no audio chunk", riff + fmt, {}},
        {"no format before the audio", riff + data + fmt, {}},
        {"a format of no bytes a frame", riff + fmt.substr(0, 20) + "\0\0\x10\0"s + data, {}},
        {"compressed", riff + "fmt \x10\0\0\0\x02\0"s + fmt.substr(10) + data, {}},
        {"an endless chunk", riff + "LIST\xFF\xFF\xFF\xFF"s + fmt + data, {}},
        {"empty", "", {}},
    };
    const TemporaryFolder folder;
    for (const auto& [name, bytes, frames] : rows) {
        std::ofstream(folder / "audio.wav", std::ios::binary) << bytes;
        const auto header = WavHeader::read(folder / "audio.wav");
        ASSERT_EQ(header.has_value(), frames.has_value()) << name;
        if (header) {
            EXPECT_EQ(header->frameCount(), *frames) << name;
            EXPECT_EQ(header->sampleRate, 44'100U) << name;
        }
    }
    EXPECT_FALSE(WavHeader::read(folder / "missing.wav"));
    EXPECT_FALSE(WavHeader::read(folder / "."));
}

} // namespace
} // namespace varnet::test
