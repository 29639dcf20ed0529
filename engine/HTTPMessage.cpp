#include "engine/HTTPMessage.h"

#include "engine/Failure.h"

#include <QUrl>

namespace engine {
namespace {

constexpr int maximumHeaders = 64;

bool isLoopbackName(const QString& host) {
    return host == "127.0.0.1" || host == "localhost" || host == "::1";
}

const char* reason(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 411:
        return "Length Required";
    case 413:
        return "Content Too Large";
    case 426:
        return "Upgrade Required";
    case 503:
        return "Service Unavailable";
    default:
        return "Internal Server Error";
    }
}

} // namespace

std::optional<HTTPHead> HTTPHead::parse(const QByteArray& data) {
    const qsizetype end = data.indexOf("\r\n\r\n");
    if (end < 0 && data.size() < maximumBytes)
        return {};
    if (end < 0 || end + 4 > maximumBytes)
        throw Failure("The request's head is too long");
    const QList<QByteArray> lines = data.left(end).replace("\r\n", "\n").split('\n');
    const QList<QByteArray> request = lines.first().split(' ');
    if (request.size() != 3 || !request[2].startsWith("HTTP/1.") || !request[1].startsWith('/'))
        throw Failure("This is not an HTTP request");
    HTTPHead head{request[0], request[1].split('?').first(), {}, end + 4};
    if (lines.size() > maximumHeaders)
        throw Failure("The request has too many headers");
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        const QByteArray name = line.left(colon).toLower();
        if (colon <= 0 || name != name.trimmed() || head.headers.contains(name))
            throw Failure("The request has a malformed header");
        head.headers.insert(name, line.mid(colon + 1).trimmed());
    }
    return head;
}

bool HTTPHead::wantsWebSocket() const {
    return header("upgrade").toLower() == "websocket";
}

bool HTTPHead::isLocal() const {
    const QUrl host("http://" + QString::fromLatin1(header("host")));
    const QByteArray origin = header("origin");
    return isLoopbackName(host.host()) &&
           (origin.isEmpty() || isLoopbackName(QUrl(QString::fromLatin1(origin)).host()));
}

QByteArray httpHead(int status, const QByteArray& extraHeaders) {
    QByteArray head = "HTTP/1.1 " + QByteArray::number(status) + ' ' + reason(status) + "\r\nContent-Type: ";
    head += status == 200 ? "application/json" : "text/plain; charset=utf-8";
    return head + "\r\n" + extraHeaders + "Connection: close\r\n\r\n";
}

QByteArray httpAnswer(int status, const QByteArray& body, bool withBody) {
    const QByteArray head = httpHead(status, "Content-Length: " + QByteArray::number(body.size()) + "\r\n");
    return withBody ? head + body : head;
}

} // namespace engine
