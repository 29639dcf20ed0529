#include "tests/engine/EngineClient.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>
#include <unistd.h>

using namespace std::chrono_literals;

bool await(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer wake;
    wake.start(20ms);
    while (!condition()) {
        if (elapsed.hasExpired(deadline.count()))
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

EngineProcess::EngineProcess() {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(NEMO_SPEECH,
                    {"serve", "--config", VARNET_SOURCE_DIR "/config/speech.yaml", "--port", "0", "--device", "cpu"});
    await([this] { return m_process.canReadLine() || m_process.state() == QProcess::NotRunning; });
    m_port = m_process.readLine().trimmed().split(':').last().toInt();
    EXPECT_TRUE(await([this] { return health() == 200; }));
}

EngineProcess::~EngineProcess() {
    m_process.kill();
    m_process.waitForFinished();
}

EngineProcess& sharedEngine() {
    static EngineProcess shared;
    return shared;
}

int EngineProcess::health() const {
    return exchange(m_port, "GET /health HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n").status;
}

double EngineProcess::cpuSeconds() const {
    QFile file(QString("/proc/%1/stat").arg(m_process.processId()));
    EXPECT_TRUE(file.open(QFile::ReadOnly));
    const QList<QByteArray> fields = file.readAll().split(')').last().trimmed().split(' ');
    return (fields[11].toDouble() + fields[12].toDouble()) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

HTTPResult exchange(int port, const QByteArray& request) {
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(port));
    socket.write(request);
    QByteArray answer;
    const auto patience = request.startsWith("GET") ? 1500ms : 180000ms;
    await(
        [&] {
            answer += socket.readAll();
            return socket.state() == QTcpSocket::UnconnectedState;
        },
        patience);
    return {answer.startsWith("HTTP/1.1 ") ? answer.mid(9, 3).toInt() : 0, answer.mid(answer.indexOf("\r\n\r\n") + 4)};
}

QByteArray transcriptionRequest(const QByteArray& file, const QByteArray& diarization) {
    const QByteArray disposition = "\r\nContent-Disposition: form-data; name=";
    const QByteArray body = "--B" + disposition + "\"response_format\"\r\n\r\nverbose_json\r\n--B" + disposition +
                            "\"diarization\"\r\n\r\n" + diarization + "\r\n--B" + disposition +
                            "\"file\"; filename=\"audio.wav\"\r\nContent-Type: audio/wav\r\n\r\n" + file +
                            "\r\n--B--\r\n";
    return "POST /v1/audio/transcriptions HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: multipart/form-data; "
           "boundary=B\r\nContent-Length: " +
           QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

LiveClient::LiveClient(const EngineProcess& engine) {
    QObject::connect(&m_socket, &QWebSocket::textMessageReceived, &m_socket, [this](const QString& text) {
        messages.push_back(QJsonDocument::fromJson(text.toUtf8()).object());
    });
    QObject::connect(&m_socket, &QWebSocket::disconnected, &m_socket, [this] { m_closed = true; });
    m_socket.open(QUrl(QString("ws://127.0.0.1:%1/v1/audio/transcriptions/realtime").arg(engine.port())));
    EXPECT_EQ(waitFor("session.created"), 0U);
}

void LiveClient::handshake() {
    sendText(R"({"type":"session.update","session":{"sample_rate":16000,"word_timestamps":true,)"
             R"("speaker_diarization":true,"endpointing_ms":800}})");
    EXPECT_EQ(waitFor("session.updated"), 1U);
}

void LiveClient::sendAudio(const QByteArray& pcm) {
    for (qsizetype place = 0; place < pcm.size(); place += 5120)
        m_socket.sendBinaryMessage(pcm.mid(place, 5120));
}

void LiveClient::hold(const QByteArray& pcm) {
    handshake();
    sendAudio(pcm);
    commit();
    EXPECT_TRUE(waitFor("input_audio_buffer.committed"));
}

std::optional<std::size_t> LiveClient::waitFor(const QString& type) {
    std::size_t place = 0;
    const auto found = [&] {
        while (place < messages.size() && messages[place]["type"] != type)
            ++place;
        return place < messages.size();
    };
    if (await([&] { return found() || m_closed; }) && found())
        return place;
    return {};
}

bool LiveClient::waitForClose() {
    return await([this] { return m_closed; });
}

QJsonArray LiveClient::words() const {
    QJsonArray all;
    for (const QJsonObject& message : messages)
        if (message["type"].toString().endsWith(".completed"))
            for (const QJsonValue word : message["words"].toArray())
                all.append(word);
    return all;
}

QByteArray pcmOf(const QString& wavFile) {
    QFile file(wavFile);
    EXPECT_TRUE(file.open(QFile::ReadOnly));
    return file.readAll().mid(44);
}

QByteArray spoken(const QString& text) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("speech.wav");
    EXPECT_EQ(QProcess::execute("flite", {"-voice", "slt", "-t", text, "-o", file}), 0);
    return pcmOf(file) + QByteArray(32000, 0);
}

QByteArray wavOf(const QByteArray& pcm) {
    return QByteArray("RIFF\x24\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x80\x3E\0\0\0\x7D\0\0\2\0\x10\0data\0\0\0\0", 44) + pcm;
}
