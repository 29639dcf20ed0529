// The notes engine: on demand, stopped when idle, never beside a recording.

#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/platform/ChildProcess.h"
#include "Varnet/platform/LoopbackHTTP.h"

#include <QDebug>
#include <QPointer>

#include <sys/random.h>

#include <array>

namespace varnet {

bool EngineSupervisor::notesAvailable() const {
    const auto found = layout();
    return m_notes.isReady() || (found && found->notes(m_keyFile, m_parts.machine)) || notesNeedDownload();
}

bool EngineSupervisor::notesNeedDownload() const {
    const auto found = layout();
    return found && found->bundledNotesBinary(m_parts.machine) && !NotesModel::installed();
}

std::optional<std::string> EngineSupervisor::notesUnavailableReason() const {
    const auto found = layout();
    if (found && found->bundled && !m_parts.machine.runsAcceleratedEngines)
        return "Notes need a Mac with an M1 chip or newer. This Mac can still record and transcribe.";
    return std::nullopt;
}

Task<bool> EngineSupervisor::startNotes(std::stop_token stop) {
    const QPointer<EngineSupervisor> self(this);
    if (m_recording || m_notes.isStarting())
        co_return false;
    const bool answers = co_await healthy(notesEnginePort);
    if (!self || m_shutDown || stop.stop_requested())
        co_return false;
    if (answers) {
        setNotes(EngineState::ready(!owns(notesEnginePort)));
        scheduleNotesIdleStop();
        co_return true;
    }
    if (!m_enabled || m_recording)
        co_return false;
    try {
        ensureKeyFile();
    } catch (const std::exception& failure) {
        qWarning() << "The key of the notes engine could not be made:" << failure.what();
    }
    const auto found = layout();
    const auto spec = found ? found->notes(m_keyFile, m_parts.machine) : std::nullopt;
    if (!spec) {
        setNotes(EngineState::missing("Notes engine files weren't found."));
        co_return false;
    }
    setNotes(EngineState::starting());
    const auto state = co_await launch(*spec);
    if (!self || !state)
        co_return false;
    setNotes(*state);
    if (!state->isReady())
        co_return false;
    scheduleNotesIdleStop();
    co_return true;
}

void EngineSupervisor::stopNotes() {
    m_notesIdle.request_stop();
    if (const auto process = take(notesEnginePort)) {
        process->terminate();
        setNotes(EngineState::stopped());
    }
}

void EngineSupervisor::scheduleNotesIdleStop() {
    m_notesIdle.request_stop();
    if (!owns(notesEnginePort))
        return;
    m_notesIdle = std::stop_source();
    m_tasks.spawn(stopNotesWhenIdle(m_notesIdle.get_token()));
}

Task<> EngineSupervisor::stopNotesWhenIdle(std::stop_token stop) {
    const QPointer<EngineSupervisor> self(this);
    const bool idle = co_await m_parts.sleep(notesIdleLimit, stop);
    if (self && idle && !stop.stop_requested())
        stopNotes();
}

void EngineSupervisor::ensureKeyFile() const {
    std::error_code unreadable;
    if (std::filesystem::exists(m_keyFile, unreadable))
        return;
    makePrivateDirectories(m_keyFile.parent_path());
    std::array<char, 32> secret{};
    if (::getrandom(secret.data(), secret.size(), 0) != static_cast<ssize_t>(secret.size()))
        return;
    const QByteArray text = QByteArray(secret.data(), secret.size())
                                .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    writeFileAtomically(m_keyFile, text.toStdString() + "\n");
}

} // namespace varnet
