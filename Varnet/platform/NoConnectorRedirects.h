#pragma once

#include <QNetworkAccessManager>

namespace varnet {

/// Network access for clients that send a secret along. Whatever a request asks for, it follows no redirect (the
/// redirect's status is the reply), so that the secret reaches nobody but the server that it was meant for; and it
/// neither takes nor leaves cookies, cached answers or credentials. Main thread.
class NoConnectorRedirects : public QNetworkAccessManager {
public:
    using QNetworkAccessManager::QNetworkAccessManager;

protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request,
                                 QIODevice* body = nullptr) override;
};

} // namespace varnet
