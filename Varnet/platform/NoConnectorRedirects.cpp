#include "Varnet/platform/NoConnectorRedirects.h"

#include <QNetworkRequest>

namespace varnet {

QNetworkReply* NoConnectorRedirects::createRequest(Operation operation, const QNetworkRequest& request,
                                                   QIODevice* body) {
    QNetworkRequest alone(request);
    alone.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    alone.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    alone.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    alone.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    alone.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    alone.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    return QNetworkAccessManager::createRequest(operation, alone, body);
}

} // namespace varnet
