#include "Varnet/platform/SleepInhibitor.h"
#include "tests/support/Await.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace varnet::test {
namespace {

/// Stands on the private bus.
class LoginManager : public QDBusVirtualObject {
public:
    LoginManager() {
        EXPECT_EQ(pipe(m_pipe), 0);
        EXPECT_TRUE(bus.registerVirtualObject("/", this, QDBusConnection::SubPath));
        EXPECT_TRUE(bus.registerService("org.freedesktop.login1"));
    }
    ~LoginManager() override { QDBusConnection::disconnectFromBus(bus.name()); }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        asked = QVariantList{message.member()} + message.arguments();
        QDBusMessage reply = message.createReply();
        reply << QVariant::fromValue(QDBusUnixFileDescriptor(m_pipe[1])); // a copy
        close(m_pipe[1]);
        return connection.send(reply);
    }
    QString introspect(const QString&) const override { return {}; }

    bool lockReleased() const {
        pollfd descriptor{.fd = m_pipe[0], .events = 0, .revents = 0};
        return poll(&descriptor, 1, 0) == 1 && (descriptor.revents & POLLHUP);
    }

    QVariantList asked; ///< the method of the last call and its arguments

private:
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "services");
    int m_pipe[2];
};

TEST(SleepInhibition, HoldsTheLoginManagersLockUntilDestroyed) {
    LoginManager manager;
    auto inhibitor = await(SleepInhibitor::take("Recording a meeting"));
    ASSERT_TRUE(inhibitor);
    EXPECT_EQ(manager.asked, (QVariantList{"Inhibit", "sleep:idle", "Zelvik", "Recording a meeting", "block"}));
    settle();
    EXPECT_FALSE(manager.lockReleased());
    inhibitor.reset();
    EXPECT_TRUE(eventually([&] { return manager.lockReleased(); }));
}

TEST(SleepInhibition, IsNullWhenNobodyGrantsIt) {
    EXPECT_FALSE(await(SleepInhibitor::take("Recording a meeting")));
}

} // namespace
} // namespace varnet::test
