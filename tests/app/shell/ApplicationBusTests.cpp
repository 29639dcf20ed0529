#include "Varnet/shell/ApplicationBus.h"
#include "tests/support/Await.h"

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

/// A session bus for one test.
class Bus : public ::testing::Test {
public:
    Bus() {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address=1"});
        m_daemon.waitForReadyRead(10'000);
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~Bus() override {
        QDBusConnection::disconnectFromBus("program");
        QDBusConnection::disconnectFromBus("caller");
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }

protected:
    QDBusConnection connection(const QString& name) { return QDBusConnection::connectToBus(m_address, name); }

    /// Calls as another program does; the answer's error name, empty when it worked.
    QString call(const QString& method, const QVariantList& arguments) {
        auto message = QDBusMessage::createMethodCall("org.varnet.Varnet", "/org/varnet/Varnet",
                                                      "org.freedesktop.Application", method);
        message.setArguments(arguments);
        auto pending = connection("caller").asyncCall(message);
        eventually([&] { return pending.isFinished(); });
        return pending.reply().errorName();
    }

private:
    QProcess m_daemon;
    QString m_address;
};

} // namespace

TEST_F(Bus, CarriesTheActionsOfTheApplication) {
    QStringList heard;
    ApplicationBus bus({.show = [&] { heard << "show"; },
                        .importFiles = [&](const QList<QUrl>& files) { heard << QUrl::toStringList(files); },
                        .toggleRecording = [&] { heard << "toggle"; },
                        .quit = [&] { heard << "quit"; }},
                       connection("program"));
    ASSERT_EQ(bus.registerName(), ApplicationBus::Registration::registered);
    EXPECT_EQ(ApplicationBus::owner(connection("caller")), getpid());

    const QVariantMap platform;
    EXPECT_EQ(call("Activate", {platform}), "");
    for (const char* action : {"toggle-recording", "show", "quit"})
        EXPECT_EQ(call("ActivateAction", {action, QVariantList(), platform}), "");
    EXPECT_EQ(heard, (QStringList{"show", "toggle", "show", "quit"}));
    EXPECT_EQ(call("ActivateAction", {"dance", QVariantList(), platform}), "org.freedesktop.DBus.Error.InvalidArgs");
    heard.clear();
    EXPECT_EQ(call("Open", {QStringList{"file:///a.wav", "file:///b.wav"}, platform}), "");
    EXPECT_EQ(call("Open", {QStringList{"http://c.d/e.wav", "file:///f.wav"}, platform}),
              "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(heard, (QStringList{"show", "file:///a.wav", "file:///b.wav", "show", "file:///f.wav"}));
}

TEST_F(Bus, TheNameBelongsToOneProgramAndABusIsNotNeeded) {
    using enum ApplicationBus::Registration;
    ApplicationBus first({}, connection("program")), second({}, connection("caller")),
        alone({}, QDBusConnection("no such connection"));
    EXPECT_EQ(first.registerName(), registered);
    EXPECT_EQ(second.registerName(), nameTaken);
    EXPECT_EQ(alone.registerName(), noBus);
}

} // namespace varnet::test
