#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/capture/AudioFileConverter.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"
#include "tests/support/TreeSnapshot.h"
#include "tests/support/WavFile.h"

#include <QProcess>
#include <QTcpServer>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <numbers>

namespace varnet {
namespace {

namespace fs = std::filesystem;

constexpr char notConverted[] = "Audio could not be converted to 16 kHz PCM. The original file was not changed.";

class AudioFileConverterTest : public ::testing::Test {
protected:
    /// Three seconds of a tone that climbs from 200 to 3,200 Hz and swells, as 16 kHz mono in original.wav.
    void SetUp() override {
        for (int i = 0; i < 48'000; ++i) {
            const double t = i / 16'000.0;
            const double envelope = 0.5 + 0.3 * std::sin(2 * std::numbers::pi * 1.3 * t);
            original.push_back(static_cast<std::int16_t>(
                std::lrint(20'000 * envelope * std::sin(2 * std::numbers::pi * (200 * t + 500 * t * t)))));
        }
        DurableWAV file(folder / "original.wav");
        file.append(std::as_bytes(std::span(original)));
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
    std::vector<std::int16_t> original;
};

struct Match {
    int lag = 0; ///< how many samples the copy is late
    double correlation = 0;
    double gain = 0;
};

/// Where in the copy half a second from the middle of the original is found.
Match match(const std::vector<std::int16_t>& original, const std::vector<std::int16_t>& copy) {
    constexpr int begin = 20'000, count = 8'000, reach = 2'000;
    Match best;
    for (int lag = -reach; lag <= reach; ++lag) {
        double product = 0, own = 0, other = 0;
        for (int i = begin; i < begin + count; ++i) {
            const double a = original[static_cast<std::size_t>(i)], b = copy.at(static_cast<std::size_t>(i + lag));
            product += a * b, own += a * a, other += b * b;
        }
        if (const double correlation = product / std::sqrt(own * other); correlation > best.correlation)
            best = {lag, correlation, product / own};
    }
    return best;
}

TEST_F(AudioFileConverterTest, BringsEveryFormatToTheSameAudioAtTheSamePlace) {
    const std::string stereo = "-af pan=stereo|c0=c0|c1=c0 ";
    const std::string surround = "-af pan=5.1|c0=c0|c1=c0|c2=c0|c3=0*c0|c4=c0|c5=c0 ";
    const std::string picture = "-f lavfi -i color=s=64x64:d=3 -map 1:v -map 0:a -c:v mpeg4 ";
    const struct {
        std::string name, arguments;
        int longer, lag;
        double correlation, gain = 1;
    } rows[] = {
        {"16:00, file:a.wav", "-c:a pcm_s16le", 0, 0, 1},
        {"8000.wav", "-ar 8000 -c:a pcm_u8", 0, 0, 0.999},
        {"192000.wav", stereo + "-ar 192000 -c:a pcm_f32le", 0, 0, 0.9999},
        {"surround.wav", surround + "-ar 48000 -c:a pcm_s24le", 0, 0, 0.9999},
        {"a.w64", stereo + "-ar 44100", 0, 0, 0.9999},
        {"rf64.wav", stereo + "-ar 48000 -rf64 always", 0, 0, 0.9999},
        {"a.aiff", stereo + "-ar 44100", 0, 0, 0.9999},
        {"a.caf", stereo + "-ar 32000 -c:a pcm_s16be", 0, 0, 0.9999},
        {"a.flac", surround + "-ar 96000", 0, 0, 0.9999},
        {"a.mp3", stereo + "-ar 44100 -b:a 96k", 0, 0, 0.9999, 0.95}, // LAME turns it down
        {"a.m4a", stereo + "-ar 48000 -b:a 96k", 128, 0, 0.999},
        {"a.aac", stereo + "-ar 32000 -b:a 96k", 640, 512, 0.999}, // nothing in it tells of the coder's delay
        {"a.ogg", stereo + "-ar 44100 -c:a libvorbis", 0, 0, 0.999},
        {"a.opus", stereo + "-ar 48000 -b:a 64k", 0, 0, 0.999},
        {"a.wma", stereo + "-ar 44100 -b:a 96k", -446, -743, 0.999}, // the decoder begins with the second block
        {"a.mp4", picture + "-c:a aac", 128, 0, 0.999},
        {"a.webm", "-f lavfi -i color=s=64x64:d=3 -map 1:v -map 0:a -c:v libvpx -c:a libopus", 144, 0, 0.999},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string made = "made" + fs::path(row.name).extension().string();
        ASSERT_NO_FATAL_FAILURE(ffmpeg("-i original.wav -bitexact " + row.arguments + " " + made));
        fs::rename(folder / made, folder / row.name);
        const std::string before = bytesOf(row.name);
        const auto written = fs::last_write_time(folder / row.name);
        ASSERT_EQ(failure(row.name), "");
        const auto copy = test::wavSamples(target);
        EXPECT_EQ(static_cast<int>(copy.size()), 48'000 + row.longer);
        const Match found = match(original, copy);
        EXPECT_EQ(found.lag, row.lag);
        EXPECT_GE(found.correlation, row.correlation - 1e-9);
        EXPECT_NEAR(found.gain, row.gain, 0.005);
        EXPECT_TRUE(bytesOf(row.name) == before && fs::last_write_time(folder / row.name) == written);
    }
}

TEST_F(AudioFileConverterTest, WritesOnePrivateFileAndTellsHowFarItIs) {
    ffmpeg("-stream_loop 40 -i original.wav -ac 2 -ar 48000 long.wav");
    write("target.wav", "what stood there before, and longer than a header");
    fs::permissions(target, fs::perms::all);
    std::vector<double> shares;
    convertFile(folder / "long.wav", target, [&](double share) { shares.push_back(share); });
    EXPECT_EQ(test::wavSamples(target).size(), 41U * 48'000);
    EXPECT_EQ(readFile(target).substr(0, 44), (std::string("RIFF\x24\x0F\x3C\0WAVEfmt \x10\0\0\0\x01\0\x01\0", 24) +
                                               std::string("\x80\x3E\0\0\0\x7D\0\0\x02\0\x10\0data\0\x0F\x3C\0", 20)));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(std::ranges::is_sorted(shares));
    EXPECT_GT(shares.front(), 0);
    EXPECT_EQ(shares.back(), 1);
}

TEST_F(AudioFileConverterTest, TakesWhatPlayersPlay) {
    ffmpeg("-i original.wav -ar 44100 -b:a 64k -write_xing 0 -id3v2_version 0 a.mp3");
    ffmpeg("-i original.wav -ac 2 -ar 24000 -b:a 64k -write_xing 0 -id3v2_version 0 b.mp3");
    ffmpeg("-i original.wav -c:a libvorbis a.ogg");
    const std::string mp3 = bytesOf("a.mp3"), ogg = bytesOf("a.ogg"), wav = bytesOf("original.wav");
    const auto damaged = [](std::string bytes, std::size_t at) {
        return bytes.replace(at, 300, std::string(300, '\x55'));
    };
    const std::string streamed = wav.substr(0, 40) + "\xFF\xFF\xFF\x7F" + wav.substr(44);
    const struct {
        std::string name, bytes;
        std::size_t least, most;
    } rows[] = {
        {"half.mp3", mp3.substr(0, mp3.size() / 2), 22'000, 26'000}, // nothing in it tells of the rest
        {"damaged.mp3", damaged(mp3, mp3.size() / 2), 45'000, 50'000},
        {"damaged.ogg", damaged(ogg, ogg.size() * 3 / 4), 15'000, 48'000},
        {"rate changes.mp3", mp3 + bytesOf("b.mp3"), 95'000, 103'000},
        {"crashed.wav", wav.substr(0, 40) + std::string(4, '\0') + wav.substr(44), 48'000, 48'000},
        {"streamed.wav", streamed, 48'000, 48'000},
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
    ffmpeg("-i original.wav whole.flac");
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
        {"text.aac", "neither is this"},
        {"silent.mp4", bytesOf("silent.mp4")},
        {"no-moov.m4a", half("whole.m4a")},
        {"list.mp3", "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:3,\n" + neighbour + "\n#EXTINF:3,\n" + address + "\n"},
        {"stream.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:3\n#EXTINF:3,\n" + address + "\n"},
        {"script.wav", "ffconcat version 1.0\nfile '" + neighbour + "'\nfile '" + address + "'\n"},
        {"session.mp3", "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=a\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n"},
        {"half.m4a", half("ahead.m4a"), true},
        {"half.flac", half("whole.flac"), true},
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
