#include "engine/LiveSession.h"

#include "engine/Failure.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QPointer>

namespace engine {
namespace {

constexpr qsizetype maximumText = 64 * 1024;
constexpr qsizetype maximumBlock = 1024 * 1024;
// Above the two, so that they are answered with a sentence; beyond it the connection just ends.
constexpr quint64 maximumMessage = 4 * 1024 * 1024;
constexpr qint64 maximumUnread = 16 * 1024 * 1024;

} // namespace

LiveSession::LiveSession(std::unique_ptr<QWebSocket> socket, Shared shared, QObject* parent)
    : QObject(parent), m_socket(std::move(socket)), m_shared(shared) {
    m_socket->setMaxAllowedIncomingFrameSize(maximumMessage);
    m_socket->setMaxAllowedIncomingMessageSize(maximumMessage);
    connect(m_socket.get(), &QWebSocket::textMessageReceived, this, &LiveSession::receiveText);
    connect(m_socket.get(), &QWebSocket::binaryMessageReceived, this, &LiveSession::receiveAudio);
    connect(m_socket.get(), &QWebSocket::disconnected, this, &QObject::deleteLater);
    send(wire::event("session.created"));
}

LiveSession::~LiveSession() {
    if (m_work)
        m_work->cancel();
    m_socket->disconnect(this);
}

void LiveSession::end() {
    m_socket->close(QWebSocketProtocol::CloseCodeGoingAway);
    m_socket->flush();
}

void LiveSession::receiveText(const QString& text) {
    if (m_failed)
        return;
    if (text.size() > maximumText)
        return fail("The message is too long.");
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (!document.isObject())
        return fail("The message is not a JSON object.");
    const QString type = document.object().value("type").toString();
    if (type == "session.update")
        update(document.object().value("session").toObject());
    else if (type != "input_audio_buffer.commit")
        fail("The message type \"" + type.left(100) + "\" is not known.");
    else if (!m_work)
        fail("There is nothing to commit before \"session.update\".");
    else if (!m_work->commit())
        fail("Too much is waiting to be recognised.");
}

void LiveSession::update(const QJsonObject& session) {
    if (m_work)
        return fail("The session is set up already.");
    if (m_shared.running >= m_shared.maximumRunning)
        return fail("Too many sessions are running.");
    try {
        const wire::SessionSettings settings = wire::sessionSettings(session);
        const QPointer<LiveSession> self(this);
        // The work outlives the session for a moment, never the application object.
        const auto deliverHere = [self](const QByteArray& message, bool failed) {
            QMetaObject::invokeMethod(qApp, [self, message, failed] {
                if (self)
                    self->deliver(message, failed);
            });
        };
        m_work = LiveWork::start(m_shared.models, m_shared.running, settings, deliverHere);
        send(wire::event("session.updated"));
    } catch (const Failure& failure) {
        fail(QString::fromUtf8(failure.what()));
    }
}

void LiveSession::receiveAudio(const QByteArray& audio) {
    if (m_failed)
        return;
    if (!m_work)
        fail("Audio came before \"session.update\".");
    else if (audio.size() > maximumBlock)
        fail("The audio block is too long.");
    else if (audio.size() % 2 != 0)
        fail("The audio block ends within a sample.");
    else if (!m_work->append(audio))
        fail("The audio comes faster than it can be recognised.");
}

void LiveSession::deliver(const QByteArray& message, bool failed) {
    if (m_failed)
        return;
    send(message);
    if (failed) {
        m_failed = true;
        m_socket->close(QWebSocketProtocol::CloseCodeBadOperation);
    } else if (m_socket->bytesToWrite() > maximumUnread) {
        m_socket->abort();
    }
}

void LiveSession::send(const QByteArray& message) {
    m_socket->sendTextMessage(QString::fromUtf8(message));
}

void LiveSession::fail(const QString& message) {
    m_failed = true;
    if (m_work)
        m_work->cancel();
    send(wire::error(message));
    m_socket->close(QWebSocketProtocol::CloseCodePolicyViolated);
}

} // namespace engine
