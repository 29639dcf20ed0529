#include "engine/HTTPConnection.h"

#include "engine/Failure.h"
#include "engine/WavReader.h"

#include <QCoreApplication>
#include <QPointer>

#include <sys/resource.h>
#include <unistd.h>

namespace engine {
namespace {

using namespace std::chrono_literals;

constexpr auto headPatience = 10s;
constexpr auto bodyPatience = 60s;
constexpr auto closePatience = 30s;
constexpr auto workInterval = 5s;
constexpr qint64 readPortion = 1024 * 1024;
constexpr int lowPriority = 10;

constexpr char livePath[] = "/v1/audio/transcriptions/realtime";
constexpr char filePath[] = "/v1/audio/transcriptions";

/// A piece of an answer that is sent in chunks; without the last, empty one the client knows that it is not whole.
QByteArray chunk(const QByteArray& content) {
    return QByteArray::number(content.size(), 16) + "\r\n" + content + "\r\n";
}

} // namespace

HTTPConnection::HTTPConnection(QTcpSocket* socket, Shared shared, QObject* parent)
    : QObject(parent),
      m_socket(socket),
      m_shared(std::move(shared)),
      m_cancelled(std::make_shared<std::atomic<bool>>(false)) {
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readPortion); // the kernel slows the client down beyond it
    connect(m_socket, &QTcpSocket::readyRead, this, &HTTPConnection::read);
    connect(m_socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    connect(&m_patience, &QTimer::timeout, m_socket, &QTcpSocket::abort);
    m_patience.setSingleShot(true);
    m_patience.start(headPatience);
    connect(&m_work, &QTimer::timeout, this, &HTTPConnection::showWork);
}

HTTPConnection::~HTTPConnection() {
    *m_cancelled = true;
    if (m_counted)
        --m_shared.filesWaiting;
    if (m_socket)
        m_socket->disconnect(this);
}

void HTTPConnection::read() {
    try {
        if (m_answered)
            drain();
        else if (!m_head)
            readHead();
        else
            readBody();
    } catch (const Failure& failure) {
        answer(400, failure.what());
    }
}

void HTTPConnection::readHead() {
    m_head = HTTPHead::parse(m_socket->peek(HTTPHead::maximumBytes + 1));
    if (!m_head)
        return;
    if (!m_head->isLocal())
        return answer(403, "Only programs of this machine may ask the engine");
    if (m_head->path == livePath && m_head->method == "GET" && m_head->wantsWebSocket()) {
        m_socket->disconnect(this);
        m_socket->setReadBufferSize(0);
        m_socket->setParent(nullptr);
        m_shared.upgrade(std::exchange(m_socket, nullptr));
        deleteLater();
        return;
    }
    m_socket->read(m_head->bytes);
    route();
}

void HTTPConnection::route() {
    const bool get = m_head->method == "GET" || m_head->method == "HEAD";
    if (m_head->path == "/health") {
        if (!get)
            return answer(405, "The method does not fit this path");
        return m_shared.ready ? answer(200, R"({"status":"ok"})") : answer(503, "The model is being loaded");
    }
    if (m_head->path == livePath)
        return answer(426, "This path speaks WebSocket only");
    if (m_head->path != filePath)
        return answer(404, "There is nothing under this path");
    if (m_head->method != "POST")
        return answer(405, "The method does not fit this path");
    beginFile();
}

void HTTPConnection::beginFile() {
    bool known = false;
    m_bodyLeft = m_head->header("content-length").toLongLong(&known);
    if (!known || m_bodyLeft < 0)
        return answer(411, "The request does not say how long it is");
    if (m_bodyLeft > maximumBody) {
        m_bodyLeft = 0;
        return answer(413, "The file is longer than 1 GiB");
    }
    if (m_head->header("expect").toLower() == "100-continue")
        m_socket->write("HTTP/1.1 100 Continue\r\n\r\n");
    if (!m_shared.ready)
        return answer(503, "The model is being loaded");
    if (m_shared.filesWaiting >= maximumFilesWaiting)
        return answer(503, "Too many files are being transcribed");
    ++m_shared.filesWaiting;
    m_counted = true;
    m_file = std::make_shared<QTemporaryFile>();
    if (!m_file->open())
        return answer(500, "The engine has no place for the file: " + m_file->errorString().toUtf8());
    m_body = std::make_unique<MultipartReader>(m_head->header("content-type"), [this](QByteArrayView content) {
        if (m_file->write(content.data(), content.size()) != content.size())
            throw std::runtime_error("The engine has no place for the file: " + m_file->errorString().toStdString());
    });
    readBody();
}

void HTTPConnection::readBody() {
    if (!m_body) { // the file is being recognised; what follows it is nothing that was asked for
        m_socket->readAll();
        return;
    }
    m_patience.start(bodyPatience);
    try {
        while (m_bodyLeft > 0 && m_socket->bytesAvailable() > 0) {
            const QByteArray data = m_socket->read(std::min(m_bodyLeft, readPortion));
            m_bodyLeft -= data.size();
            m_body->append(data);
        }
    } catch (const Failure&) {
        throw;
    } catch (const std::exception& failure) {
        return answer(500, failure.what());
    }
    if (m_bodyLeft == 0)
        finishFile();
}

void HTTPConnection::finishFile() {
    const auto& fields = m_body->fields();
    const QByteArray format = fields.value("response_format", "verbose_json");
    const QByteArray speakers = fields.value("diarization", "true");
    if (!m_body->complete() || !m_body->hasFile())
        throw Failure("The request has no complete file");
    if (format != "verbose_json" && format != "json")
        throw Failure("The response_format must be verbose_json or json");
    if (speakers != "true" && speakers != "false")
        throw Failure("The diarization must be true or false");
    if (!m_file->seek(0))
        return answer(500, "The engine could not read the file back");
    WavReader{*m_file}; // throws before the answer has begun
    m_patience.stop();
    m_work.start(workInterval);
    m_body.reset();
    const QPointer<HTTPConnection> self(this);
    m_shared.files.start([self, file = std::exchange(m_file, {}), cancelled = m_cancelled, &models = m_shared.models,
                          wanted = speakers == "true"] {
        setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), lowPriority);
        const Answer result = transcribeFile(models, *file, wanted, *cancelled);
        QMetaObject::invokeMethod(qApp, [self, result] {
            if (self)
                self->answer(result.status, result.body);
        });
    });
}

void HTTPConnection::showWork() {
    if (!m_answerBegun)
        m_socket->write(httpHead(200, "Transfer-Encoding: chunked\r\n"));
    m_socket->write(chunk(" "));
    m_answerBegun = true;
}

void HTTPConnection::answer(int status, const QByteArray& body) {
    if (m_answered)
        return;
    m_answered = true;
    m_work.stop();
    if (m_answerBegun && status != 200)
        return m_socket->abort();
    m_patience.start(closePatience);
    m_body.reset();
    m_file.reset();
    m_socket->write(m_answerBegun ? chunk(body) + chunk({})
                                  : httpAnswer(status, body, !m_head || m_head->method != "HEAD"));
    drain();
}

void HTTPConnection::drain() {
    // Closing over unread bytes would reset the connection, and the client would never see the answer.
    m_bodyLeft -= m_socket->readAll().size();
    if (m_bodyLeft <= 0)
        m_socket->disconnectFromHost();
}

} // namespace engine
