#include "Varnet/speech/WebSocketSpeechSocket.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/LoopbackHTTP.h"

#include <QNetworkProxy>

#include <utility>

namespace varnet {

QUrl speechSessionURL(QUrl baseURL) {
    const bool secure = baseURL.scheme() == QLatin1String("https");
    baseURL.setScheme(secure ? QStringLiteral("wss") : QStringLiteral("ws"));
    baseURL.setPath(QStringLiteral("/v1/audio/transcriptions/realtime"));
    return baseURL;
}

std::unique_ptr<SpeechSocket> makeSpeechSocket(const QUrl& baseURL) {
    return std::make_unique<WebSocketSpeechSocket>(speechSessionURL(baseURL));
}

WebSocketSpeechSocket::WebSocketSpeechSocket(QUrl url, Limits limits) : m_url(std::move(url)), m_limits(limits) {
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.setMaxAllowedIncomingFrameSize(limits.messageBytes);
    m_socket.setMaxAllowedIncomingMessageSize(limits.messageBytes);
    observe();
}

WebSocketSpeechSocket::~WebSocketSpeechSocket() = default;

void WebSocketSpeechSocket::observe() {
    using Kind = SpeechMessage::Kind;
    QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket,
                     [this](const QString& text) { accept(Kind::text, text.toUtf8()); });
    QObject::connect(&m_socket, &QWebSocket::binaryMessageReceived, &m_socket,
                     [this](const QByteArray& bytes) { accept(Kind::binary, bytes); });
    QObject::connect(&m_socket, &QWebSocket::bytesWritten, &m_socket, [this] { m_written.set(); });
    const auto failed = [this](QAbstractSocket::SocketError error) { endBecauseOf(error); };
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    QObject::connect(&m_socket, &QWebSocket::errorOccurred, &m_socket, failed);
#else
    QObject::connect(&m_socket, qOverload<QAbstractSocket::SocketError>(&QWebSocket::error), &m_socket, failed);
#endif
    // A refused connection is reported as disconnected before it is as an error.
    QObject::connect(&m_socket, &QWebSocket::disconnected, &m_socket, [this] { endBecauseOf(m_socket.error()); });
}

void WebSocketSpeechSocket::endBecauseOf(QAbstractSocket::SocketError error) {
    const bool closed = error == QAbstractSocket::UnknownSocketError || error == QAbstractSocket::RemoteHostClosedError;
    const QString reason = closed ? m_socket.closeReason() : m_socket.errorString();
    end(std::make_exception_ptr(
        SpeechFailure(reason.isEmpty() ? "The speech engine closed the connection."
                                       : "The connection to the speech engine failed: " + reason.toStdString())));
}

void WebSocketSpeechSocket::start() {
    if (isLoopback(m_url))
        m_socket.open(m_url);
    else
        end(std::make_exception_ptr(SpeechFailure("The speech engine must run on this machine.")));
}

Task<> WebSocketSpeechSocket::send(SpeechMessage message) {
    throwIfEnded();
    if (m_socket.state() != QAbstractSocket::ConnectedState)
        throw SpeechFailure("The speech engine is not connected.");
    if (message.kind == SpeechMessage::Kind::text)
        m_socket.sendTextMessage(QString::fromStdString(message.bytes));
    else
        m_socket.sendBinaryMessage(QByteArray::fromStdString(message.bytes));
    while (!m_failure && m_socket.bytesToWrite() > 0) {
        m_written.reset();
        if (co_await m_written.wait() == WaitOutcome::destroyed)
            throw Cancelled();
    }
    throwIfEnded();
}

Task<SpeechMessage> WebSocketSpeechSocket::receive() {
    while (m_messages.empty()) {
        throwIfEnded();
        m_received.reset();
        if (co_await m_received.wait() == WaitOutcome::destroyed)
            throw Cancelled();
    }
    SpeechMessage message = std::move(m_messages.front());
    m_messages.pop_front();
    m_waitingBytes -= message.bytes.size();
    co_return message;
}

void WebSocketSpeechSocket::cancel(int closeCode) {
    end(std::make_exception_ptr(Cancelled()));
    m_messages.clear();
    if (m_socket.state() == QAbstractSocket::ConnectedState)
        m_socket.close(static_cast<QWebSocketProtocol::CloseCode>(closeCode));
    else
        m_socket.abort(); // a close frame must not come before the handshake
}

void WebSocketSpeechSocket::accept(SpeechMessage::Kind kind, const QByteArray& bytes) {
    if (m_failure)
        return;
    m_messages.push_back({kind, bytes.toStdString()});
    m_waitingBytes += m_messages.back().bytes.size();
    m_received.set();
    if (m_messages.size() <= m_limits.waitingMessages && m_waitingBytes <= m_limits.waitingBytes)
        return;
    m_messages.clear();
    end(std::make_exception_ptr(SpeechFailure("The speech engine sent more than could be read.")));
    // Not inside the socket's own delivery of a message.
    QMetaObject::invokeMethod(
        &m_socket, [this] { m_socket.close(QWebSocketProtocol::CloseCodePolicyViolated); }, Qt::QueuedConnection);
}

void WebSocketSpeechSocket::end(std::exception_ptr failure) {
    if (!m_failure)
        m_failure = std::move(failure);
    m_received.set();
    m_written.set();
}

void WebSocketSpeechSocket::throwIfEnded() const {
    if (m_failure)
        std::rethrow_exception(m_failure);
}

} // namespace varnet
