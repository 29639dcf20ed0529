#include "Varnet/speech/WebSocketSpeechSocket.h"
#include "tests/support/Await.h"
#include "tests/support/TestServer.h"

#include <QWebSocketServer>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

using Kind = SpeechMessage::Kind;

/// A speech engine on a real port, with what it does to each new connection.
struct Engine {
    explicit Engine(const std::function<void(QWebSocket&)>& script) {
        QObject::connect(&server, &QWebSocketServer::newConnection, &server, [this, script] {
            QWebSocket* socket = server.nextPendingConnection();
            socket->setParent(&server);
            QObject::connect(socket, &QWebSocket::disconnected, &server,
                             [this, socket] { closeCode = static_cast<int>(socket->closeCode()); });
            script(*socket);
        });
        server.listen(QHostAddress::LocalHost);
    }
    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort())); }

    std::optional<int> closeCode;
    QWebSocketServer server{QStringLiteral("test"), QWebSocketServer::NonSecureMode};
};

TEST(WebSocketSpeechSocket, GivesOutWhatCameBeforeTheEndAndTellsWhyItEnded) {
    const std::pair<std::function<void(QWebSocket&)>, const char*> endings[] = {
        {[](QWebSocket& socket) { socket.close(); }, "The speech engine closed the connection."},
        {[](QWebSocket& socket) { socket.sendBinaryMessage(QByteArray(5 * 1024 * 1024, ' ')); },
         "The connection to the speech engine failed: Received message is too big."},
    };
    for (const auto& [end, failure] : endings) {
        Engine engine([&](QWebSocket& socket) {
            socket.sendTextMessage(QStringLiteral("last words"));
            end(socket);
        });
        WebSocketSpeechSocket socket(speechSessionURL(engine.url()));
        socket.start();
        EXPECT_TRUE(eventually([&] { return engine.closeCode.has_value(); }));
        settle();
        EXPECT_EQ(await(socket.receive()), (SpeechMessage{Kind::text, "last words"}));
        EXPECT_EQ(failureText(socket.receive()), failure);
        EXPECT_EQ(failureText(socket.send({})), failure);
    }
}

TEST(WebSocketSpeechSocket, AFloodThatIsNotReadEndsTheConnection) {
    Engine engine([](QWebSocket& socket) {
        for (int i = 0; i < 30; ++i)
            socket.sendTextMessage(QStringLiteral("0123456789"));
    });
    for (const auto& limits : {WebSocketSpeechSocket::Limits{100, 20, 1'000'000}, {100, 1000, 200}}) {
        WebSocketSpeechSocket socket(speechSessionURL(engine.url()), limits);
        socket.start();
        EXPECT_TRUE(eventually([&] { return engine.closeCode == 1008; })) << limits.waitingMessages;
        EXPECT_EQ(failureText(socket.receive()), "The speech engine sent more than could be read.");
        engine.closeCode.reset();
    }
}

TEST(WebSocketSpeechSocket, WhatIsNoEngineFailsTheConnection) {
    const auto receiveFrom = [](const QUrl& base) {
        const std::unique_ptr<SpeechSocket> socket = makeSpeechSocket(base);
        socket->start();
        return failureText(socket->receive());
    };
    const std::string failed = "The connection to the speech engine failed: ";
    TestServer server;
    for (const int status : {200, 302, 404}) {
        server.answer(TestServer::response(status, "no", "Location: http://127.0.0.1:1/\r\n"));
        EXPECT_TRUE(receiveFrom(server.url(QString())).starts_with(failed)) << status;
    }
    EXPECT_EQ(receiveFrom(QUrl(QStringLiteral("http://127.0.0.1:1"))), failed + "Connection refused");
    EXPECT_EQ(receiveFrom(QUrl(QStringLiteral("http://192.0.2.1:17863"))),
              "The speech engine must run on this machine.");
}

/// Opens the connection, says "hi" and reads no more.
void readNothing(const TestServer::Request& request, QTcpSocket& socket) {
    const QByteArray key = request.headers.at("sec-websocket-key") + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
    socket.write("HTTP/1.1 101 Switching Protocols\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                 "Sec-WebSocket-Accept: " +
                 QCryptographicHash::hash(key, QCryptographicHash::Sha1).toBase64() + "\r\n\r\n\x81\x02hi");
    socket.setReadBufferSize(1);
    QObject::disconnect(&socket, &QTcpSocket::readyRead, nullptr, nullptr);
}

TEST(WebSocketSpeechSocket, CancelAndDestructionEndWhatWaits) {
    TestServer engine;
    engine.setScript(readNothing);
    for (const bool destroy : {false, true}) {
        std::unique_ptr<SpeechSocket> socket = makeSpeechSocket(engine.url(QString()));
        socket->start();
        EXPECT_EQ(await(socket->receive()).bytes, "hi");
        Task<> sending = socket->send({Kind::binary, std::string(64 * 1024 * 1024, 'x')});
        Task<SpeechMessage> receiving = socket->receive();
        settle();
        EXPECT_FALSE(sending.isReady()) << "the engine takes nothing, so the sender is held up";
        EXPECT_FALSE(receiving.isReady());
        if (destroy)
            socket.reset();
        else
            socket->cancel(1001);
        EXPECT_FALSE(receiving.isReady()) << "no waiter runs inside the owner's call";
        EXPECT_THROW(await(std::move(sending)), Cancelled);
        EXPECT_THROW(await(std::move(receiving)), Cancelled);
    }
}

} // namespace
} // namespace varnet::test
