#include "engine/MultipartReader.h"

#include <gtest/gtest.h>

using namespace engine;

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
