#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>
#include <map>
#include <vector>

namespace varnet::test {

/// A scriptable HTTP server on 127.0.0.1. It reads whole requests and answers each with the bytes that the script
/// says, also with ones that are no HTTP at all.
class TestServer {
public:
    struct Request {
        QByteArray method;
        QByteArray target;
        std::map<QByteArray, QByteArray> headers; ///< names in lower case
        QByteArray body;
    };
    /// What to do with a request: write to the socket, close it, keep it, or nothing.
    using Script = std::function<void(const Request&, QTcpSocket&)>;

    /// Answers 404 until it is told otherwise.
    TestServer();

    QUrl url(const QString& path) const;

    void setScript(Script script) { m_script = std::move(script); }
    /// Every request gets these bytes, and the connection is closed after them.
    void answer(const QByteArray& raw);

    const std::vector<Request>& requests() const { return m_requests; }

    /// From now on the script runs as soon as a request's head is there, and the server reads no further.
    void stopAtHeads() { m_stopsAtHeads = true; }

    /// A complete response with its Content-Length.
    static QByteArray response(int status, const QByteArray& body, const QByteArray& extraHeaders = {});

private:
    void read(QTcpSocket& socket);

    Script m_script;
    bool m_stopsAtHeads = false;
    std::vector<Request> m_requests;
    QTcpServer m_server;
};

} // namespace varnet::test
