#include "Varnet/platform/LoopbackHTTP.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Waits.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>

namespace varnet {

namespace {

QNetworkRequest plainRequest(const QUrl& url) {
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // Otherwise Qt asks for compression and unpacks it, and the bound would not be one of memory.
    request.setRawHeader("Accept-Encoding", "identity");
    return request;
}

/// Whether the exchange was complete and it is only its status that Qt takes for an error.
bool isComplete(const QNetworkReply& reply) {
    const int error = reply.error();
    const bool ofStatus =
        (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
        (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
    return error == QNetworkReply::NoError || ofStatus;
}

Failure transportFailure(const QUrl& url, const QString& reason) {
    return Failure(QStringLiteral("%1 did not answer: %2").arg(url.toDisplayString(), reason).toStdString());
}

} // namespace

bool isLoopback(const QUrl& url) {
    const QString host = url.host();
    return host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 || QHostAddress(host).isLoopback();
}

LoopbackHTTP::LoopbackHTTP(std::int64_t maximumBodyBytes)
    : m_maximumBodyBytes(maximumBodyBytes), m_manager(std::make_unique<QNetworkAccessManager>()) {
    m_manager->setProxy(QNetworkProxy::NoProxy);
}

LoopbackHTTP::~LoopbackHTTP() = default;

Task<HTTPReply> LoopbackHTTP::get(QUrl url, std::chrono::milliseconds timeout, std::stop_token stop) {
    if (url.scheme() != QLatin1String("http") || !isLoopback(url))
        throw Failure(url.toDisplayString().toStdString() + " is not an address of this machine.");
    const std::int64_t limit = m_maximumBodyBytes;
    const QPointer<QNetworkReply> reply(m_manager->get(plainRequest(url)));
    reply->setReadBufferSize(limit + 1);
    bool tooLarge = false;
    QObject context;
    QObject::connect(reply, &QNetworkReply::readyRead, &context, [reply, limit, &tooLarge] {
        tooLarge = reply->bytesAvailable() > limit;
        if (tooLarge)
            reply->abort();
    });
    // The client may be gone after this, and the reply with it.
    const WaitOutcome outcome = co_await waitForFinished(reply.data(), timeout, stop);
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
        throw transportFailure(url, reply->errorString());
    co_return HTTPReply{status, reply->readAll().toStdString()};
}

} // namespace varnet
