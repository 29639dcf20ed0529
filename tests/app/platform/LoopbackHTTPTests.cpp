#include "Varnet/platform/FileBody.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "tests/support/Await.h"
#include "tests/support/TestServer.h"

#include <gmock/gmock.h>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(LoopbackHTTP, AsksOnlyThisMachine) {
    for (const char* url : {"http://127.0.0.1:17863/health", "http://[::1]:80/", "http://LocalHost/"})
        EXPECT_TRUE(isLoopback(QUrl(QString::fromUtf8(url)))) << url;
    for (const char* url :
         {"http://192.168.1.2/", "http://localhost.example.org/", "http://0.0.0.0/", "http://127.0.0.1.example.org/"})
        EXPECT_FALSE(isLoopback(QUrl(QString::fromUtf8(url)))) << url;

    LoopbackHTTP client;
    EXPECT_EQ(failureText(client.get(QUrl(QStringLiteral("http://192.168.1.2/health")), 1s)),
              "http://192.168.1.2/health is not an address of this machine.");
    EXPECT_NE(failureText(client.get(QUrl(QStringLiteral("file:///etc/hostname")), 1s)), "");
}

TEST(LoopbackHTTP, EveryStatusIsAReplyAndNothingIsSentTwiceOrToSomebodyElse) {
    TestServer server, elsewhere;
    LoopbackHTTP client;
    const auto post = [&](LoopbackHTTP& by) {
        return by.post(server.url(QStringLiteral("/")), {"text/plain", "Bearer secret"},
                       std::make_unique<FileBody>("words"), 5s);
    };
    const QByteArray headers = "Location: " + elsewhere.url(QStringLiteral("/")).toEncoded() +
                               "\r\nSet-Cookie: a=b\r\nCache-Control: max-age=1000\r\n";
    for (const int status : {200, 302, 307, 401, 503}) {
        server.answer(TestServer::response(status, "text", headers));
        EXPECT_EQ(await(client.get(server.url(QStringLiteral("/")), 5s)), (HTTPReply{status, "text"}));
        LoopbackHTTP fresh; // so that it does not take the connection that is about to close
        EXPECT_EQ(await(post(fresh)), (HTTPReply{status, "text"}));
    }
    server.setScript([](const auto&, QTcpSocket& socket) { socket.abort(); });
    LoopbackHTTP fresh;
    EXPECT_THAT(failureText(post(fresh)), AllOf(HasSubstr("did not answer"), Not(HasSubstr("secret"))));
    EXPECT_TRUE(elsewhere.requests().empty());
    ASSERT_EQ(server.requests().size(), 11u);
    for (const TestServer::Request& request : server.requests())
        EXPECT_FALSE(request.headers.contains("cookie"));
    const TestServer::Request& last = server.requests().back();
    EXPECT_EQ(last.body, "words");
    EXPECT_EQ(last.headers.at("content-type"), "text/plain");
    EXPECT_EQ(last.headers.at("authorization"), "Bearer secret");
}

TEST(LoopbackHTTP, BrokenAnswersAreFailures) {
    TestServer server;
    LoopbackHTTP client(1000);
    const std::pair<const char*, QByteArray> answers[] = {
        {"nothing", ""},
        {"no HTTP", "\x7f\x45\x4c\x46 what is this\r\n\r\n"},
        {"a body cut off", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nhalf"},
        {"chunks without the last", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n1\r\n \r\n"},
        {"a body over the bound", TestServer::response(200, QByteArray(1001, 'x'))},
        {"an endless body", "HTTP/1.1 200 OK\r\n\r\n" + QByteArray(2'000'000, 'x')},
    };
    for (const auto& [name, raw] : answers) {
        server.answer(raw);
        EXPECT_NE(failureText(client.get(server.url(QStringLiteral("/")), 5s)), "") << name;
    }
    server.answer(TestServer::response(200, QByteArray(1000, 'x')));
    EXPECT_EQ(await(client.get(server.url(QStringLiteral("/")), 5s)).body.size(), 1000u);
}

TEST(LoopbackHTTP, StopAndTheEndOfTheClientCallARequestOff) {
    TestServer server;
    server.setScript([](const auto&, QTcpSocket&) {});
    auto client = std::make_unique<LoopbackHTTP>();
    std::stop_source stop;
    Task<HTTPReply> stopped = client->get(server.url(QStringLiteral("/")), 1h, stop.get_token());
    Task<HTTPReply> orphan = client->get(server.url(QStringLiteral("/")), 1h);
    EXPECT_TRUE(eventually([&] { return server.requests().size() == 2; }));
    stop.request_stop();
    EXPECT_THROW(await(std::move(stopped)), Cancelled);
    client.reset();
    EXPECT_THROW(await(std::move(orphan)), Cancelled);
}

} // namespace
} // namespace varnet::test
