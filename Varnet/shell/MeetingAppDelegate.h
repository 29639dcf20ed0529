#pragma once

#include "Varnet/async/Task.h"
#include "Varnet/async/TaskScope.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class EngineSupervisor;
class MeetingStore;

/// The road to the end of the program. Every quit takes it: the command, a signal, a logout. A recording is stopped
/// first, then everything has to be saved; if that fails the user is asked once and may stay. Main thread.
class MeetingAppDelegate : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one delegate")
    Q_PROPERTY(bool askingToSave READ askingToSave NOTIFY askingToSaveChanged FINAL)

public:
    explicit MeetingAppDelegate(QObject* parent = nullptr);

    /// What a quit looks after, from the first appearance of the window on. Not owned; a gone store lets every quit
    /// pass.
    void adopt(MeetingStore* store, EngineSupervisor* engines);

    /// The question "Some meeting changes have not been saved" is up.
    bool askingToSave() const { return m_askingToSave; }

    /// Whether a quit would neither have to stop a recording nor ask; tries to save what is not saved.
    bool canCloseAtOnce();

    Q_INVOKABLE void quit();
    /// The two answers to the question.
    Q_INVOKABLE void keepOpen();
    Q_INVOKABLE void retrySavingAndQuit();

Q_SIGNALS:
    void askingToSaveChanged();
    void quitCancelled();
    /// A quit begins: edits that are still open are to be handed to the store now.
    void closing();
    /// The quit is agreed; the engines are shut down next, which may take seconds.
    void terminating();
    /// The quit is agreed and the engines are shut down: the event loop may end.
    void terminated();

private:
    static Task<> endCaptureAndClose(QPointer<MeetingAppDelegate> self, std::stop_token stop);
    bool captures() const; ///< a recording runs, starts or stops
    void close();
    void setAskingToSave(bool asking);
    void cancel();
    void terminate();

    QPointer<MeetingStore> m_store;
    QPointer<EngineSupervisor> m_engines;
    bool m_quitting = false;
    bool m_askingToSave = false;
    TaskScope m_tasks{"Quit"};
};

} // namespace varnet
