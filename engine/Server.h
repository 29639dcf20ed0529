#pragma once

#include "engine/EngineConfig.h"
#include "engine/HTTPConnection.h"
#include "engine/LiveSession.h"
#include "engine/ModelPool.h"

#include <QObject>
#include <QTcpServer>
#include <QThreadPool>
#include <QWebSocketServer>

#include <atomic>

namespace engine {

/// The engine's port on the loopback interface. Recognition runs on other threads, so that "/health" answers at once
/// whatever is being recognised. Main thread.
class Server : public QObject {
    Q_OBJECT

public:
    explicit Server(const EngineConfig& config);

    /// Listens on 127.0.0.1. Throws Failure when the port is taken.
    void listen();
    int port() const { return m_listener.serverPort(); }

    /// Loads the first model on another thread; "/health" is 503 until then.
    void load();

    /// Says goodbye to all clients. Threads may still be at work; the program ends without waiting for them.
    void end();

Q_SIGNALS:
    /// The model could not be loaded.
    void failed(const QString& reason);

private:
    void accept();
    void acceptLive();

    static constexpr int maximumConnections = 64;

    const EngineConfig m_config;
    ModelPool m_models;
    bool m_ready = false;
    std::atomic<int> m_running = 0;
    int m_filesWaiting = 0;
    QThreadPool m_files;
    QTcpServer m_listener;
    QWebSocketServer m_webSockets;
};

} // namespace engine
