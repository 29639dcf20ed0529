#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QWebSocket>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

/// The real engine on a port of its own, ready when constructed; killed at the end if it is still there.
class EngineProcess {
public:
    EngineProcess();
    ~EngineProcess();

    int port() const { return m_port; }
    QProcess& process() { return m_process; }
    int health() const; ///< the status of GET "/health", 0 when nothing answers within the application's 1.5 seconds
    double cpuSeconds() const; ///< processor time used so far

private:
    QProcess m_process;
    int m_port = 0;
};

/// The engine that tests share which leave it as it was.
EngineProcess& sharedEngine();

struct HTTPResult {
    int status = 0;
    QByteArray body;
};
/// Sends the bytes as they are and reads to the end of the connection.
HTTPResult exchange(int port, const QByteArray& request);
/// A request with the multipart body of a transcription; `file` goes between its head and its closing delimiter.
QByteArray transcriptionRequest(const QByteArray& file, const QByteArray& diarization = "true");

/// A live session's other end.
class LiveClient {
public:
    explicit LiveClient(const EngineProcess& engine);

    /// Waits for "session.created", sends the application's settings and waits for "session.updated".
    void handshake();
    void sendText(const QString& text) { m_socket.sendTextMessage(text); }
    void sendBlock(const QByteArray& pcm) { m_socket.sendBinaryMessage(pcm); }
    /// In blocks of the application's size.
    void sendAudio(const QByteArray& pcm);
    void commit() { sendText(R"({"type":"input_audio_buffer.commit"})"); }
    /// A whole session: the handshake, this audio, the commit, and its acknowledgement.
    void hold(const QByteArray& pcm);

    /// Waits until a message of the type has come, for three minutes at most; its place in `messages`.
    std::optional<std::size_t> waitFor(const QString& type);
    bool waitForClose();
    /// The words of all ".completed" messages.
    QJsonArray words() const;

    std::vector<QJsonObject> messages;

private:
    QWebSocket m_socket;
    bool m_closed = false;
};

/// Runs the event loop until the condition holds; false after the deadline.
bool await(const std::function<bool()>& condition, std::chrono::milliseconds deadline = std::chrono::minutes(3));

QByteArray pcmOf(const QString& wavFile);
/// Synthetic speech in the engine's format, with a second of silence behind it.
QByteArray spoken(const QString& text);
/// A file whose header declares no audio yet, as a recorder leaves it that was killed.
QByteArray wavOf(const QByteArray& pcm);
