#include "tests/engine/EngineClient.h"

#include <QHostAddress>
#include <QTcpSocket>

#include <gtest/gtest.h>

namespace {

QByteArray get(const QByteArray& path, const QByteArray& headers = "Host: 127.0.0.1\r\n") {
    return "GET " + path + " HTTP/1.1\r\n" + headers + "\r\n";
}

} // namespace

TEST(FileRequest, AClientThatLeavesMakesRoomForTheNext) {
    EngineProcess own;
    const QByteArray minutes = spoken("We will talk about the money next week.").repeated(300);
    QTcpSocket leaving;
    leaving.connectToHost(QHostAddress::LocalHost, own.port());
    leaving.write(transcriptionRequest(wavOf(minutes)));
    const double before = own.cpuSeconds();
    // It shows that it is at work.
    ASSERT_TRUE(await([&] { return leaving.bytesAvailable() > 0; }));
    EXPECT_TRUE(leaving.readAll().startsWith("HTTP/1.1 200 OK\r\n"));
    leaving.abort();
    EXPECT_EQ(exchange(own.port(), transcriptionRequest(wavOf(spoken("Good morning.")))).status, 200);
    EXPECT_LT(own.cpuSeconds() - before, 20) << "the whole file takes more than a minute";
}

TEST(FileRequest, BadRequestsAreAnsweredWithASentence) {
    const QByteArray form = "POST /v1/audio/transcriptions HTTP/1.1\r\nHost: localhost\r\n";
    const struct {
        const char* name;
        QByteArray request;
        int status;
        QByteArray body;
    } cases[] = {
        {"no WAV", transcriptionRequest(QByteArray(3200, 'x')), 400,
         "The file is not a WAV file of 16-bit mono PCM at 16000 Hz"},
        {"endless field", transcriptionRequest(wavOf({}), QByteArray(5000, 'x')), 400,
         "The field \"diarization\" is too long"},
        {"no boundary", form + "Content-Length: 3\r\n\r\nabc", 400,
         "The request is not multipart/form-data with a boundary"},
        {"no file", form + "Content-Type: multipart/form-data; boundary=B\r\nContent-Length: 7\r\n\r\n--B--\r\n", 400,
         "The request has no complete file"},
        {"2 GiB", form + "Content-Length: 2147483648\r\n\r\n", 413, "The file is longer than 1 GiB"},
        {"rebound name", get("/health", "Host: pages.example\r\n"), 403,
         "Only programs of this machine may ask the engine"},
        {"a page's request", get("/health", "Host: 127.0.0.1\r\nOrigin: https://pages.example\r\n"), 403,
         "Only programs of this machine may ask the engine"},
        {"endless head", get("/health", "X: " + QByteArray(20000, 'x') + "\r\n"), 400,
         "The request's head is too long"},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.name);
        const HTTPResult result = exchange(sharedEngine().port(), entry.request);
        EXPECT_EQ(result.status, entry.status);
        EXPECT_EQ(result.body, entry.body);
    }
    EXPECT_EQ(sharedEngine().health(), 200);
}
