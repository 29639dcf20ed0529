#pragma once

#include "Varnet/async/Event.h"
#include "Varnet/speech/SpeechSocket.h"

#include <QWebSocket>

#include <cstddef>
#include <deque>
#include <exception>

namespace varnet {

/// A SpeechSocket over QtWebSockets.
///
/// QWebSocket reads whatever arrives and queues whatever is sent. So a send ends when nothing is left to write, and a
/// peer that sends faster than it is read ends the connection when the bounds are passed.
class WebSocketSpeechSocket final : public SpeechSocket {
public:
    struct Limits {
        std::size_t messageBytes = 4 * 1024 * 1024; ///< of one incoming message
        std::size_t waitingMessages = 4096;         ///< received and not yet taken
        std::size_t waitingBytes = 16 * 1024 * 1024;
    };

    /// `url` is the whole address of the session, with scheme ws or wss.
    explicit WebSocketSpeechSocket(QUrl url, Limits limits = defaultLimits());
    ~WebSocketSpeechSocket() override;

    void start() override;
    Task<> send(SpeechMessage message) override;
    Task<SpeechMessage> receive() override;
    void cancel(int closeCode) override;

private:
    static Limits defaultLimits() { return {}; }
    void observe();
    void endBecauseOf(QAbstractSocket::SocketError error);
    void accept(SpeechMessage::Kind kind, const QByteArray& bytes);
    void end(std::exception_ptr failure);
    void throwIfEnded() const;

    const QUrl m_url;
    const Limits m_limits;
    std::deque<SpeechMessage> m_messages;
    std::size_t m_waitingBytes = 0;
    std::exception_ptr m_failure; ///< why the connection has ended
    Event m_received;
    Event m_written;
    QWebSocket m_socket; ///< last, as it still reports while it is destroyed
};

} // namespace varnet
