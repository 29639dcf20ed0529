#include "engine/MultipartReader.h"
#include "engine/SpeechDetector.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace engine;

TEST(SpeechDetector, FindsAToneAtAnyLevelAboveItsBackground) {
    const struct {
        const char* name;
        double tone, background;
        bool speech;
    } cases[] = {{"loud in silence", 10000, 0, true},
                 {"soft in silence", 60, 0, true},
                 {"loud in noise", 8000, 300, true},
                 {"buried in noise", 100, 300, false},
                 {"digital silence", 0, 0, false}};
    for (const auto& entry : cases) {
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
