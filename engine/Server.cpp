#include "engine/Server.h"

#include "engine/Failure.h"

#include <QCoreApplication>

#include <thread>

namespace engine {

Server::Server(const EngineConfig& config)
    : m_config(config), m_models(config), m_webSockets("nemo-speech", QWebSocketServer::NonSecureMode) {
    m_files.setMaxThreadCount(1);
    connect(&m_listener, &QTcpServer::newConnection, this, &Server::accept);
    connect(&m_webSockets, &QWebSocketServer::newConnection, this, &Server::acceptLive);
}

void Server::listen() {
    if (!m_listener.listen(QHostAddress::LocalHost, static_cast<quint16>(m_config.port)))
        throw Failure("Port " + std::to_string(m_config.port) +
                      " of 127.0.0.1 can't be used: " + m_listener.errorString().toStdString() + ".");
}

void Server::load() {
    std::thread([this] {
        QString reason;
        try {
            m_models.borrow();
        } catch (const std::exception& failure) {
            reason = QString::fromUtf8(failure.what());
        }
        QMetaObject::invokeMethod(qApp, [this, reason] {
            m_ready = reason.isEmpty();
            if (!m_ready)
                Q_EMIT failed(reason);
        });
    }).detach();
}

void Server::accept() {
    while (QTcpSocket* socket = m_listener.nextPendingConnection()) {
        if (findChildren<QObject*>(Qt::FindDirectChildrenOnly).size() >= maximumConnections) {
            delete socket;
            continue;
        }
        const auto upgrade = [this](QTcpSocket* live) { m_webSockets.handleConnection(live); };
        new HTTPConnection(socket, {m_models, m_ready, m_files, m_filesWaiting, upgrade}, this);
    }
}

void Server::acceptLive() {
    while (QWebSocket* socket = m_webSockets.nextPendingConnection())
        new LiveSession(std::unique_ptr<QWebSocket>(socket), {m_models, m_running, m_config.maximumSessions}, this);
}

void Server::end() {
    m_listener.close();
    for (LiveSession* session : findChildren<LiveSession*>())
        session->end();
}

} // namespace engine
