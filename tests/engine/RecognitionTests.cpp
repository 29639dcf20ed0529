#include "engine/EngineConfig.h"
#include "engine/Failure.h"
#include "engine/MultipartReader.h"
#include "engine/SpeakerClusters.h"
#include "engine/SpeechDetector.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace engine;

namespace {

/// A voice whose every measure lies `steps` beyond the first one's, each step as far as a voice's own pieces scatter.
VoicePrint voice(double steps, int frames = 200) {
    VoicePrint print;
    print.pitch = 4.6 + 0.12 * steps;
    for (double& value : print.cepstrum)
        value = 1.2 * steps;
    print.frames = frames;
    return print;
}

} // namespace

TEST(SpeakerClusters, NumbersVoicesInTheOrderTheyAreHeardAndKnowsThemAgain) {
    SpeakerClusters clusters;
    const std::vector<VoicePrint> heard = {voice(0), voice(5), voice(0.3), voice(-5), voice(5.2), voice(0.1)};
    std::vector<int> numbers;
    numbers.reserve(heard.size());
    for (const VoicePrint& print : heard)
        numbers.push_back(clusters.assign(print));
    EXPECT_EQ(numbers, (std::vector<int>{0, 1, 0, 2, 1, 0}));
    EXPECT_EQ(clusters.reassign(), numbers);
}

TEST(SpeakerClusters, AShortOrSilentPieceMakesNoNewVoice) {
    SpeakerClusters clusters;
    clusters.assign(voice(0));
    clusters.assign(voice(5));
    EXPECT_EQ(clusters.assign(voice(9, 40)), 1);
    EXPECT_EQ(clusters.assign(VoicePrint{}), 1);
    EXPECT_EQ(clusters.assign(voice(-1, 20)), 0);
}

TEST(SpeakerClusters, TheNinthVoiceJoinsTheNearestOfEight) {
    SpeakerClusters clusters;
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(clusters.assign(voice(5.0 * i)), i);
    EXPECT_EQ(clusters.assign(voice(40)), 7);
}

TEST(SpeechDetector, FindsAToneAtAnyLevelAboveItsBackground) {
    struct Case {
        const char* name;
        double tone;
        double background;
        bool speech;
    };
    const Case cases[] = {{"loud in silence", 10000, 0, true},
                          {"soft in silence", 60, 0, true},
                          {"loud in noise", 8000, 300, true},
                          {"buried in noise", 100, 300, false},
                          {"digital silence", 0, 0, false}};
    for (const Case& entry : cases) {
        SCOPED_TRACE(entry.name);
        SpeechDetector detector;
        int found = 0;
        unsigned random = 1;
        for (int frame = 0; frame < 600; ++frame) {
            std::array<std::int16_t, frameSamples> samples;
            for (int i = 0; i < frameSamples; ++i) {
                random = random * 1664525U + 1013904223U;
                const double noise = entry.background * (static_cast<double>(random >> 16) / 32768.0 - 1.0);
                const double tone = frame < 500 ? 0 : entry.tone * std::sin(0.4 * (frame * frameSamples + i));
                samples[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(tone + noise);
            }
            found += detector.isSpeech(samples) && frame >= 500;
        }
        EXPECT_EQ(found > 90, entry.speech) << found;
        EXPECT_EQ(found < 10, !entry.speech) << found;
    }
}

TEST(MultipartReader, GivesTheSameForEveryPortioning) {
    const QByteArray file = "RIFF\r\n--\r\n--Boundar\r\n\r\n--";
    const QByteArray body =
        "preamble\r\n--Boundary\r\nContent-Disposition: form-data; name=\"diarization\"\r\n\r\ntrue\r\n"
        "--Boundary\r\nContent-Disposition: form-data; name=\"file\"; filename=\"name=x\"\r\n"
        "Content-Type: audio/wav\r\n\r\n" +
        file + "\r\n--Boundary--\r\nepilogue";
    for (qsizetype portion = 1; portion <= body.size(); ++portion) {
        QByteArray taken;
        MultipartReader reader("multipart/form-data; boundary=\"Boundary\"",
                               [&](QByteArrayView content) { taken.append(content); });
        for (qsizetype place = 0; place < body.size(); place += portion)
            reader.append(QByteArrayView(body).sliced(place, std::min(portion, body.size() - place)));
        ASSERT_EQ(taken, file) << portion;
        ASSERT_EQ(reader.fields().value("diarization"), "true") << portion;
        ASSERT_TRUE(reader.complete()) << portion;
    }
}

TEST(EngineConfig, ReadsKeysCommentsAndQuotes) {
    const EngineConfig config = EngineConfig::parse("# engine\nport: 1234 # here\nacoustic_model: \"/a b\"\n"
                                                    "language_model: /l\n\ndictionary: /d\nmaximum_sessions: 2\n");
    EXPECT_EQ(config, (EngineConfig{1234, "/a b", "/l", "/d", 2}));
    EXPECT_THROW(EngineConfig::parse("port: 1\n"), Failure);
    EXPECT_THROW(EngineConfig::parse("acoustic_model: /a\nlanguage_model: /l\ndictionary: /d\nvoice: x\n"), Failure);
}
