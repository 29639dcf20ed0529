#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/models/TranscriptModel.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace varnet {

class CaptureLevels;
class MeetingStore;
class RecordingClock;

/// Everything that the page of the selected meeting shows. Main thread; the store and the clock must outlive it.
class MeetingPage : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool present READ present NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString dateLine READ dateLine NOTIFY changed)
    Q_PROPERTY(QString badgeText READ badgeText NOTIFY changed)
    Q_PROPERTY(int badgeTone READ badgeTone NOTIFY changed)
    Q_PROPERTY(bool badgeMarked READ badgeMarked NOTIFY changed)
    Q_PROPERTY(bool live READ live NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    Q_PROPERTY(QString clock READ clock NOTIFY clockChanged)
    Q_PROPERTY(double microphoneLevel READ microphoneLevel NOTIFY levelsChanged)
    Q_PROPERTY(double callLevel READ callLevel NOTIFY levelsChanged)
    Q_PROPERTY(bool capturingCall READ capturingCall NOTIFY levelsChanged)
    Q_PROPERTY(bool callMissing READ callMissing NOTIFY callMissingChanged)
    Q_PROPERTY(QString callMissingText READ callMissingText CONSTANT)
    Q_PROPERTY(QString partialText READ partialText NOTIFY partialChanged)
    Q_PROPERTY(varnet::TranscriptModel* turns READ turns CONSTANT)
    Q_PROPERTY(varnet::TranscriptModel* partialTurns READ partialTurns CONSTANT)

public:
    MeetingPage(MeetingStore& store, const RecordingClock& clock, QObject* parent = nullptr);

    bool present() const; ///< a meeting is selected
    QString title() const;
    QString dateLine() const; ///< day, time and duration
    QString badgeText() const;
    int badgeTone() const;
    bool badgeMarked() const;
    bool live() const;         ///< the selected meeting is the one being recorded
    QString emptyText() const; ///< what stands in place of turns while there are none
    QString clock() const;     ///< the running time; empty unless live

    double microphoneLevel() const; ///< 0 to 1 along the meter
    double callLevel() const;
    bool capturingCall() const; ///< there is a call meter
    bool callMissing() const;   ///< the live meeting has not heard the call for a while
    QString callMissingText() const;

    QString partialText() const; ///< live words that belong to no turn yet; empty when `partialTurns` shows them
    TranscriptModel* turns() { return &m_turns; }
    TranscriptModel* partialTurns() { return &m_partialTurns; }

    /// Gives the meeting another title; a blank one changes nothing.
    Q_INVOKABLE void rename(const QString& title);

Q_SIGNALS:
    void changed();
    /// The page turns to another meeting, or the program ends: what is being edited belongs to the meeting shown until
    /// now and must be handed in at once.
    void aboutToLeave();
    void clockChanged();
    void levelsChanged();
    void callMissingChanged();
    void partialChanged();

private:
    void follow();
    void refresh();
    void showPartial();

    MeetingStore& m_store;
    const RecordingClock& m_clock;
    std::optional<Uuid> m_shown;
    SpeakerHues m_hues;
    TranscriptModel m_turns;
    TranscriptModel m_partialTurns;
};

} // namespace varnet
