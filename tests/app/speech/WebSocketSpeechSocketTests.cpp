#include "MeetingCore/base/Failures.h"
#include "Varnet/speech/LiveSpeech.h"
#include "Varnet/speech/WebSocketSpeechSocket.h"
#include "tests/support/Await.h"
#include "tests/support/TestServer.h"

#include <QThread>
#include <QWebSocketServer>

#include <gtest/gtest.h>

#include <semaphore>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;

/// A speech engine on a real port: a script answers each message, "" standing for the opened connection.
class Engine {
public:
    using Script = std::function<void(QWebSocket&, const QByteArray&)>;

    explicit Engine(Script script = {}) : m_script(std::move(script)) {
        QObject::connect(&m_server, &QWebSocketServer::newConnection, &m_server, [this] {
            QWebSocket* socket = m_server.nextPendingConnection();
            socket->setParent(&m_server);
            m_path = socket->requestUrl().path().toStdString();
            const auto hear = [this, socket](const QByteArray& message) {
                m_heard.push_back(message);
                m_script(*socket, message);
            };
            QObject::connect(socket, &QWebSocket::textMessageReceived, &m_server,
                             [hear](const QString& text) { hear(text.toUtf8()); });
            QObject::connect(socket, &QWebSocket::binaryMessageReceived, &m_server, hear);
            QObject::connect(socket, &QWebSocket::disconnected, &m_server,
                             [this, socket] { m_closeCode = static_cast<int>(socket->closeCode()); });
            if (m_script)
                m_script(*socket, "");
        });
        m_server.listen(QHostAddress::LocalHost);
    }

    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort())); }
    const std::string& path() const { return m_path; }
    const std::vector<QByteArray>& heard() const { return m_heard; }
    std::optional<int> closeCode() const { return m_closeCode; }

private:
    Script m_script;
    std::string m_path;
    std::vector<QByteArray> m_heard;
    std::optional<int> m_closeCode;
    QWebSocketServer m_server{QStringLiteral("test"), QWebSocketServer::NonSecureMode};
};

/// Does what an engine does; audio is answered with `onAudio`.
Engine::Script cooperative(const std::function<void(QWebSocket&)>& onAudio = [](QWebSocket&) {}) {
    return [onAudio](QWebSocket& socket, const QByteArray& message) {
        if (message.isEmpty())
            socket.sendTextMessage(QStringLiteral(R"({"type":"session.created"})"));
        else if (message.contains("session.update"))
            socket.sendBinaryMessage(R"({"type":"session.updated"})");
        else if (message.contains("buffer.commit"))
            socket.sendTextMessage(QStringLiteral(R"({"type":"input_audio_buffer.committed"})"));
        else
            onAudio(socket);
    };
}

/// A session that is connected to a real socket, and what it told its owner.
struct Session {
    explicit Session(const QUrl& url) : live(LiveSpeech::make(url)) {}
    ~Session() {
        live->close(std::make_exception_ptr(Cancelled()), false);
        settle();
    }
    Task<> connect() {
        return live->connect([this](SpeechEvent event) { return handle(this, std::move(event)); },
                             [this](const std::exception_ptr& failure) { errors.push_back(describe(failure)); });
    }
    static Task<> handle(Session* session, SpeechEvent event) {
        session->events.push_back(event.type);
        co_return;
    }
    void append(std::string_view bytes) { live->append(std::as_bytes(std::span(bytes))); }

    std::shared_ptr<LiveSpeech> live;
    std::vector<std::string> events;
    std::vector<std::string> errors;
};

template <class T>
std::string failureOf(Task<T> task) {
    try {
        await(std::move(task));
        return "none";
    } catch (...) {
        return describe(std::current_exception());
    }
}

TEST(SpeechSessionURL, MapsTheSchemeAndReplacesThePath) {
    const char* const urls[][2] = {
        {"http://127.0.0.1:17863", "ws://127.0.0.1:17863/v1/audio/transcriptions/realtime"},
        {"https://localhost/other/", "wss://localhost/v1/audio/transcriptions/realtime"},
        {"ws://[::1]:9/", "ws://[::1]:9/v1/audio/transcriptions/realtime"},
    };
    for (const auto& [base, session] : urls)
        EXPECT_EQ(speechSessionURL(QUrl(QString::fromUtf8(base))).toString().toStdString(), session);
}

TEST(WebSocketSpeechSocket, CarriesAWholeSession) {
    Engine engine(cooperative(
        [](QWebSocket& socket) { socket.sendTextMessage(QStringLiteral(R"({"type":"x.delta","delta":"héllo"})")); }));
    Session session(engine.url());
    await(session.connect());
    const std::string block(5120, '\x01');
    session.append(block);
    session.append(std::string_view("\0\x80\xff", 3));
    EXPECT_EQ(failureOf(session.live->finish()), "none");
    EXPECT_EQ(engine.path(), "/v1/audio/transcriptions/realtime");
    ASSERT_EQ(engine.heard().size(), 4u);
    EXPECT_EQ(engine.heard()[1].toStdString(), block);
    EXPECT_EQ(engine.heard()[2], QByteArray("\0\x80\xff", 3));
    EXPECT_EQ(engine.heard()[3], R"({"type":"input_audio_buffer.commit"})");
    EXPECT_EQ(session.events, (std::vector<std::string>{"x.delta", "x.delta", "input_audio_buffer.committed"}));
    EXPECT_TRUE(eventually([&] { return engine.closeCode() == 1001; }));
    EXPECT_TRUE(session.errors.empty());
}

TEST(WebSocketSpeechSocket, AnEngineThatMisbehavesEndsTheSessionInClearWords) {
    struct Case {
        const char* name;
        std::function<void(QWebSocket&)> onAudio;
        const char* failure;
    };
    const Case cases[] = {
        {"closes", [](QWebSocket& socket) { socket.close(); }, "The speech engine closed the connection."},
        {"dies", [](QWebSocket& socket) { socket.abort(); }, "The speech engine closed the connection."},
        {"answers garbage", [](QWebSocket& socket) { socket.sendBinaryMessage("\xff\xfe{"); },
         "The data is not valid: The input is not valid UTF-8."},
        {"sends one message without end",
         [](QWebSocket& socket) { socket.sendBinaryMessage(QByteArray(5 * 1024 * 1024, ' ')); },
         "The connection to the speech engine failed: Received message is too big."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Engine engine(cooperative(c.onAudio));
        Session session(engine.url());
        await(session.connect());
        session.append("audio");
        EXPECT_TRUE(eventually([&] { return !session.errors.empty(); }));
        EXPECT_EQ(session.errors, std::vector<std::string>{c.failure});
        EXPECT_EQ(failureOf(session.live->finish()), c.failure);
    }
}

TEST(WebSocketSpeechSocket, AFloodThatIsNotReadEndsTheConnection) {
    Engine engine([](QWebSocket& socket, const QByteArray&) {
        for (int i = 0; i < 30; ++i)
            socket.sendTextMessage(QStringLiteral("0123456789"));
    });
    const std::pair<const char*, WebSocketSpeechSocket::Limits> bounds[] = {
        {"of messages", {100, 20, 1'000'000}},
        {"of bytes", {100, 1000, 200}},
    };
    for (const auto& [name, limits] : bounds) {
        SCOPED_TRACE(name);
        WebSocketSpeechSocket socket(speechSessionURL(engine.url()), limits);
        socket.start();
        EXPECT_TRUE(eventually([&] { return engine.closeCode() == 1008; }));
        EXPECT_EQ(failureOf(socket.receive()), "The speech engine sent more than could be read.");
    }
}

TEST(WebSocketSpeechSocket, MessagesBeforeTheEndAreStillGivenOut) {
    Engine engine([](QWebSocket& socket, const QByteArray&) {
        socket.sendTextMessage(QStringLiteral("last words"));
        socket.close();
    });
    WebSocketSpeechSocket socket(speechSessionURL(engine.url()));
    socket.start();
    EXPECT_TRUE(eventually([&] { return engine.closeCode().has_value(); }));
    settle();
    EXPECT_EQ(await(socket.receive()), (SpeechMessage{SpeechMessage::Kind::text, "last words"}));
    EXPECT_EQ(failureOf(socket.receive()), "The speech engine closed the connection.");
    EXPECT_EQ(failureOf(socket.send({})), "The speech engine closed the connection.");
}

TEST(WebSocketSpeechSocket, WhatIsNoEngineFailsTheConnection) {
    TestServer server;
    const auto receiveFrom = [](const QUrl& base) {
        const std::unique_ptr<SpeechSocket> socket = makeSpeechSocket(base);
        socket->start();
        return failureOf(socket->receive());
    };
    const std::string failed = "The connection to the speech engine failed: ";
    const QByteArray answers[] = {
        TestServer::response(404, "no"),
        TestServer::response(302, "", "Location: http://127.0.0.1:1/\r\n"),
        TestServer::response(200, "{}"),
    };
    for (const QByteArray& answer : answers) {
        server.answer(answer);
        EXPECT_TRUE(receiveFrom(server.url(QString())).starts_with(failed)) << answer.constData();
    }
    EXPECT_EQ(receiveFrom(QUrl(QStringLiteral("http://127.0.0.1:1"))), failed + "Connection refused");
    EXPECT_EQ(receiveFrom(QUrl(QStringLiteral("http://192.0.2.1:17863"))),
              "The speech engine must run on this machine.");
}

TEST(WebSocketSpeechSocket, CancelAndDestructionEndAWaitingReceive) {
    Engine engine;
    for (const bool destroy : {false, true}) {
        std::unique_ptr<SpeechSocket> socket = makeSpeechSocket(engine.url());
        socket->start();
        Task<SpeechMessage> receiving = socket->receive();
        settle();
        EXPECT_FALSE(receiving.isReady());
        if (destroy)
            socket.reset();
        else
            socket->cancel(1001);
        EXPECT_FALSE(receiving.isReady());
        EXPECT_THROW(await(std::move(receiving)), Cancelled);
    }
}

/// An engine on a thread of its own that reads nothing after the handshake.
class StuckEngine : public QThread {
public:
    StuckEngine() {
        start();
        m_listening.acquire();
    }
    ~StuckEngine() override {
        m_release.release();
        wait();
    }
    QUrl url() const { return m_url; }

protected:
    void run() override {
        const auto answer = cooperative();
        Engine engine([&](QWebSocket& socket, const QByteArray& message) {
            answer(socket, message);
            if (message.contains("session.update")) {
                socket.flush();
                m_release.acquire(); // this thread reads no more
                quit();
            }
        });
        m_url = engine.url();
        m_listening.release();
        exec();
    }

private:
    QUrl m_url;
    std::binary_semaphore m_listening{0};
    std::binary_semaphore m_release{0};
};

TEST(WebSocketSpeechSocket, AnEngineThatReadsNothingHoldsTheSenderUpUntilTheSessionEnds) {
    StuckEngine engine;
    Session session(engine.url());
    await(session.connect());
    const std::string block(256 * 1024, 'x');
    int blocks = 0;
    while (session.errors.empty() && blocks < 1000) {
        session.append(block);
        ++blocks;
        settle();
    }
    EXPECT_EQ(session.errors,
              std::vector<std::string>{"The speech engine fell behind the recording. Live transcription "
                                       "stopped; retry from saved audio after the meeting."});
    EXPECT_GT(blocks, 128);
}

TEST(WebSocketSpeechSocket, CancelAndDestructionEndAWaitingSend) {
    for (const bool destroy : {false, true}) {
        StuckEngine engine;
        std::unique_ptr<SpeechSocket> socket = makeSpeechSocket(engine.url());
        socket->start();
        await(socket->receive());
        await(socket->send({SpeechMessage::Kind::text, "session.update"}));
        Task<> sending = socket->send({SpeechMessage::Kind::binary, std::string(64 * 1024 * 1024, 'x')});
        settle();
        EXPECT_FALSE(sending.isReady());
        if (destroy)
            socket.reset();
        else
            socket->cancel(1001);
        EXPECT_THROW(await(std::move(sending)), Cancelled);
    }
}

} // namespace
} // namespace varnet::test
