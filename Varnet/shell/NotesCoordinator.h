#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/async/Task.h"
#include "Varnet/async/TaskScope.h"

#include <QObject>
#include <QString>

#include <optional>
#include <stop_token>

namespace varnet {

class EngineSupervisor;
class MeetingStore;

/// The notes command: what every button for notes calls. It brings the notes engine up where it does not run yet, which
/// takes up to two minutes, and then has the store write the notes. The engine's idle time begins anew with every use.
/// Main thread; both objects must outlive it.
class NotesCoordinator : public QObject {
    Q_OBJECT
public:
    NotesCoordinator(MeetingStore& store, EngineSupervisor& engines, QObject* parent = nullptr);

    /// Whose notes are being written, from the start of the engine on.
    std::optional<Uuid> meeting() const;
    QString progress() const; ///< how far they are, in words; empty while none are being written
    /// A start of the engine has been called off and comes to its end; a drafting ends at once.
    bool cancelling() const { return m_start && m_start->stop.stop_requested(); }

    /// Has the notes of the meeting written. Refused while the engine is being started, and as
    /// MeetingStore::generateNotes does; what fails, or comes in between, shows in the store's `error`.
    void write(Uuid meeting);

    /// Ends what `meeting` tells of, also an engine of ours that is being started. The previous draft is kept.
    void cancel();

Q_SIGNALS:
    void changed();
    void aboutToWrite(); ///< edits that are still open are to be handed to the store now

private:
    struct Start {
        Uuid meeting;
        std::stop_source stop;
    };

    Task<> startEngine(std::stop_token stop);
    void engineStarted(bool ready);
    void followRun();

    MeetingStore& m_store;
    EngineSupervisor& m_engines;
    std::optional<Start> m_start; ///< of the engine
    TaskScope m_tasks{"Notes"};
};

} // namespace varnet
