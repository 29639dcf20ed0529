#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/platform/AudioOutput.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace varnet {

class MeetingStore;

/// Plays the audio of the selected meeting. Nothing plays from the start of a recording until its files are closed, for
/// a recording of the call is a recording of what this computer plays. Main thread; the store must outlive it.
class AudioPlayback : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool present READ present NOTIFY loaded FINAL)
    Q_PROPERTY(double duration READ duration NOTIFY loaded FINAL)
    Q_PROPERTY(QString durationText READ durationText NOTIFY loaded FINAL)
    Q_PROPERTY(QList<qreal> peaks READ peaks NOTIFY peaksChanged FINAL)
    Q_PROPERTY(bool enabled READ enabled NOTIFY enabledChanged FINAL)
    Q_PROPERTY(bool playing READ playing NOTIFY playingChanged FINAL)
    Q_PROPERTY(double position READ position NOTIFY positionChanged FINAL)
    Q_PROPERTY(QString positionText READ positionText NOTIFY positionTextChanged FINAL)
    Q_PROPERTY(int playingTurn READ playingTurn NOTIFY playingTurnChanged FINAL)
    Q_PROPERTY(double rate READ rate NOTIFY rateChanged FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)

public:
    static constexpr double slowest = 0.75, fastest = 2; ///< rates

    using MakeOutput = std::function<std::unique_ptr<AudioOutput>(AudioOutput::Callbacks)>;

    explicit AudioPlayback(MeetingStore& store, MakeOutput makeOutput = makeAudioOutput, QObject* parent = nullptr);
    ~AudioPlayback() override;

    bool present() const { return m_frameCount > 0; }     ///< the selected meeting has audio that can be played
    double duration() const;                              ///< seconds; 0 without audio
    QString durationText() const;                         ///< such as "1:02"
    const QList<qreal>& peaks() const { return m_peaks; } ///< of equal parts of the audio, 0 to 1; empty until known
    bool enabled() const { return !m_recording; }         ///< false from the start of a recording to its end
    bool playing() const { return m_playing; }
    double position() const { return m_position; } ///< seconds, of what is heard; some 25 changes a second
    QString positionText() const { return m_positionText; }
    /// The row of the turn at the position while playing, or while paused on the way; -1 for none.
    int playingTurn() const { return m_playingTurn; }
    double rate() const { return m_rate; }               ///< the speed, kept from meeting to meeting; the pitch stays
    const QString& problem() const { return m_problem; } ///< why nothing plays, as a sentence; empty normally

    // Each does nothing without audio; what would start playing does nothing during a recording either.
    Q_INVOKABLE void toggle();
    Q_INVOKABLE void play(); ///< from the position, or from the start if that is the end
    Q_INVOKABLE void pause();
    Q_INVOKABLE void seek(double seconds);          ///< to the nearest place there is; what plays goes on there
    Q_INVOKABLE void skip(double seconds);          ///< from here, forwards or backwards
    Q_INVOKABLE void setRate(double rate);          ///< 0.75 to 2
    Q_INVOKABLE void playTurn(const QString& turn); ///< from where that turn starts

Q_SIGNALS:
    void loaded();
    void peaksChanged();
    void enabledChanged();
    void playingChanged();
    void positionChanged();
    void positionTextChanged();
    void jumped(); ///< to a position that did not come by itself
    void playingTurnChanged();
    void rateChanged();
    void problemChanged();

private:
    /// One state of one file.
    struct Source {
        Uuid meeting;
        std::filesystem::path file;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type changedAt;

        bool operator==(const Source&) const = default;
    };

    std::optional<Source> wanted() const;
    void load();
    void open(double position); ///< the source
    void indexTurns();
    void start();
    void follow(); ///< what the output plays
    void ended();
    void failed(const std::exception_ptr& failure);
    void moveTo(double position);
    void showTurn();
    void setPlaying(bool playing);
    void setProblem(const QString& problem);
    static Task<> findPeaks(QPointer<AudioPlayback> self, Source source, std::stop_token stop);

    MeetingStore& m_store;
    std::unique_ptr<AudioOutput> m_output; ///< made when first needed
    MakeOutput m_makeOutput;
    std::optional<Source> m_source;
    std::uint64_t m_frameCount = 0;
    std::uint32_t m_sampleRate = 0;
    QList<qreal> m_peaks;
    bool m_recording = false;
    bool m_playing = false;
    double m_position = 0;
    QString m_positionText;
    double m_rate = 1;
    QString m_problem;
    std::vector<std::pair<double, int>> m_turnStarts; ///< seconds and row, ascending
    double m_lastTurnEnd = 0;
    int m_playingTurn = -1;
    QTimer m_timer;
    std::unique_ptr<TaskScope> m_search; ///< for the peaks of the present source
};

} // namespace varnet
