#include "tests/support/TestServer.h"

#include "MeetingCore/base/Assert.h"

#include <QHostAddress>

#include <memory>
#include <optional>

namespace varnet::test {

namespace {

/// Takes a request's head off the front of `buffer`; absent until all of it is there.
std::optional<TestServer::Request> takeHead(QByteArray& buffer) {
    const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return std::nullopt;
    QList<QByteArray> lines = buffer.left(headEnd).split('\n');
    const QList<QByteArray> start = lines.takeFirst().trimmed().split(' ');
    VARNET_ASSERT(start.size() == 3);
    TestServer::Request request{start[0], start[1], {}, {}};
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
    }
    buffer.remove(0, headEnd + 4);
    return request;
}

} // namespace

TestServer::TestServer() {
    answer(response(404, "no such thing"));
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            read(*socket);
    });
    VARNET_ASSERT(m_server.listen(QHostAddress::LocalHost));
}

QUrl TestServer::url(const QString& path) const {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path));
}

void TestServer::answer(const QByteArray& raw) {
    m_script = [raw](const Request&, QTcpSocket& socket) {
        socket.write(raw);
        socket.disconnectFromHost();
    };
}

QByteArray TestServer::response(int status, const QByteArray& body, const QByteArray& extraHeaders) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Scripted\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + extraHeaders + "\r\n" + body;
}

void TestServer::read(QTcpSocket& socket) {
    struct Incoming {
        QByteArray buffer; // what has not been taken yet
        std::optional<Request> request;
    };
    socket.setReadBufferSize(256 * 1024);
    const auto incoming = std::make_shared<Incoming>();
    QObject::connect(&socket, &QTcpSocket::disconnected, &socket, &QObject::deleteLater);
    QObject::connect(&socket, &QTcpSocket::readyRead, &m_server, [this, &socket, incoming] {
        auto& [buffer, request] = *incoming;
        if (request && m_stopsAtHeads)
            return;
        buffer += socket.readAll();
        while (request || (request = takeHead(buffer))) {
            const qint64 left = request->headers["content-length"].toLongLong() - request->body.size();
            const QByteArray part = buffer.left(left);
            buffer.remove(0, part.size());
            request->body += part;
            if (part.size() < left && !m_stopsAtHeads)
                return;
            m_requests.push_back(*request);
            m_script(m_requests.back(), socket);
            if (m_stopsAtHeads)
                return;
            request.reset();
        }
    });
}

} // namespace varnet::test
