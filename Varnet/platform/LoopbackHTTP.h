#pragma once

#include "Varnet/async/Task.h"

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>

namespace varnet {

class FileBody;
class NoConnectorRedirects;

/// What a server answered, whatever the status says.
struct HTTPReply {
    int status = 0;
    std::string body;

    bool operator==(const HTTPReply&) const = default;
};

/// What is said about a body that is sent. Each is one line.
struct BodyHeaders {
    QByteArray contentType;
    QByteArray authorization = {}; ///< a secret: it stands in this request and nowhere else; none when empty
};

/// The URL with `path` behind the path that it has.
QUrl appendingPath(QUrl baseURL, const QString& path);

/// Whether the URL's host is this machine itself: 127.0.0.0/8, ::1 or "localhost". Asks no name service.
bool isLoopback(const QUrl& url);

/// The HTTP client for the engines of this machine. It follows no redirect (the redirect's status is the reply), shares
/// no cookies, cache or credentials, uses no proxy, and ends an exchange whose body goes beyond its bound. Main thread.
class LoopbackHTTP {
public:
    explicit LoopbackHTTP(std::int64_t maximumBodyBytes = 16 * 1024 * 1024);
    ~LoopbackHTTP();
    LoopbackHTTP(const LoopbackHTTP&) = delete;
    LoopbackHTTP& operator=(const LoopbackHTTP&) = delete;

    /// Fetches an http URL of a loopback host; `timeout` bounds the whole exchange. Throws Failure when the URL is of
    /// another kind, the exchange fails or takes too long, or the body is too large; Cancelled when `stop` was
    /// requested or this client is gone.
    Task<HTTPReply> get(QUrl url, std::chrono::milliseconds timeout, std::stop_token stop = {});

    /// Sends the body in one request with its Content-Length, never a second time, and waits for the answer. `silence`
    /// bounds the time in which no byte moves either way. Throws as `get` does, and the body's failure when its file
    /// cannot be read to the end.
    Task<HTTPReply> post(QUrl url, BodyHeaders headers, std::unique_ptr<FileBody> body,
                         std::chrono::milliseconds silence, std::stop_token stop = {});

private:
    std::int64_t m_maximumBodyBytes;
    std::unique_ptr<NoConnectorRedirects> m_manager;
};

} // namespace varnet
