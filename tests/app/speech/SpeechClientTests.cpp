#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/FileBody.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "Varnet/speech/SpeechClient.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestServer.h"

#include <gtest/gtest.h>

#include <fstream>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;

/// A file of three bytes and a server for it.
struct SpeechClientTest : testing::Test {
    SpeechClientTest() { std::ofstream(file) << "abc"; }

    Task<SpeechResponse> transcribe(std::stop_token stop = {}) {
        return SpeechClient::transcribe(file, server.url(QString()), std::move(stop));
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "meeting.wav";
    TestServer server;
};

TEST_F(SpeechClientTest, SendsTheFileAsItIsInAFormOfThreeParts) {
    server.answer(TestServer::response(200, R"({"text":"hi","duration":3})"));
    EXPECT_EQ(await(transcribe()), (SpeechResponse{"hi", {}}));
    TestServer::Request request = server.requests().at(0);
    EXPECT_EQ(request.method + ' ' + request.target, "POST /v1/audio/transcriptions");
    const QByteArray boundary = request.headers["content-type"].mid(30);
    EXPECT_EQ(request.headers["content-type"], "multipart/form-data; boundary=" + boundary);
    EXPECT_EQ(boundary.size(), 36);
    EXPECT_FALSE(request.headers.contains("transfer-encoding"));
    QByteArray expected = "--B\r\n"
                          "Content-Disposition: form-data; name=\"response_format\"\r\n"
                          "\r\n"
                          "verbose_json\r\n"
                          "--B\r\n"
                          "Content-Disposition: form-data; name=\"diarization\"\r\n"
                          "\r\n"
                          "true\r\n"
                          "--B\r\n"
                          "Content-Disposition: form-data; name=\"file\"; filename=\"audio.wav\"\r\n"
                          "Content-Type: audio/wav\r\n"
                          "\r\n"
                          "abc\r\n"
                          "--B--\r\n";
    EXPECT_EQ(request.body, expected.replace("--B", "--" + boundary));
}

TEST_F(SpeechClientTest, AnythingButAnAnswerIsAFailure) {
    const std::string begin = "Transcription failed: ", end = ". Audio remains saved locally.";
    const QByteArray elsewhere = "Location: " + server.url(QStringLiteral("/elsewhere")).toEncoded() + "\r\n";
    const std::tuple<QByteArray, std::string> answers[] = {
        {TestServer::response(201, "made"), begin + "made" + end},
        {TestServer::response(302, "over there", elsewhere), begin + "over there" + end},
        {TestServer::response(500, "model not loaded"), begin + "model not loaded" + end},
        {TestServer::response(503, ""), begin + end},
        {TestServer::response(500, "\xFF\xFE"), begin + "No response" + end},
    };
    for (const auto& [raw, sentence] : answers) {
        server.answer(raw);
        EXPECT_EQ(failureText(transcribe()), sentence);
    }
    for (const QByteArray& raw : {TestServer::response(200, R"({"words":[]})"), QByteArray()}) {
        server.answer(raw);
        EXPECT_THROW(await(transcribe()), Failure);
    }
    EXPECT_EQ(server.requests().size(), 7u) << "what was sent once is not sent again";
}

TEST_F(SpeechClientTest, AFileThatShrinksMeanwhileIsAFailure) {
    std::filesystem::resize_file(file, 100'000'000);
    server.stopAtHeads();
    server.setScript([this](const auto&, QTcpSocket&) { std::filesystem::resize_file(file, 1000); });
    EXPECT_THROW(await(transcribe()), FileFailure);
}

TEST_F(SpeechClientTest, EndsSoonWhenCalledOffOrLeftAlone) {
    std::filesystem::resize_file(file, 100'000'000);
    server.stopAtHeads();
    std::stop_source stop;
    server.setScript([&stop](const auto&, QTcpSocket&) { stop.request_stop(); });
    EXPECT_THROW(await(transcribe(stop.get_token())), Cancelled);

    LoopbackHTTP client;
    const auto post = [&](std::chrono::milliseconds silence) {
        return client.post(server.url(QStringLiteral("/")), {"text/plain"}, std::make_unique<FileBody>("", file, ""),
                           silence);
    };
    server.setScript([](const auto&, QTcpSocket&) {});
    EXPECT_EQ(failureText(post(100ms)),
              server.url(QStringLiteral("/")).toString().toStdString() + " did not answer: it took too long.");

    // As long as a byte moves now and then, the whole may take longer.
    std::filesystem::resize_file(file, 3);
    server.setScript([](const auto&, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n");
        auto* timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("."); });
        timer->start(300ms);
    });
    EXPECT_EQ(await(post(1s)), (HTTPReply{200, "......"}));
}

} // namespace
} // namespace varnet::test
