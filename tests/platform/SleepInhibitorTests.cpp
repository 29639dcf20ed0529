#include "Varnet/platform/SleepInhibitor.h"
#include "tests/support/Await.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace varnet::test {

/// Stands for the login manager on the private bus.
class LoginManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")
public:
    LoginManager() { EXPECT_EQ(pipe(m_pipe), 0); }
    ~LoginManager() override { close(m_pipe[0]); }

    QStringList asked;
    bool granted = true;

    bool released() const {
        pollfd descriptor{.fd = m_pipe[0], .events = 0, .revents = 0};
        return poll(&descriptor, 1, 0) == 1 && (descriptor.revents & POLLHUP);
    }

public Q_SLOTS:
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why, const QString& mode) {
        asked = {what, who, why, mode};
        QDBusUnixFileDescriptor lock(m_pipe[1]); // a copy; the bus passes it on with the reply
        close(m_pipe[1]);
        if (!granted)
            sendErrorReply(QDBusError::AccessDenied);
        return lock;
    }

private:
    int m_pipe[2];
};

/// Stands for the desktop portal and for the one request that it hands out.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Inhibit")
public:
    quint32 flags = 0;
    QVariantMap options;

public Q_SLOTS:
    QDBusObjectPath Inhibit(const QString&, quint32 what, const QVariantMap& with) {
        flags = what;
        options = with;
        return QDBusObjectPath(QStringLiteral("/request/1"));
    }
};

class PortalRequest : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")
public:
    bool closed = false;

public Q_SLOTS:
    void Close() { closed = true; }
};

namespace {

struct SleepInhibition : testing::Test {
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("services"));
    LoginManager login;
    Portal portal;
    PortalRequest request;

    ~SleepInhibition() override { QDBusConnection::disconnectFromBus(bus.name()); }

    void serve(const QString& name, const QString& path, QObject& object) {
        ASSERT_TRUE(bus.registerObject(path, &object, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(bus.registerService(name));
    }
    void serveLogin() {
        serve(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"), login);
    }
    void servePortal() {
        ASSERT_TRUE(bus.registerObject(QStringLiteral("/request/1"), &request, QDBusConnection::ExportAllSlots));
        serve(QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
              portal);
    }
};

TEST_F(SleepInhibition, HoldsTheLoginManagersLockUntilDestroyed) {
    serveLogin();
    auto inhibitor = await(SleepInhibitor::take(QStringLiteral("Recording a meeting")));
    ASSERT_TRUE(inhibitor);
    EXPECT_EQ(login.asked, (QStringList{QStringLiteral("sleep:idle"), QStringLiteral("Zelvik"),
                                        QStringLiteral("Recording a meeting"), QStringLiteral("block")}));
    settle();
    EXPECT_FALSE(login.released());
    inhibitor.reset();
    EXPECT_TRUE(eventually([&] { return login.released(); }));
}

TEST_F(SleepInhibition, AsksThePortalWhenTheLoginManagerRefuses) {
    serveLogin();
    servePortal();
    login.granted = false;
    auto inhibitor = await(SleepInhibitor::take(QStringLiteral("Recording a meeting")));
    ASSERT_TRUE(inhibitor);
    EXPECT_EQ(portal.flags, 12u);
    EXPECT_EQ(portal.options.value(QStringLiteral("reason")).toString(), QStringLiteral("Recording a meeting"));
    EXPECT_FALSE(request.closed);
    inhibitor.reset();
    EXPECT_TRUE(eventually([&] { return request.closed; }));
}

TEST_F(SleepInhibition, IsNullWhenNobodyGrantsIt) {
    EXPECT_FALSE(await(SleepInhibitor::take(QStringLiteral("Recording a meeting"))));
}

} // namespace
} // namespace varnet::test

#include "SleepInhibitorTests.moc"
