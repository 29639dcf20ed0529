#pragma once

#include <QByteArray>
#include <QHash>

#include <optional>

namespace engine {

/// The head of an HTTP/1.1 request.
struct HTTPHead {
    static constexpr qsizetype maximumBytes = 16 * 1024;

    QByteArray method;
    QByteArray path;                       ///< without the query
    QHash<QByteArray, QByteArray> headers; ///< names in lower case
    qsizetype bytes = 0;                   ///< length of the head, its empty line included

    /// Reads the head at the start of `data`; absent while it is not complete. Throws Failure when it is malformed,
    /// longer than maximumBytes, or has a header twice.
    static std::optional<HTTPHead> parse(const QByteArray& data);

    QByteArray header(const QByteArray& name) const { return headers.value(name); }
    bool wantsWebSocket() const;
    /// True unless a page of a web site stands behind the request: it carries its own Origin or another Host.
    bool isLocal() const;
};

/// The head of an answer; the extra headers tell where its body ends.
QByteArray httpHead(int status, const QByteArray& extraHeaders);

/// A whole answer; the connection is closed after it. `body` is JSON for 200, else a sentence.
QByteArray httpAnswer(int status, const QByteArray& body, bool withBody = true);

} // namespace engine
