#pragma once

#include "Varnet/async/TaskScope.h"
#include "Varnet/platform/AudioCapture.h"
#include "Varnet/platform/AudioOutput.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace varnet {

/// Listens to one source of sound, to find out whether it is heard; nothing of it is kept. One capture runs at a time,
/// and none when nothing is listened to. Main thread.
class SoundCheck : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(double level READ level NOTIFY levelChanged FINAL)
    Q_PROPERTY(bool listening READ listening NOTIFY changed FINAL)
    Q_PROPERTY(bool heard READ heard NOTIFY changed FINAL)
    Q_PROPERTY(bool failed READ failed NOTIFY changed FINAL)
    Q_PROPERTY(QString words READ words NOTIFY changed FINAL)
    Q_PROPERTY(int tone READ tone NOTIFY changed FINAL)

public:
    using MakeCapture = std::function<std::unique_ptr<AudioCapture>()>;
    using MakeOutput = std::function<std::unique_ptr<AudioOutput>(AudioOutput::Callbacks)>;

    enum class State {
        off,       ///< nothing is listened to
        starting,  ///< the capture is on its way up
        listening, ///< nothing has been heard yet
        heard,     ///< sound clearly above silence has come in since the start
        failed,    ///< `words` says why; nothing runs
    };

    explicit SoundCheck(MakeCapture makeCapture = makeAudioCapture, MakeOutput makeOutput = makeAudioOutput,
                        QObject* parent = nullptr);
    ~SoundCheck() override; ///< a start or a stop that is under way ends by itself afterwards

    /// Listens to that source from now on, in place of any other, or to nothing. The same source again changes nothing.
    void listenTo(std::optional<CaptureSource> source);

    State state() const { return m_state; }
    double level() const; ///< 0 to 1 along the meter; some 12 changes a second while there is sound
    bool listening() const { return m_state != State::off && !failed(); } ///< or getting ready to
    bool heard() const { return m_state == State::heard; }
    bool failed() const { return m_state == State::failed; }
    QString words() const; ///< the state as a sentence
    int tone() const;      ///< an index into Theme.tones

    Q_INVOKABLE void tryAgain(); ///< after a failure
    /// Plays a soft sound on the default output, while that is what is listened to.
    Q_INVOKABLE void playTestSound();

Q_SIGNALS:
    void levelChanged();
    void changed();

private:
    struct Run;

    void begin();
    static Task<> work(SoundCheck* self, std::stop_token gone);
    static Task<> stop(Run* run); ///< never throws
    void enter(State state, const QString& problem = {});
    void readLevel();
    void setLevel(float level);
    std::filesystem::path testFile() const;

    const MakeCapture m_makeCapture;
    const MakeOutput m_makeOutput;
    std::optional<CaptureSource> m_source;
    State m_state = State::off;
    QString m_problem; ///< of the capture or of the test sound
    float m_level = 0; ///< root mean square
    int m_soundTicks = 0;
    QTimer m_timer;
    bool m_working = false;
    std::shared_ptr<Run> m_run;              ///< from a start until the capture has stopped
    std::unique_ptr<QTemporaryDir> m_folder; ///< of the test sound; made when that is first played
    std::unique_ptr<AudioOutput> m_output;   ///< likewise
    TaskScope m_tasks{"Sound check"};
};

} // namespace varnet
