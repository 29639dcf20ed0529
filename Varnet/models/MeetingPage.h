#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/models/DraftModel.h"
#include "Varnet/models/TranscriptFind.h"
#include "Varnet/models/TranscriptModel.h"

#include <QObject>
#include <QQuickTextDocument>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>

namespace varnet {

class CaptureLevels;
class MeetingStore;
class RecordingClock;

/// Everything that the page of the selected meeting shows. Main thread; the store and the clock must outlive it.
class MeetingPage : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(bool present READ present NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString dateLine READ dateLine NOTIFY changed FINAL)
    Q_PROPERTY(QString attendeesLine READ attendeesLine NOTIFY changed FINAL)
    Q_PROPERTY(QString shortfallText READ shortfallText NOTIFY changed FINAL)
    Q_PROPERTY(QString badgeText READ badgeText NOTIFY changed FINAL)
    Q_PROPERTY(int badgeTone READ badgeTone NOTIFY changed FINAL)
    Q_PROPERTY(bool badgeMarked READ badgeMarked NOTIFY changed FINAL)
    Q_PROPERTY(bool live READ live NOTIFY changed FINAL)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed FINAL)
    Q_PROPERTY(bool importFailed READ importFailed NOTIFY changed FINAL)
    Q_PROPERTY(QString importedText READ importedText NOTIFY changed FINAL)
    Q_PROPERTY(QString notes READ notes NOTIFY notesReplaced FINAL)
    Q_PROPERTY(QString clock READ clock NOTIFY clockChanged FINAL)
    Q_PROPERTY(double microphoneLevel READ microphoneLevel NOTIFY levelsChanged FINAL)
    Q_PROPERTY(double callLevel READ callLevel NOTIFY levelsChanged FINAL)
    Q_PROPERTY(bool capturingCall READ capturingCall NOTIFY levelsChanged FINAL)
    Q_PROPERTY(bool callMissing READ callMissing NOTIFY callMissingChanged FINAL)
    Q_PROPERTY(QString callMissingText READ callMissingText CONSTANT FINAL)
    Q_PROPERTY(QString partialText READ partialText NOTIFY partialChanged FINAL)
    Q_PROPERTY(varnet::TranscriptModel* turns READ turns CONSTANT FINAL)
    Q_PROPERTY(varnet::TranscriptFind* find READ find CONSTANT FINAL)
    Q_PROPERTY(varnet::TranscriptModel* partialTurns READ partialTurns CONSTANT FINAL)
    Q_PROPERTY(varnet::DraftModel* draft READ draft CONSTANT FINAL)

public:
    MeetingPage(MeetingStore& store, const RecordingClock& clock, QObject* parent = nullptr);

    bool present() const; ///< a meeting is selected
    QString title() const;
    QString dateLine() const;      ///< day, time and duration
    QString attendeesLine() const; ///< empty when nobody is named
    QString shortfallText() const; ///< that the transcript stops well before the audio; empty unless it does
    QString badgeText() const;
    int badgeTone() const;
    bool badgeMarked() const;
    bool live() const;            ///< the selected meeting is the one being recorded, or shown as if it were
    QString emptyText() const;    ///< what stands in place of turns while there are none
    bool importFailed() const;    ///< nothing came of an audio file: it is to be picked again
    QString importedText() const; ///< what an import brought along; empty if nothing
    QString notes() const;        ///< the user's own, as stored
    QString clock() const;        ///< the running time; empty unless live

    double microphoneLevel() const; ///< 0 to 1 along the meter
    double callLevel() const;
    bool capturingCall() const; ///< there is a call meter
    bool callMissing() const;   ///< the live meeting has not heard the call for a while
    QString callMissingText() const;

    QString partialText() const; ///< live words that belong to no turn yet; empty when `partialTurns` shows them
    TranscriptModel* turns() { return &m_turns; }
    TranscriptFind* find() { return &m_find; } ///< in `turns`; closed when another meeting is shown
    TranscriptModel* partialTurns() { return &m_partialTurns; }
    DraftModel* draft() { return &m_draft; }

    /// What stands in a text area, exactly as typed.
    Q_INVOKABLE static QString typed(QQuickTextDocument* document);
    /// Other words are in a text area now: they get the lines of words that are read, and what was typed before cannot
    /// be undone there.
    Q_INVOKABLE static void beginTyping(QQuickTextDocument* document);

    /// Gives the meeting another title; a blank one changes nothing.
    Q_INVOKABLE void rename(const QString& title);
    /// Corrects the words of a turn.
    Q_INVOKABLE void editTurn(const QString& turn, const QString& words);
    /// Gives a turn the words back that were recognised.
    Q_INVOKABLE void setBack(const QString& turn);
    /// Names a speaker everywhere in the meeting; a blank name gives the label back.
    Q_INVOKABLE void nameSpeaker(const QString& label, const QString& name);
    /// Asks for that turn to be shown; nothing if the transcript has it no more.
    Q_INVOKABLE void showTurn(const QString& turn);
    /// The user's notes are these now. They are stored within half a second, or by `handIn`.
    Q_INVOKABLE void typeNotes(const QString& notes);

    /// Takes in what is being edited and stores it: before anything else looks at the meeting or changes it.
    void handIn();

Q_SIGNALS:
    void changed();
    /// What is being edited must be handed in at once; it belongs to the meeting shown until now.
    void aboutToLeave();
    /// Other notes than those that were typed here are there to be shown.
    void notesReplaced();
    void turnAsked(int row); ///< that turn is to be shown
    void clockChanged();
    void levelsChanged();
    void callMissingChanged();
    void partialChanged();

private:
    void follow();
    void refresh();
    void showNotes(const Meeting* meeting);
    void keepNotes();
    void showPartial();

    MeetingStore& m_store;
    const RecordingClock& m_clock;
    std::optional<Uuid> m_shown;
    SpeakerHues m_hues;
    TranscriptModel m_turns;
    TranscriptFind m_find{m_turns};
    TranscriptModel m_partialTurns;
    DraftModel m_draft;
    std::optional<std::string> m_notes;      ///< as the screen knows them; absent until they are shown
    std::optional<std::string> m_typedNotes; ///< newer ones that wait to be stored
    QTimer m_notesTimer;
};

} // namespace varnet
