#include "Varnet/shell/AppCommands.h"

#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Text.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/RecordingCoordinator.h"
#include "Varnet/store/DeletionCommand.h"
#include "Varnet/store/MeetingStore.h"

#include <algorithm>

namespace varnet {

namespace {

std::set<Uuid> parsed(const QStringList& texts) {
    std::set<Uuid> ids;
    for (const auto& text : texts)
        if (const auto id = Uuid::parse(toUtf8(text)))
            ids.insert(*id);
    return ids;
}

QString withAction(const QString& command, const QString& action) {
    return action.isEmpty() ? command : command + u' ' + action;
}

} // namespace

AppCommands::AppCommands(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_router(router) {
    connect(&store, &MeetingStore::recordingChanged, this, &AppCommands::recordChanged);
    connect(&store, &MeetingStore::busyChanged, this, &AppCommands::recordChanged);
    connect(&engines, &EngineSupervisor::speechChanged, this, &AppCommands::recordChanged);
    connect(&engines, &EngineSupervisor::restartPendingChanged, this, &AppCommands::recordChanged);
    connect(&store, &MeetingStore::selectedIDChanged, this, &AppCommands::deleteChanged);
    connect(&store, &MeetingStore::librarySelectionChanged, this, &AppCommands::deleteChanged);
    connect(&router, &AppRouter::pageChanged, this, &AppCommands::deleteChanged);
    connect(&store, &MeetingStore::recordingChanged, this, &AppCommands::deleteChanged);
    connect(&store, &MeetingStore::recordingIDChanged, this, &AppCommands::deleteChanged);
    for (const auto signal : {&MeetingStore::recordingChanged, &MeetingStore::busyChanged,
                              &MeetingStore::selectedIDChanged, &MeetingStore::meetingsChanged}) {
        connect(&store, signal, this, &AppCommands::transcribeAgainChanged);
        connect(&store, signal, this, &AppCommands::notesChanged);
    }
    connect(&store, &MeetingStore::meetingChanged, this, &AppCommands::transcribeAgainChanged);
    connect(&store, &MeetingStore::turnsAppended, this, &AppCommands::transcribeAgainChanged);
    connect(&store, &MeetingStore::meetingChanged, this, &AppCommands::notesChanged);
    connect(&m_notes, &NotesCoordinator::changed, this, &AppCommands::notesChanged);
    connect(&m_notes, &NotesCoordinator::aboutToWrite, this, &AppCommands::aboutToAct);
    connect(&store, &MeetingStore::selectedIDChanged, this, &AppCommands::dismissTranscribeAgain);
    connect(&m_undoStack, &QUndoStack::indexChanged, this, &AppCommands::undoChanged);
}

QString AppCommands::recordTitle() const {
    return m_store.recording() ? tr("Stop Recording") : tr("New Recording");
}

bool AppCommands::recordEnabled() const {
    return m_store.recording() || !m_store.busy();
}

bool AppCommands::stops() const {
    return m_store.recording();
}

bool AppCommands::importEnabled() const {
    return !m_store.busy() && !m_store.recording();
}

QString AppCommands::importDelay() const {
    switch (m_imports.obstacle()) {
    case ImportQueue::Obstacle::recording:
        return tr("After the recording");
    case ImportQueue::Obstacle::work:
        return tr("When the present work is done");
    case ImportQueue::Obstacle::engine:
        return tr("When the speech engine has started");
    case ImportQueue::Obstacle::none:
        break;
    }
    return {};
}

QString AppCommands::importFilter() const {
    QStringList patterns;
    for (const char* suffix : {"wav", "mp3", "m4a", "aac", "ogg", "oga", "opus", "flac", "wma", "aif", "aiff",
                               "caf", "amr", "mka", "mp4", "m4v", "mkv", "webm", "mov",  "avi", "3gp"})
        for (const auto& written : {QString::fromLatin1(suffix), QString::fromLatin1(suffix).toUpper()})
            patterns << QStringLiteral("*.") + written;
    return tr("Audio and video") + QStringLiteral(" (%1)").arg(patterns.join(u' '));
}

bool AppCommands::deleteEnabled() const {
    const bool recorded = m_router.showingMeeting() && m_store.recording() && m_store.showingLiveMeeting();
    return !recorded && !chosen().empty();
}

QString AppCommands::transcribeTitle() const {
    const auto* meeting = m_store.selected();
    const bool first = meeting && meeting->turns.empty() && m_store.audioURL(*meeting);
    return first ? tr("Transcribe saved audio") : tr("Transcribe again");
}

bool AppCommands::transcribeAgainEnabled() const {
    const auto* meeting = m_store.selected();
    return meeting && !m_store.busy() && !m_store.recording() && m_store.audioURL(*meeting);
}

/// Why the notes of the selected meeting cannot be written now; empty when they can.
QString AppCommands::notesObstacle() const {
    const auto* meeting = m_store.selected();
    if (!meeting || meeting->turns.empty())
        return tr("There is no transcript to write notes from");
    if (m_store.recording())
        return tr("Notes can be written after the recording");
    if (writingNotes())
        return tr("The notes are being written");
    if (m_store.busy() || m_notes.meeting())
        return tr("Notes can be written when the present work is done");
    return {};
}

bool AppCommands::writeNotesEnabled() const {
    return notesObstacle().isEmpty();
}

QString AppCommands::writeNotesHint() const {
    if (const auto obstacle = notesObstacle(); !obstacle.isEmpty())
        return obstacle;
    return m_store.selected()->generatedNotes
               ? tr("Drafts new notes from the transcript; the present draft is kept in the version history")
               : tr("Drafts notes from the transcript with the model on this computer");
}

bool AppCommands::writingNotes() const {
    const auto meeting = m_notes.meeting();
    return meeting && meeting == m_store.selectedID();
}

QString AppCommands::undoText() const {
    return withAction(tr("Undo"), m_undoStack.undoText());
}

QString AppCommands::redoText() const {
    return withAction(tr("Redo"), m_undoStack.redoText());
}

void AppCommands::newRecording() {
    if (!stops())
        toggleRecording();
}

void AppCommands::toggleRecording() {
    if (recordEnabled())
        m_tasks.spawn(RecordingCoordinator::toggle(&m_store, &m_engines, &m_router));
}

void AppCommands::showLibrary() {
    m_router.setPage(AppRouter::Page::library);
}

void AppCommands::showDeleted() {
    m_router.setPage(AppRouter::Page::deleted);
}

void AppCommands::searchLibrary() {
    showLibrary();
    m_router.requestSearchFocus();
}

void AppCommands::showWindow(const QString& token) {
    Q_EMIT windowWanted(token);
}

void AppCommands::showSettings(const QString& token) {
    Q_EMIT aboutToAct();
    m_router.setSettingsOpen(true);
    showWindow(token);
}

void AppCommands::closeSettings() {
    m_router.setSettingsOpen(false);
}

void AppCommands::openSelected() {
    if (m_store.selected())
        m_router.setPage(AppRouter::Page::meeting);
}

void AppCommands::openHistory() {
    Q_EMIT aboutToAct();
    m_router.setHistoryOpen(m_store.selected() != nullptr);
}

void AppCommands::closeHistory() {
    m_router.setHistoryOpen(false);
}

void AppCommands::askToTranscribeAgain() {
    if (!transcribeAgainEnabled())
        return;
    Q_EMIT aboutToAct();
    m_router.setRetrying(toQString(m_store.selectedID()->text()));
}

void AppCommands::transcribeAgain() {
    const auto id = Uuid::parse(toUtf8(m_router.retrying()));
    dismissTranscribeAgain();
    if (!id)
        return;
    Q_EMIT aboutToAct();
    m_tasks.spawn(m_store.retryTranscription(*id));
}

void AppCommands::dismissTranscribeAgain() {
    m_router.setRetrying({});
}

void AppCommands::writeNotes() {
    if (writeNotesEnabled())
        m_notes.write(*m_store.selectedID());
}

void AppCommands::exportSelected(const QUrl& file) {
    Q_EMIT aboutToAct();
    m_store.exportSelected(std::filesystem::path(toUtf8(file.toLocalFile())));
}

void AppCommands::importAudio() {
    if (!importEnabled())
        return;
    Q_EMIT aboutToAct();
    showLibrary();
    m_router.setImporting(true);
}

void AppCommands::importFiles(const QList<QUrl>& addresses) {
    Q_EMIT aboutToAct();
    m_imports.add(addresses);
}

bool AppCommands::canImport(const QList<QUrl>& addresses) const {
    return std::ranges::any_of(addresses,
                               [](const QUrl& address) { return ImportQueue::localFile(address).has_value(); });
}

void AppCommands::importFailed(const QString& reason) {
    m_router.setImporting(false);
    m_store.setError(toUtf8(reason));
}

void AppCommands::cancelWork() {
    if (m_store.audioWork())
        m_store.cancelAudioWork();
    else
        m_notes.cancel();
}

void AppCommands::cancelAllWork() {
    m_imports.clear();
    cancelWork();
    m_notes.cancel();
}

std::set<Uuid> AppCommands::chosen() const {
    if (m_router.showingLibrary())
        return m_store.librarySelection();
    if (m_router.showingMeeting() && m_store.selectedID())
        return {*m_store.selectedID()};
    return {};
}

void AppCommands::deleteSelected() {
    Q_EMIT aboutToAct();
    const auto ids = chosen();
    if (ids.empty())
        return;
    if (!m_store.deleteMeetings(ids, &m_undoStack).empty())
        showLibrary();
}

void AppCommands::restoreDeleted(const QStringList& ids) {
    Q_EMIT aboutToAct();
    m_store.restoreMeetings(parsed(ids), &m_undoStack);
}

void AppCommands::eraseDeleted(const QStringList& ids) {
    m_store.eraseDeleted(parsed(ids));
}

void AppCommands::undo() {
    Q_EMIT aboutToAct();
    m_undoStack.undo();
}

void AppCommands::redo() {
    Q_EMIT aboutToAct();
    m_undoStack.redo();
    Q_EMIT undoChanged(); // the stack is silent when a command drops out of it
}

void AppCommands::undoDelete() {
    const auto receipt = m_store.pendingUndo();
    if (!receipt)
        return;
    Q_EMIT aboutToAct();
    std::set<Uuid> ids(receipt->meetingIDs.begin(), receipt->meetingIDs.end());
    const auto* last = m_undoStack.index() > 0
                           ? dynamic_cast<const DeletionCommand*>(m_undoStack.command(m_undoStack.index() - 1))
                           : nullptr;
    if (last && last->deletes(ids)) {
        m_undoStack.undo();
        return;
    }
    std::erase_if(ids, [this](const Uuid& id) { return !m_store.deletedMeeting(id); });
    m_store.restoreMeetings(ids, &m_undoStack);
}

void AppCommands::dismissUndo() {
    m_store.dismissPendingUndo();
}

} // namespace varnet
