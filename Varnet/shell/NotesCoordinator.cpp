#include "Varnet/shell/NotesCoordinator.h"

#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

#include <QPointer>

namespace varnet {

NotesCoordinator::NotesCoordinator(MeetingStore& store, EngineSupervisor& engines, QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines) {
    connect(&store, &MeetingStore::notesMeetingIDChanged, this, &NotesCoordinator::changed);
    connect(&store, &MeetingStore::notesProgressChanged, this, &NotesCoordinator::changed);
    // Each request is a use as well: the notes of a long meeting take more time than an engine may stay idle. No
    // request may take longer than that.
    connect(&store, &MeetingStore::notesProgressChanged, &engines, &EngineSupervisor::scheduleNotesIdleStop);
    connect(&store, &MeetingStore::notesMeetingIDChanged, this, &NotesCoordinator::followRun);
    connect(&engines, &EngineSupervisor::notesChanged, this, [this] {
        if (!m_engines.notes().isReady())
            m_tasks.spawn(m_store.checkNotesRuntime());
    });
}

/// An engine that has died in a run must not be asked again.
void NotesCoordinator::followRun() {
    if (m_store.notesMeetingID())
        return;
    m_engines.scheduleNotesIdleStop();
    m_tasks.spawn(m_store.checkNotesRuntime());
}

std::optional<Uuid> NotesCoordinator::meeting() const {
    if (m_store.notesMeetingID())
        return m_store.notesMeetingID();
    return m_start ? std::optional(m_start->meeting) : std::nullopt;
}

QString NotesCoordinator::progress() const {
    if (m_store.notesMeetingID())
        return toQString(m_store.notesProgress());
    if (!m_start)
        return {};
    return cancelling() ? tr("Cancelling…") : tr("Starting the notes engine…");
}

void NotesCoordinator::write(Uuid meeting) {
    if (m_start || m_store.busy() || m_store.recording())
        return;
    Q_EMIT aboutToWrite();
    if (m_store.notesRuntimeReady())
        return m_store.generateNotes(meeting);
    m_start = Start{meeting, {}};
    Q_EMIT changed();
    m_tasks.spawn(startEngine(m_start->stop.get_token()));
}

Task<> NotesCoordinator::startEngine(std::stop_token stop) {
    const QPointer<NotesCoordinator> self(this);
    const bool ready = co_await m_engines.startNotes(stop);
    if (self && ready)
        co_await m_store.checkNotesRuntime();
    if (!self)
        co_return;
    if (!stop.stop_requested())
        engineStarted(ready);
    m_start.reset();
    Q_EMIT changed();
}

void NotesCoordinator::engineStarted(bool ready) {
    const bool otherWork = m_store.busy() || m_store.recording();
    if (otherWork && m_store.error())
        return; // what it has to say matters more, such as that the call is not recorded
    if (!ready) {
        if (m_engines.notesModel().kind != NotesModelState::Kind::failed)
            m_store.setError("The notes model didn't start. Check Settings › Engines.");
    } else if (otherWork) {
        m_store.setError("The notes were not written, because other work had begun by then. Write them when that is "
                         "done.");
    } else if (m_store.meeting(m_start->meeting)) {
        // The store would take the selected meeting in place of one that is gone.
        Q_EMIT aboutToWrite();
        m_store.generateNotes(m_start->meeting);
    }
}

void NotesCoordinator::cancel() {
    if (auto run = m_store.notesTask()) {
        run->request_stop();
    } else if (m_start) {
        m_start->stop.request_stop();
        Q_EMIT changed();
        m_engines.stopNotes();
    }
}

} // namespace varnet
