#include "Varnet/models/AudioPlayback.h"
#include "Varnet/shell/MediaPlayer2.h"
#include "Varnet/store/MeetingStore.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <gtest/gtest.h>

namespace varnet::test {

/// The desktop's media controls, on a connection of their own.
class MediaControls : public QObject, public testing::Test {
    Q_OBJECT

public Q_SLOTS:
    void seeked(qlonglong position) { seeks.push_back(position); }
    void changed(const QString&, const QVariantMap& properties, const QStringList&) { known.insert(properties); }

protected:
    MediaControls() {
        Meeting meeting = Meeting::make("Salaries of the board");
        meeting.audioFilename = "meeting.wav";
        MeetingRepository(folder.path()).save(meeting);
        writeRecording(MeetingRepository(folder.path()).directory(meeting.id) / "meeting.wav",
                       std::vector<std::int16_t>(100 * 16'000, 1'000));
        StoreParts parts;
        parts.speechURL = QUrl("http://127.0.0.1:1"); // nobody
        store = std::make_unique<MeetingStore>(folder.path(), parts);
        playback = std::make_unique<AudioPlayback>(*store);
        bus.connect(name, path, player, "Seeked", this, SLOT(seeked(qlonglong)));
        bus.connect(name, path, "org.freedesktop.DBus.Properties", "PropertiesChanged", this,
                    SLOT(changed(QString, QVariantMap, QStringList)));
    }
    ~MediaControls() override { QDBusConnection::disconnectFromBus(bus.name()); }

    /// The answer to a call; an error when nobody is there.
    QDBusMessage call(const QString& interface, const QString& method, const QVariantList& arguments = {}) {
        auto message = QDBusMessage::createMethodCall(name, path, interface, method);
        message.setArguments(arguments);
        const auto reply = bus.asyncCall(message);
        eventually([&] { return reply.isFinished(); });
        return reply.reply();
    }
    void press(const QString& method, const QVariantList& arguments = {}) {
        const auto answer = call(player, method, arguments);
        EXPECT_EQ(answer.type(), QDBusMessage::ReplyMessage) << qPrintable(method + ": " + answer.errorMessage());
    }
    QVariantMap all(const QString& interface) {
        const QDBusPendingReply<QVariantMap> reply = call("org.freedesktop.DBus.Properties", "GetAll", {interface});
        return reply.value();
    }
    double position() { return all(player)["Position"].toDouble() / 1e6; }
    bool told(const QString& property, const QVariant& value) {
        return eventually([&] { return known[property] == value; });
    }
    bool there() { return bus.interface()->isServiceRegistered(name); }

    const QString name = "org.mpris.MediaPlayer2.varnet", path = "/org/mpris/MediaPlayer2",
                  player = "org.mpris.MediaPlayer2.Player";
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "controls");
    TemporaryFolder folder;
    std::unique_ptr<MeetingStore> store;
    std::unique_ptr<AudioPlayback> playback;
    std::vector<qlonglong> seeks;
    QVariantMap known; ///< what the signals told last
};

namespace {

TEST_F(MediaControls, DriveWhatPlays) {
    int raised = 0;
    MediaPlayer2 mpris(*playback, {.raise = [&raised] { ++raised; }, .quit = [] {}});
    mpris.start();
    ASSERT_TRUE(playback->present());
    EXPECT_FALSE(there()) << "nobody has played it";
    playback->toggle();
    ASSERT_TRUE(there());
    press("Stop");
    ASSERT_TRUE(told("PlaybackStatus", "Stopped"));
    call("org.mpris.MediaPlayer2", "Raise");
    EXPECT_EQ(raised, 1);
    EXPECT_EQ(all("org.mpris.MediaPlayer2")["DesktopEntry"], "org.varnet.Varnet");
    EXPECT_EQ(position(), 0);

    press("Play");
    ASSERT_TRUE(told("PlaybackStatus", "Playing"));
    ASSERT_TRUE(eventually([&] { return position() > 0.1; })) << "the sound server plays it";
    seeks.clear();
    press("Seek", {qlonglong{30'000'000}});
    ASSERT_EQ(seeks.size(), 1u);
    EXPECT_NEAR(static_cast<double>(seeks[0]) / 1e6, 30.1, 5);
    press("PlayPause");
    ASSERT_TRUE(told("PlaybackStatus", "Paused"));
    const double place = position();
    EXPECT_GE(place, 30);

    const auto metadata = qdbus_cast<QVariantMap>(all(player)["Metadata"]);
    EXPECT_EQ(metadata["mpris:length"], 100'000'000);
    EXPECT_EQ(metadata["xesam:title"], "Meeting recording") << "not that of the meeting";
    const auto track = metadata["mpris:trackid"];
    press("SetPosition", {QVariant::fromValue(QDBusObjectPath("/another")), qlonglong{70'000'000}});
    press("SetPosition", {track, qlonglong{100'000'001}});
    EXPECT_EQ(position(), place);
    press("SetPosition", {track, qlonglong{70'000'000}});
    EXPECT_EQ(position(), 70);
    call("org.freedesktop.DBus.Properties", "Set", {player, "Rate", QVariant::fromValue(QDBusVariant(1.5))});
    ASSERT_TRUE(told("Rate", 1.5));

    const auto played = store->selectedID();
    await(store->startRecording());
    ASSERT_TRUE(store->recording());
    store->setSelectedID(played);
    EXPECT_FALSE(there()) << "a recording of the call is one of what is played";
    await(store->stopRecording());
    playback->play();
    EXPECT_TRUE(there());
    store->setSelectedID({});
    EXPECT_FALSE(there());
}

} // namespace
} // namespace varnet::test

#include "MediaPlayer2Tests.moc"
