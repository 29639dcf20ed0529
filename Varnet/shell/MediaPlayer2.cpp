#include "Varnet/shell/MediaPlayer2.h"

#include "Varnet/models/AudioPlayback.h"
#include "Varnet/models/Text.h"
#include "Varnet/platform/AppInfo.h"

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <cmath>

namespace varnet {

namespace {

const auto busName = QStringLiteral("org.mpris.MediaPlayer2.varnet");
const auto objectPath = QStringLiteral("/org/mpris/MediaPlayer2");
const auto playerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");

qlonglong microseconds(double seconds) {
    return std::llround(seconds * 1e6);
}

} // namespace

class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry CONSTANT)
    Q_PROPERTY(bool CanQuit READ yes CONSTANT)
    Q_PROPERTY(bool CanRaise READ yes CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)

public:
    ApplicationAdaptor(QObject* parent, MediaPlayerActions actions)
        : QDBusAbstractAdaptor(parent), m_actions(std::move(actions)) {}

    QString identity() const { return toQString(AppInfo::name()); }
    QString desktopEntry() const { return toQString(AppInfo::identifier()); }
    bool yes() const { return true; }
    bool no() const { return false; }
    QStringList none() const { return {}; }

public Q_SLOTS:
    void Raise() { m_actions.raise(); }
    void Quit() { m_actions.quit(); }

private:
    MediaPlayerActions m_actions;
};

class PlayerAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ status)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ minimumRate CONSTANT)
    Q_PROPERTY(double MaximumRate READ maximumRate CONSTANT)
    Q_PROPERTY(double Volume READ volume CONSTANT)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(bool CanControl READ yes CONSTANT)
    Q_PROPERTY(bool CanPlay READ yes CONSTANT)
    Q_PROPERTY(bool CanPause READ yes CONSTANT)
    Q_PROPERTY(bool CanSeek READ yes CONSTANT)
    Q_PROPERTY(bool CanGoNext READ no CONSTANT)
    Q_PROPERTY(bool CanGoPrevious READ no CONSTANT)

public:
    explicit PlayerAdaptor(MediaPlayer2& player)
        : QDBusAbstractAdaptor(&player), m_player(player), m_playback(player.m_playback) {
        connect(&m_playback, &AudioPlayback::jumped, this, [this] { Q_EMIT Seeked(position()); });
    }

    QString status() const {
        if (m_playback.playing())
            return QStringLiteral("Playing");
        const bool onTheWay = m_playback.position() > 0 && m_playback.position() < m_playback.duration();
        return onTheWay ? QStringLiteral("Paused") : QStringLiteral("Stopped");
    }
    double rate() const { return m_playback.rate(); }
    void setRate(double rate) { rate == 0 ? m_playback.pause() : m_playback.setRate(rate); } // 0 pauses, say its rules
    double minimumRate() const { return AudioPlayback::slowest; }
    double maximumRate() const { return AudioPlayback::fastest; }
    double volume() const { return 1; }
    qlonglong position() const { return microseconds(m_playback.position()); }
    QVariantMap metadata() const {
        return {{QStringLiteral("mpris:trackid"), QVariant::fromValue(track())},
                {QStringLiteral("mpris:length"), microseconds(m_playback.duration())},
                {QStringLiteral("xesam:title"), MediaPlayer2::tr("Meeting recording")}};
    }
    bool yes() const { return true; }
    bool no() const { return false; }

public Q_SLOTS:
    void Play() { m_playback.play(); }
    void Pause() { m_playback.pause(); }
    void PlayPause() { m_playback.toggle(); }
    void Stop() {
        m_playback.pause();
        m_playback.seek(0);
    }
    void Seek(qlonglong offset) { m_playback.skip(static_cast<double>(offset) / 1e6); }
    void SetPosition(const QDBusObjectPath& asked, qlonglong position) {
        // Whoever asks may not know yet that something else is loaded.
        if (asked == track() && position >= 0 && position <= microseconds(m_playback.duration()))
            m_playback.seek(static_cast<double>(position) / 1e6);
    }
    void Next() {} // CanGoNext and CanGoPrevious say that these two have no effect
    void Previous() {}

Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    QDBusObjectPath track() const {
        return QDBusObjectPath(QStringLiteral("/org/varnet/Varnet/recording/%1").arg(m_player.m_track));
    }

    MediaPlayer2& m_player;
    AudioPlayback& m_playback;
};

MediaPlayer2::MediaPlayer2(AudioPlayback& playback, MediaPlayerActions actions, QDBusConnection connection)
    : m_playback(playback), m_connection(std::move(connection)) {
    new ApplicationAdaptor(this, std::move(actions));
    new PlayerAdaptor(*this);
}

MediaPlayer2::~MediaPlayer2() {
    withdraw();
}

void MediaPlayer2::start() {
    connect(&m_playback, &AudioPlayback::loaded, this, [this] {
        ++m_track;
        m_played = false;
        follow();
    });
    connect(&m_playback, &AudioPlayback::playingChanged, this, [this] {
        m_played |= m_playback.playing();
        follow();
    });
    connect(&m_playback, &AudioPlayback::enabledChanged, this, &MediaPlayer2::follow);
    // Later, when the position fits the rest.
    for (const auto signal : {&AudioPlayback::playingChanged, &AudioPlayback::rateChanged, &AudioPlayback::jumped})
        connect(&m_playback, signal, this, &MediaPlayer2::announce, Qt::QueuedConnection);
}

void MediaPlayer2::follow() {
    if (!m_played || !m_playback.enabled())
        withdraw();
    else if (!m_published)
        publish();
}

void MediaPlayer2::publish() {
    if (!m_connection.isConnected())
        return;
    m_published = m_connection.registerObject(objectPath, this, QDBusConnection::ExportAdaptors) &&
                  m_connection.registerService(busName);
    if (m_published)
        announce();
    else
        qWarning("The media controls of the desktop cannot see the player: %s",
                 qUtf8Printable(m_connection.lastError().message()));
}

void MediaPlayer2::withdraw() {
    if (!std::exchange(m_published, false))
        return;
    m_connection.unregisterService(busName);
    m_connection.unregisterObject(objectPath);
    m_announced.clear();
}

void MediaPlayer2::announce() {
    if (!m_published)
        return;
    const auto* player = findChild<PlayerAdaptor*>();
    const QVariantMap state{{QStringLiteral("PlaybackStatus"), player->status()},
                            {QStringLiteral("Rate"), player->rate()},
                            {QStringLiteral("Metadata"), player->metadata()}};
    QVariantMap changes;
    for (auto property = state.begin(); property != state.end(); ++property)
        if (m_announced.value(property.key()) != property.value())
            changes.insert(property.key(), property.value());
    m_announced = state;
    if (changes.isEmpty())
        return;
    auto signal = QDBusMessage::createSignal(objectPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                             QStringLiteral("PropertiesChanged"));
    signal << playerInterface << changes << QStringList();
    m_connection.send(signal);
}

} // namespace varnet

#include "MediaPlayer2.moc"
