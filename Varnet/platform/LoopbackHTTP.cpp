#include "Varnet/platform/LoopbackHTTP.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Waits.h"
#include "Varnet/platform/FileBody.h"
#include "Varnet/platform/NoConnectorRedirects.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkReply>

namespace varnet {

namespace {

QNetworkRequest plainRequest(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Otherwise Qt asks for compression and unpacks it, and the bound would not be one of memory.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

/// Whether the exchange was complete and it is only its status that Qt takes for an error.
bool isComplete(const QNetworkReply& reply) {
    const int error = reply.error();
    const bool ofStatus =
        error == QNetworkReply::ProtocolInvalidOperationError ||    // 400
        error == QNetworkReply::ProxyAuthenticationRequiredError || // 407
        (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
        (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
    return error == QNetworkReply::NoError || ofStatus;
}

/// Whether the server closed the connection, for which Qt has no words or, as nothing is sent twice, the wrong ones.
bool isCutOff(const QNetworkReply& reply) {
    return reply.error() == QNetworkReply::NoError || reply.error() == QNetworkReply::ContentReSendError;
}

Failure transportFailure(const QUrl& url, const QString& reason) {
    return Failure(QStringLiteral("%1 did not answer: %2").arg(url.toDisplayString(), reason).toStdString());
}

void requireLoopback(const QUrl& url) {
    if (url.scheme() != QLatin1String("http") || !isLoopback(url))
        throw Failure(url.toDisplayString().toStdString() + " is not an address of this machine.");
}

/// How long an exchange may take.
struct Patience {
    std::chrono::milliseconds limit;
    bool startsAnew; ///< with every byte that moves
};

/// Waits until the reply has ended. Its signals are watched from here on, so it must be a new one.
Task<WaitOutcome> waitFor(QPointer<QNetworkReply> reply, Patience patience, std::stop_token stop) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point begun = Clock::now();
    QObject context;
    if (patience.startsAnew) {
        const auto moved = [&begun] { begun = Clock::now(); };
        QObject::connect(reply, &QNetworkReply::uploadProgress, &context, moved);
        QObject::connect(reply, &QNetworkReply::readyRead, &context, moved);
    }
    WaitOutcome outcome = WaitOutcome::timedOut;
    for (auto left = begun + patience.limit - Clock::now(); outcome == WaitOutcome::timedOut && left.count() > 0;
         left = begun + patience.limit - Clock::now())
        outcome = co_await waitForFinished(reply.data(), left, stop);
    co_return outcome;
}

Task<HTTPReply> completed(QPointer<QNetworkReply> reply, Patience patience, std::int64_t limit, std::stop_token stop) {
    const QUrl url = reply->url();
    reply->setReadBufferSize(limit + 1);
    bool tooLarge = false;
    QObject context;
    QObject::connect(reply, &QNetworkReply::readyRead, &context, [reply, limit, &tooLarge] {
        tooLarge = reply->bytesAvailable() > limit;
        if (tooLarge)
            reply->abort();
    });
    // The client may be gone after this, and the reply with it.
    const WaitOutcome outcome = co_await waitFor(reply, patience, std::move(stop));
    if (outcome == WaitOutcome::destroyed)
        throw Cancelled();
    reply->deleteLater();
    if (outcome != WaitOutcome::fired) {
        reply->abort();
        if (outcome == WaitOutcome::stopped)
            throw Cancelled();
        throw transportFailure(url, QStringLiteral("it took too long."));
    }
    if (tooLarge || reply->bytesAvailable() > limit)
        throw transportFailure(url, QStringLiteral("it sent more than %1 bytes.").arg(limit));
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!isComplete(*reply) || status == 0)
        throw transportFailure(url,
                               isCutOff(*reply) ? QStringLiteral("it closed the connection.") : reply->errorString());
    co_return HTTPReply{status, reply->readAll().toStdString()};
}

} // namespace

QUrl appendingPath(QUrl baseURL, const QString& path) {
    QString base = baseURL.path();
    while (base.endsWith(QLatin1Char('/')))
        base.chop(1);
    baseURL.setPath(base + QLatin1Char('/') + path);
    return baseURL;
}

bool isLoopback(const QUrl& url) {
    const QString host = url.host();
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 || QHostAddress(host).isLoopback();
}

LoopbackHTTP::LoopbackHTTP(std::int64_t maximumBodyBytes)
    : m_maximumBodyBytes(maximumBodyBytes), m_manager(std::make_unique<NoConnectorRedirects>()) {
    m_manager->setProxy(QNetworkProxy::NoProxy);
}

LoopbackHTTP::~LoopbackHTTP() = default;

Task<HTTPReply> LoopbackHTTP::get(QUrl url, std::chrono::milliseconds timeout, std::stop_token stop) {
    requireLoopback(url);
    co_return co_await completed(m_manager->get(plainRequest(url)), {timeout, false}, m_maximumBodyBytes,
                                 std::move(stop));
}

Task<HTTPReply> LoopbackHTTP::post(QUrl url, BodyHeaders headers, std::unique_ptr<FileBody> body,
                                   std::chrono::milliseconds silence, std::stop_token stop) {
    requireLoopback(url);
    QNetworkRequest request = plainRequest(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, headers.contentType);
    if (!headers.authorization.isEmpty())
        request.setRawHeader("Authorization", headers.authorization);
    QNetworkReply* reply = m_manager->post(request, body.get());
    const QPointer<FileBody> sent(body.release());
    sent->setParent(reply); // which may still read after it has been called off
    try {
        co_return co_await completed(reply, {silence, true}, m_maximumBodyBytes, std::move(stop));
    } catch (const Failure&) {
        if (sent && sent->failure())
            std::rethrow_exception(sent->failure());
        throw;
    }
}

} // namespace varnet
