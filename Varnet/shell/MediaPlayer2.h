#pragma once

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace varnet {

class AudioPlayback;

/// What the desktop's media controls may ask beside playing.
struct MediaPlayerActions {
    std::function<void()> raise; ///< the window comes up and forward
    std::function<void()> quit;
};

/// The player for the desktop's media keys and controls (MPRIS): org.mpris.MediaPlayer2.varnet on the session bus, with
/// the interfaces of the player and of its application. It is there from when a meeting's audio was first played in the
/// window until another meeting is selected or a recording starts: a media key goes on with what somebody chose to
/// hear, and never plays a meeting into the room that was only looked at. The controls also show on a locked screen, so
/// that neither the title of a meeting nor the place of a file goes on the bus. A position is worked out when it is
/// asked for. Taking the name and giving it back waits for the bus, a millisecond or so. Main thread; the playback must
/// outlive it.
class MediaPlayer2 : public QObject {
    Q_OBJECT

public:
    explicit MediaPlayer2(AudioPlayback& playback, MediaPlayerActions actions,
                          QDBusConnection connection = QDBusConnection::sessionBus());
    ~MediaPlayer2() override;

    /// Begins to follow the playback. Until then nothing is on the bus, for it takes time at the start.
    void start();

private:
    void follow();
    void publish();
    void withdraw();
    void announce(); ///< what has changed since it was announced last

    AudioPlayback& m_playback;
    QDBusConnection m_connection;
    QVariantMap m_announced;
    int m_track = 0;       ///< counts what was loaded
    bool m_played = false; ///< has what is loaded been
    bool m_published = false;

    friend class PlayerAdaptor;
};

} // namespace varnet
