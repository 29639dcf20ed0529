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

/// Stands for the login manager on the private bus.
class Services : public QDBusVirtualObject {
public:
    Services() {
        EXPECT_EQ(pipe(m_pipe), 0);
        EXPECT_TRUE(bus.registerVirtualObject("/", this, QDBusConnection::SubPath));
    }
    ~Services() override { QDBusConnection::disconnectFromBus(bus.name()); }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        calls[message.interface().section('.', -1) + '.' + message.member()] = message.arguments();
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

    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "services");
    QMap<QString, QVariantList> calls; ///< the arguments of the last call of each method

private:
    int m_pipe[2];
};

TEST(SleepInhibition, HoldsTheLoginManagersLockUntilDestroyed) {
    Services services;
    ASSERT_TRUE(services.bus.registerService("org.freedesktop.login1"));
    auto inhibitor = await(SleepInhibitor::take("Recording a meeting"));
    ASSERT_TRUE(inhibitor);
    EXPECT_EQ(services.calls["Manager.Inhibit"],
              (QVariantList{"sleep:idle", "Zelvik", "Recording a meeting", "block"}));
    settle();
    EXPECT_FALSE(services.lockReleased());
    inhibitor.reset();
    EXPECT_TRUE(eventually([&] { return services.lockReleased(); }));
}

TEST(SleepInhibition, IsNullWhenNobodyGrantsIt) {
    EXPECT_FALSE(await(SleepInhibitor::take("Recording a meeting")));
}

} // namespace
} // namespace varnet::test
