#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/capture/AudioFileConverter.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/Tone.h"
#include "tests/support/TreeSnapshot.h"
#include "tests/support/WavFile.h"

#include <QProcess>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <fstream>

namespace varnet {
namespace {

namespace fs = std::filesystem;

constexpr char notConverted[] = "Audio could not be converted to 16 kHz PCM. The original file was not changed.";

class AudioFileConverterTest : public ::testing::Test {
protected:
    /// Three seconds as 16 kHz mono in original.wav: the first half sounds at 500 Hz, the second at 1,500.
    void SetUp() override {
        DurableWAV file(folder / "original.wav");
        for (const double frequency : {500.0, 1'500.0})
            file.append(DurableWAV::pcm(test::tone(frequency, 1.5, 0.3F, 16'000)));
    }

    /// Runs ffmpeg in the folder; the arguments are split at blanks.
    void ffmpeg(const std::string& arguments) {
        QProcess process;
        process.setWorkingDirectory(QString::fromStdString(folder.path()));
        process.start("ffmpeg", QString::fromStdString("-v error -y " + arguments).split(' '));
        ASSERT_TRUE(process.waitForFinished(60'000));
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }

    void write(const std::string& name, const std::string& bytes) { std::ofstream(folder / name) << bytes; }
    std::string bytesOf(const std::string& name) { return readFile(folder / name); }

    /// Converts into target.wav; what it fails with, or nothing.
    std::string failure(const fs::path& source, const std::function<void(double)>& onProgress = {},
                        const std::stop_token& stop = {}) {
        fs::remove(target);
        return test::sentenceThrown([&] { convertFile(folder / source, target, onProgress, stop); });
    }

    test::TemporaryFolder folder;
    const fs::path target = folder / "target.wav";
};

/// The amplitude of that frequency in the 0.2 seconds from a frame on.
double loudness(const std::vector<std::int16_t>& audio, int begin, double frequency) {
    const std::vector<float> part(audio.begin() + begin, audio.begin() + begin + 3'200);
    return std::abs(test::toneIn(part, frequency, 16'000)) / 32'768;
}

TEST_F(AudioFileConverterTest, BringsEveryFormatToTheSameAudioAtTheSamePlace) {
    const std::string stereo = "-af pan=stereo|c0=c0|c1=c0 ";
    const std::string surround = "-af pan=5.1|c0=c0|c1=c0|c2=c0|c3=0*c0|c4=c0|c5=c0 ";
    const std::string picture = "-f lavfi -i color=s=64x64:d=3 -map 1:v -map 0:a -c:v mpeg4 ";
    const std::pair<std::string, std::string> rows[] = {
        {"16:00, file:a.wav", "-c:a pcm_s16le"},
        {"8000.wav", "-ar 8000 -c:a pcm_u8"},
        {"192000.wav", stereo + "-ar 192000 -c:a pcm_f32le"},
        {"surround.wav", surround + "-ar 48000 -c:a pcm_s24le"},
        {"a.w64", stereo + "-ar 44100"},
        {"rf64.wav", stereo + "-ar 48000 -rf64 always"},
        {"a.aiff", stereo + "-ar 44100"},
        {"a.caf", stereo + "-ar 32000 -c:a pcm_s16be"},
        {"a.flac", surround + "-ar 96000"},
        {"a.mp3", stereo + "-ar 44100 -b:a 96k"},
        {"a.m4a", stereo + "-ar 48000 -b:a 96k"},
        {"a.aac", stereo + "-ar 32000 -b:a 96k"},
        {"a.ogg", stereo + "-ar 44100 -c:a libvorbis"},
        {"a.opus", stereo + "-ar 48000 -b:a 64k"},
        {"a.wma", stereo + "-ar 44100 -b:a 96k"},
        {"a.mp4", picture + "-c:a aac"},
        {"a.webm", "-f lavfi -i color=s=64x64:d=3 -map 1:v -map 0:a -c:v libvpx -c:a libopus"},
    };
    for (const auto& [name, arguments] : rows) {
        SCOPED_TRACE(name);
        const std::string made = "made" + fs::path(name).extension().string();
        ASSERT_NO_FATAL_FAILURE(ffmpeg("-i original.wav -bitexact " + arguments + " " + made));
        fs::rename(folder / made, folder / name);
        const std::string before = bytesOf(name);
        ASSERT_EQ(failure(name), "");
        const auto copy = test::wavSamples(target);
        ASSERT_GE(copy.size(), name == "a.wma" ? 47'500U : 48'000U); // its decoder begins with the second block
        EXPECT_LE(copy.size(), 48'800U) << "coders end with something of their own";
        EXPECT_NEAR(loudness(copy, 20'000, 500), 0.3, 0.02);
        EXPECT_NEAR(loudness(copy, 20'000, 1'500), 0, 0.003);
        EXPECT_NEAR(loudness(copy, 24'800, 500), 0, 0.003);
        EXPECT_NEAR(loudness(copy, 24'800, 1'500), 0.3, 0.02);
        EXPECT_TRUE(bytesOf(name) == before);
    }
}

TEST_F(AudioFileConverterTest, ReplacesWhatStoodThereByAPrivateFile) {
    write("target.wav", std::string(200'000, 'x'));
    fs::permissions(target, fs::perms::all);
    convertFile(folder / "original.wav", target);
    EXPECT_EQ(test::wavSamples(target).size(), 48'000U);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(AudioFileConverterTest, TakesWhatPlayersPlay) {
    ffmpeg("-i original.wav -ar 44100 -b:a 64k -write_xing 0 -id3v2_version 0 a.mp3");
    ffmpeg("-i original.wav -ac 2 -ar 24000 -b:a 64k -write_xing 0 -id3v2_version 0 b.mp3");
    const std::string mp3 = bytesOf("a.mp3"), wav = bytesOf("original.wav");
    std::string damaged = mp3;
    damaged.replace(mp3.size() / 2, 300, std::string(300, '\x55'));
    const struct {
        std::string name, bytes;
        std::size_t least, most;
    } rows[] = {
        {"half.mp3", mp3.substr(0, mp3.size() / 2), 22'000, 26'000}, // nothing in it tells of the rest
        {"damaged.mp3", damaged, 45'000, 50'000},
        {"rate changes.mp3", mp3 + bytesOf("b.mp3"), 95'000, 103'000},
        {"crashed.wav", wav.substr(0, 40) + std::string(4, '\0') + wav.substr(44), 48'000, 48'000},
        {"empty.wav", wav.substr(0, 40) + std::string(4, '\0'), 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        write(row.name, row.bytes);
        ASSERT_EQ(failure(row.name), "");
        EXPECT_GE(test::wavSamples(target).size(), row.least);
        EXPECT_LE(test::wavSamples(target).size(), row.most);
    }
}

TEST_F(AudioFileConverterTest, RefusesWhatIsNoWholeAudioFileAndOpensNothingElse) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const std::string address = "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/a.ts";
    const std::string neighbour = folder / "original.wav";
    ffmpeg("-i original.wav -ar 48000 whole.m4a");
    ffmpeg("-i original.wav -ar 48000 -movflags faststart ahead.m4a");
    ffmpeg("-i original.wav -b:a 64k whole.mp3");
    ffmpeg("-f lavfi -i color=s=64x64:d=1 -c:v mpeg4 silent.mp4");
    fs::create_directory(folder / "folder");
    const auto half = [this](const std::string& name) { return bytesOf(name).substr(0, bytesOf(name).size() / 2); };
    const struct {
        std::string name, bytes;
        bool begins = false; ///< the target holds what could be read
    } files[] = {
        {"none.mp3", ""},
        {"text.mp3", std::string(5'000, 'a') + "is no audio\n"},
        {"silent.mp4", bytesOf("silent.mp4")},
        {"no-moov.m4a", half("whole.m4a")},
        {"list.mp3", "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:3,\n" + neighbour + "\n#EXTINF:3,\n" + address + "\n"},
        {"script.wav", "ffconcat version 1.0\nfile '" + neighbour + "'\nfile '" + address + "'\n"},
        {"half.m4a", half("ahead.m4a"), true},
        {"half.mp3", half("whole.mp3"), true},
        {"half.wav", half("original.wav"), true},
        {"one-hertz.wav", bytesOf("original.wav").replace(24, 4, std::string("\1\0\0\0", 4)), true},
    };
    for (const auto& file : files)
        write(file.name, file.bytes);
    const auto before = test::treeOf(folder.path());
    for (const auto& file : files) {
        EXPECT_EQ(failure(file.name), notConverted) << file.name;
        EXPECT_EQ(fs::exists(target), file.begins) << file.name;
    }
    const std::pair<std::string, std::string> others[] = {
        {"gone.wav", "“gone.wav” could not be found."},
        {"folder", "“folder” could not be read: Is a directory."},
        {"/proc/self/mem", "“mem” could not be read: Input/output error."},
        {address, "“a.ts” could not be found."},
    };
    for (const auto& [name, sentence] : others)
        EXPECT_EQ(failure(name), sentence);
    fs::remove(target);
    EXPECT_EQ(test::treeOf(folder.path()), before);
    EXPECT_FALSE(server.waitForNewConnection(0));
}

TEST_F(AudioFileConverterTest, EndsInTheMiddleWithoutTouchingTheOriginal) {
    ffmpeg("-stream_loop 400 -i original.wav -ac 2 -ar 48000 long.wav"); // 230 MB: far from read when progress is told
    const auto size = fs::file_size(folder / "long.wav");
    std::stop_source stop;
    EXPECT_EQ(failure("long.wav", [&](double) { stop.request_stop(); }, stop.get_token()), Cancelled().what());
    EXPECT_LT(fs::file_size(target), 3'000'000U);
    EXPECT_EQ(failure("long.wav", {}, stop.get_token()), Cancelled().what());
    EXPECT_FALSE(fs::exists(target));
    {
        const test::FileSizeLimit diskFull(1'000'000);
        EXPECT_EQ(failure("long.wav"), "“target.wav” could not be written: File too large.");
    }
    EXPECT_EQ(fs::file_size(folder / "long.wav"), size);
    EXPECT_EQ(test::sentenceThrown([&] { convertFile(folder / "long.wav", folder / "long.wav"); }),
              "“long.wav” could not be written: File exists.");
    EXPECT_EQ(fs::file_size(folder / "long.wav"), size);
    EXPECT_EQ(failure("long.wav", [&](double) { fs::resize_file(folder / "long.wav", size / 2); }), notConverted);

    std::string tooLong = bytesOf("original.wav").substr(0, 44); // 16 kHz in 16 bits, of 4,294,967,294 bytes
    tooLong.replace(40, 4, "\xFE\xFF\xFF\xFF");
    write("too-long.wav", tooLong);
    fs::resize_file(folder / "too-long.wav", 44 + 4'294'967'294);
    EXPECT_EQ(failure("too-long.wav"), "“target.wav” could not be written: File too large.");
    EXPECT_FALSE(fs::exists(target));
}

} // namespace
} // namespace varnet
