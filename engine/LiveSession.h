#pragma once

#include "engine/LiveWork.h"

#include <QObject>
#include <QWebSocket>

#include <memory>

namespace engine {

/// One live session over a WebSocket: "session.created", "session.update" answered by "session.updated", binary audio
/// answered by ".delta" and ".completed" events, "input_audio_buffer.commit" answered by "…committed" after all that
/// is left. Anything else is answered by an "error" that says what is wrong, and the connection is closed. Main thread;
/// deletes itself when the connection has ended.
class LiveSession : public QObject {
    Q_OBJECT

public:
    struct Shared {
        ModelPool& models;
        std::atomic<int>& running; ///< sessions that have a model now
        int maximumRunning;
    };

    LiveSession(std::unique_ptr<QWebSocket> socket, Shared shared, QObject* parent);
    ~LiveSession() override;

    /// The program ends.
    void end();

private:
    void receiveText(const QString& text);
    void receiveAudio(const QByteArray& audio);
    void update(const QJsonObject& session);
    void deliver(const QByteArray& message, bool failed);
    void send(const QByteArray& message);
    void fail(const QString& message);

    std::unique_ptr<QWebSocket> m_socket;
    Shared m_shared;
    std::shared_ptr<LiveWork> m_work;
    bool m_failed = false;
};

} // namespace engine
