#include "Varnet/platform/SleepInhibitor.h"

#include "Varnet/platform/AppInfo.h"

#include <QCoro/QCoroDBusPendingReply>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDebug>

namespace varnet {

namespace {

constexpr int replyTimeout = 5'000; // milliseconds

/// The login manager's lock lasts as long as this descriptor is open.
class LoginLock final : public SleepInhibitor {
public:
    explicit LoginLock(const QDBusUnixFileDescriptor& descriptor) : m_descriptor(descriptor) {}

private:
    QDBusUnixFileDescriptor m_descriptor;
};

/// The portal's request lasts until it is closed.
class PortalRequest final : public SleepInhibitor {
public:
    explicit PortalRequest(QString path) : m_path(std::move(path)) {}
    ~PortalRequest() override {
        QDBusConnection::sessionBus().send(
            QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.portal.Desktop"), m_path,
                                           QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Close")));
    }

private:
    QString m_path;
};

QDBusMessage loginRequest(const QString& reason) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep:idle") << QString::fromStdString(AppInfo::name()) << reason
         << QStringLiteral("block");
    return call;
}

QDBusMessage portalRequest(const QString& reason) {
    constexpr quint32 suspend = 4;
    constexpr quint32 idle = 8;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Inhibit"), QStringLiteral("Inhibit"));
    call << QString() << (suspend | idle) << QVariantMap{{QStringLiteral("reason"), reason}};
    return call;
}

} // namespace

Task<std::unique_ptr<SleepInhibitor>> SleepInhibitor::take(QString reason) {
    const QDBusPendingReply<QDBusUnixFileDescriptor> lock =
        QDBusConnection::systemBus().asyncCall(loginRequest(reason), replyTimeout);
    co_await lock;
    if (lock.isValid() && lock.value().isValid())
        co_return std::make_unique<LoginLock>(lock.value());

    const QDBusPendingReply<QDBusObjectPath> request =
        QDBusConnection::sessionBus().asyncCall(portalRequest(reason), replyTimeout);
    co_await request;
    if (request.isValid())
        co_return std::make_unique<PortalRequest>(request.value().path());

    qWarning("The machine may fall asleep: the login manager said \"%s\", the portal \"%s\"",
             qUtf8Printable(lock.error().message()), qUtf8Printable(request.error().message()));
    co_return std::unique_ptr<SleepInhibitor>();
}

} // namespace varnet
