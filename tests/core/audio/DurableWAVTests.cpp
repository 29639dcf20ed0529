#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/Failures.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace varnet {
namespace {

namespace fs = std::filesystem;
using Kind = FileFailure::Kind;

struct DurableWAVTest : ::testing::Test {
    std::string content() const { return readFile(path); }
    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
    std::uint32_t declared() const { return test::declaredBytes(path); }
    std::optional<Kind> repairFailure() const {
        return test::kindThrown<FileFailure>([this] { DurableWAV::repair(path); });
    }

    test::TemporaryFolder folder;
    fs::path path = folder / "microphone.wav";
};

using Silence = std::vector<std::byte>;

// RIFF + 36, WAVE, "fmt " 16: PCM 1, 1 channel, 16000 Hz, 32000 bytes a second, 2 bytes a frame, 16 bits, data 0.
const std::string emptyFile("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x80\x3E\0\0\0\x7D\0\0\2\0\x10\0data\0\0\0\0", 44);

TEST_F(DurableWAVTest, StartsAsAWholeEmptyFile) {
    write("an older recording that is longer than a header, and is replaced");
    const DurableWAV file(path);
    EXPECT_EQ(content(), emptyFile);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THROW(DurableWAV(folder / "missing" / "meeting.wav"), FileFailure);
}

TEST_F(DurableWAVTest, DeclaresItsLengthOnceASecond) {
    DurableWAV file(path);
    const std::pair<std::size_t, std::uint32_t> rows[] = {
        {31'998, 0}, {2, 32'000}, {100'000, 132'000}, {31'998, 132'000}, {2, 164'000}};
    for (const auto& [bytes, expected] : rows) {
        file.append(Silence(bytes));
        EXPECT_EQ(declared(), expected) << bytes;
    }
}

TEST_F(DurableWAVTest, ClosesWithTheExactLengthAndTakesNothingAfterwards) {
    DurableWAV file(path);
    file.append(Silence(10));
    EXPECT_THROW(file.append(Silence(3)), FileFailure) << "half a sample";
    file.close();
    EXPECT_EQ(declared(), 10U);
    EXPECT_EQ(content().size(), 54U);
    EXPECT_NO_THROW(file.close());
    EXPECT_THROW(file.append(Silence(2)), FileFailure);
    EXPECT_EQ(file.bytes(), 10U);
}

TEST_F(DurableWAVTest, PassesAWriteErrorOnAndKeepsWhatIsWritten) {
    DurableWAV file(path);
    {
        const test::FileSizeLimit diskFull(1'100); // 1,000 bytes fit, of the next 100 only 56 do
        file.append(Silence(1'000));
        EXPECT_EQ(test::thrown<FileFailure>([&] { file.append(Silence(100)); }).value().error(), EFBIG);
    }
    EXPECT_EQ(file.bytes(), 1'000U);
    file.close();
    EXPECT_EQ(declared(), 1'000U);
    DurableWAV::repair(path);
    EXPECT_EQ(declared(), 1'056U) << "what reached the disk of the failed write";
}

TEST_F(DurableWAVTest, AudioSurvivesKillAtAnyByte) {
    const std::vector<float> samples{0.1F, 0.2F, 0.3F, 0.4F, 0.5F};
    DurableWAV(path).append(DurableWAV::pcm(samples));
    const std::string whole = content();
    ASSERT_EQ(whole.size(), 54U);
    EXPECT_EQ(declared(), 10U) << "dropping the object closes the file";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        const std::string cut = (emptyFile + whole.substr(44)).substr(0, length);
        write(cut);
        if (length < 44) {
            EXPECT_EQ(repairFailure(), Kind::fileReadCorruptFile);
            EXPECT_EQ(content(), cut);
            continue;
        }
        const std::size_t kept = (length - 44) / 2 * 2;
        for (int times = 0; times < 2; ++times) {
            DurableWAV::repair(path);
            EXPECT_EQ(declared(), kept);
            EXPECT_EQ(static_cast<unsigned char>(content()[4]), kept + 36);
            EXPECT_EQ(content().substr(44), whole.substr(44, kept));
        }
    }
}

TEST_F(DurableWAVTest, RepairTouchesOnlyItsOwnKindOfFile) {
    std::string garbledSizes = emptyFile + "abcde";
    garbledSizes.replace(4, 4, "####").replace(40, 4, "####");
    write(garbledSizes);
    DurableWAV::repair(path);
    EXPECT_EQ(declared(), 4U);

    for (const std::size_t offset : {0, 8, 22, 24, 34, 39}) {
        std::string foreign = emptyFile + "abcde";
        foreign[offset] ^= 0x44;
        write(foreign);
        EXPECT_EQ(repairFailure(), Kind::fileReadCorruptFile) << offset;
        EXPECT_EQ(content(), foreign);
    }
    write(emptyFile);
    fs::resize_file(path, 44 + 4'294'967'260);
    EXPECT_EQ(repairFailure(), Kind::fileReadCorruptFile) << "more than a header can declare";
    fs::remove(path);
    EXPECT_EQ(repairFailure(), Kind::fileReadNoSuchFile);
}

TEST(PCM, LimitsAndTruncatesTowardZero) {
    // Long enough that every value goes through the wide loop as well as through its rest.
    const std::vector<std::pair<float, std::int16_t>> rows{
        {1.0F, 32'767},   {-1.0F, -32'767}, {2.0F, 32'767},       {-2.0F, -32'768},   {0.5F, 16'383},
        {-0.5F, -16'383}, {NAN, 0},         {INFINITY, 0},        {-INFINITY, 0},     {0.00003F, 0},
        {-0.00003F, 0},   {3e38F, 32'767},  {-1.00004F, -32'768}, {0.99999F, 32'766}, {1e-40F, 0},
    };
    std::vector<float> samples;
    for (int times = 0; times < 9; ++times)
        for (const auto& row : rows)
            samples.push_back(row.first);
    const auto bytes = DurableWAV::pcm(samples);
    ASSERT_EQ(bytes.size(), samples.size() * 2);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const int value = std::to_integer<int>(bytes[2 * i]) | std::to_integer<int>(bytes[2 * i + 1]) << 8;
        EXPECT_EQ(static_cast<std::int16_t>(value), rows[i % rows.size()].second) << samples[i];
    }
    EXPECT_TRUE(DurableWAV::pcm({}).empty());
}

} // namespace
} // namespace varnet
