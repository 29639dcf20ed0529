#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/shell/ImportQueue.h"
#include "Varnet/shell/NotesCoordinator.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUndoStack>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <set>

namespace varnet {

class AppRouter;
class EngineSupervisor;
class MeetingStore;

/// The commands of the application, with the words and the rule by which each can be used. Buttons, shortcuts, menus
/// and the bus all come here. Deletes and restores can be undone and redone for as long as the program runs. Ids are
/// those of meetings, as text. Main thread; the three objects must outlive it.
class AppCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its commands")
    Q_PROPERTY(QString recordTitle READ recordTitle NOTIFY recordChanged FINAL)
    Q_PROPERTY(bool recordEnabled READ recordEnabled NOTIFY recordChanged FINAL)
    Q_PROPERTY(bool stops READ stops NOTIFY recordChanged FINAL)
    Q_PROPERTY(bool importEnabled READ importEnabled NOTIFY recordChanged FINAL)
    Q_PROPERTY(QString importDelay READ importDelay NOTIFY recordChanged FINAL)
    Q_PROPERTY(QString importFilter READ importFilter CONSTANT FINAL)
    Q_PROPERTY(bool deleteEnabled READ deleteEnabled NOTIFY deleteChanged FINAL)
    Q_PROPERTY(QString transcribeTitle READ transcribeTitle NOTIFY transcribeAgainChanged FINAL)
    Q_PROPERTY(bool transcribeAgainEnabled READ transcribeAgainEnabled NOTIFY transcribeAgainChanged FINAL)
    Q_PROPERTY(bool writeNotesEnabled READ writeNotesEnabled NOTIFY notesChanged FINAL)
    Q_PROPERTY(QString writeNotesHint READ writeNotesHint NOTIFY notesChanged FINAL)
    Q_PROPERTY(bool writingNotes READ writingNotes NOTIFY notesChanged FINAL)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY undoChanged FINAL)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY undoChanged FINAL)
    Q_PROPERTY(QString undoText READ undoText NOTIFY undoChanged FINAL)
    Q_PROPERTY(QString redoText READ redoText NOTIFY undoChanged FINAL)

public:
    AppCommands(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent = nullptr);

    QString recordTitle() const;  ///< "New Recording" or "Stop Recording"
    bool recordEnabled() const;   ///< a running recording can always be stopped
    bool stops() const;           ///< the record command would stop a recording
    bool importEnabled() const;   ///< files can be picked
    QString importDelay() const;  ///< when files that are handed over now will be imported; empty for at once
    QString importFilter() const; ///< names the kinds of files that a picker shows
    /// There is something to delete, and it is not the meeting whose recording is on its page. What else stands against
    /// it is said when it is tried.
    bool deleteEnabled() const;
    QString transcribeTitle() const;     ///< "Transcribe again", or what it is for audio without a transcript
    bool transcribeAgainEnabled() const; ///< the selected meeting has audio, and nothing else uses the engine
    bool writeNotesEnabled() const;      ///< the selected meeting has a transcript, and nothing else is being done
    QString writeNotesHint() const;      ///< what writing notes does, or why it cannot be done now
    bool writingNotes() const;           ///< for the selected meeting, from the start of the engine on
    bool canUndo() const { return m_undoStack.canUndo(); }
    bool canRedo() const { return m_undoStack.canRedo(); }
    QString undoText() const; ///< such as "Undo Delete Meeting"; "Undo" while there is nothing to undo
    QString redoText() const;

    /// Starts a recording; one that runs goes on.
    Q_INVOKABLE void newRecording();
    Q_INVOKABLE void toggleRecording();
    Q_INVOKABLE void showLibrary();
    Q_INVOKABLE void showDeleted();
    /// Shows the library with the cursor in its search field.
    Q_INVOKABLE void searchLibrary();
    /// Brings the window up and forward; with the desktop's leave to do so, where there is a token.
    Q_INVOKABLE void showWindow(const QString& token = {});
    /// The same, with the settings presented.
    Q_INVOKABLE void showSettings(const QString& token = {});
    Q_INVOKABLE void closeSettings();
    /// Opens the page of the selected meeting, if one is selected.
    Q_INVOKABLE void openSelected();
    /// Presents the versions of the selected meeting, if one is selected.
    Q_INVOKABLE void openHistory();
    Q_INVOKABLE void closeHistory();
    /// Asks whether the audio of the selected meeting shall be transcribed again; the router holds the question, which
    /// ends when another meeting is selected.
    Q_INVOKABLE void askToTranscribeAgain();
    Q_INVOKABLE void transcribeAgain();
    Q_INVOKABLE void dismissTranscribeAgain();
    /// Has the local model write the notes of the selected meeting.
    Q_INVOKABLE void writeNotes();
    /// Writes the selected meeting as Markdown.
    Q_INVOKABLE void exportSelected(const QUrl& file);

    /// Shows the library and asks for an audio file to import.
    Q_INVOKABLE void importAudio();
    /// Takes files to import, now or later, wherever they come from.
    Q_INVOKABLE void importFiles(const QList<QUrl>& addresses);
    /// Whether there is a file on this computer among the addresses.
    Q_INVOKABLE bool canImport(const QList<QUrl>& addresses) const;
    /// What picks a file could not be presented.
    Q_INVOKABLE void importFailed(const QString& reason);
    /// Ends the import or the transcription that runs, or the writing of notes.
    Q_INVOKABLE void cancelWork();
    /// The same, and forgets the files that wait.
    Q_INVOKABLE void cancelAllWork();

    /// On the library page deletes the selected rows; on a meeting's page that meeting, and then shows the library.
    Q_INVOKABLE void deleteSelected();
    Q_INVOKABLE void restoreDeleted(const QStringList& ids);
    Q_INVOKABLE void eraseDeleted(const QStringList& ids);

    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// Takes back the delete that is being offered for undoing, also when other commands came after it.
    Q_INVOKABLE void undoDelete();
    Q_INVOKABLE void dismissUndo();

    ImportQueue& imports() { return m_imports; }
    const NotesCoordinator& notes() const { return m_notes; }

Q_SIGNALS:
    void recordChanged();
    void deleteChanged();
    void transcribeAgainChanged();
    void notesChanged();
    void undoChanged();
    void windowWanted(QString token); ///< the window is to come up and forward; see bringForward
    /// A command looks at meetings or changes them now: a title, a turn or notes that are being edited must be handed
    /// in before this returns.
    void aboutToAct();

private:
    std::set<Uuid> chosen() const;
    QString notesObstacle() const;

    MeetingStore& m_store;
    EngineSupervisor& m_engines;
    AppRouter& m_router;
    QUndoStack m_undoStack;
    ImportQueue m_imports{m_store, m_engines, m_router};
    NotesCoordinator m_notes{m_store, m_engines};
    TaskScope m_tasks{"Commands"};
};

} // namespace varnet
