#include "Varnet/store/MeetingStore.h"

#include "MeetingCore/audio/DurableWAV.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/capture/AudioRecorder.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/capture/SystemAudioRecorder.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "Varnet/platform/Paths.h"
#include "Varnet/platform/SleepInhibitor.h"
#include "Varnet/speech/LiveSpeech.h"

#include <QDebug>

#include <algorithm>
#include <array>
#include <chrono>

namespace varnet {

namespace fs = std::filesystem;

namespace {

constexpr auto storageUnavailable = "Meeting storage is unavailable";

/// The statuses that only a crash leaves in a stored record.
constexpr std::array interruptedStatuses{MeetingStatus::preparingMicrophone, MeetingStatus::recordingOffline,
                                         MeetingStatus::recordingLive,       MeetingStatus::finishingTranscript,
                                         MeetingStatus::preparingAudio,      MeetingStatus::transcribing,
                                         MeetingStatus::captureIncomplete};

/// Repairs what a recording of that name consists of; gives what could not be, as "title: file".
std::vector<std::string> repairAudio(const Meeting& meeting, const fs::path& folder) {
    std::vector<const char*> names;
    if (meeting.audioFilename == "meeting.wav")
        names = {"meeting.wav", "microphone.wav", "system.wav"};
    else if (meeting.audioFilename == "microphone.wav")
        names = {"microphone.wav"};

    std::vector<std::string> problems;
    for (const char* name : names) {
        std::error_code ignored;
        if (!fs::exists(folder / name, ignored)) {
            problems.push_back(meeting.title + ": missing " + name);
            continue;
        }
        try {
            DurableWAV::repair(folder / name);
        } catch (const std::exception& failure) {
            qWarning("%s", failure.what());
            problems.push_back(meeting.title + ": " + name);
        }
    }
    return problems;
}

} // namespace

MeetingStore::MeetingStore(const std::optional<fs::path>& storageRoot, StoreParts parts)
    : m_parts(std::move(parts)),
      m_storageRoot(storageRoot ? *storageRoot : Paths::applicationSupport() / "Varnet" / "meetings"),
      m_http(std::make_shared<LoopbackHTTP>()),
      m_levels(std::make_unique<CaptureLevels>()),
      m_tasks(std::make_unique<TaskScope>("MeetingStore")) {
    if (!m_parts.makeCapture)
        m_parts.makeCapture = makeAudioCapture;
    if (!m_parts.makeLiveSpeech)
        m_parts.makeLiveSpeech = [](const QUrl& url) { return LiveSpeech::make(url); };
    if (!m_parts.inhibitSleep)
        m_parts.inhibitSleep = SleepInhibitor::take;
    open();
    if (!m_meetings.empty())
        setSelectedID(m_meetings.front().id);
}

MeetingStore::~MeetingStore() {
    m_tasks->requestStop();
    m_audioWorkStop.request_stop();
    if (m_notesTask)
        m_notesTask->request_stop();
    closeLive();
}

void MeetingStore::open() {
    try {
        m_repository.emplace(m_storageRoot);
        auto loaded = m_parts.load ? m_parts.load() : m_repository->loadRecovering();
        m_meetings = std::move(loaded.meetings);
        if (!loaded.unreadable.empty())
            m_error = std::to_string(loaded.unreadable.size()) +
                      " meeting record(s) could not be read. Their files have been preserved in meeting storage.";
    } catch (const std::exception& failure) {
        m_error = std::string("Could not open meeting storage: ") + failure.what();
        return;
    }
    const Date now = Date::now();
    if (m_parts.writable) {
        recoverInterrupted();
        m_repository->eraseExpired(now, deletedRetention);
    }
    m_deletedMeetings = m_repository->loadDeleted(now);
}

void MeetingStore::recoverInterrupted() {
    std::string problems;
    for (auto& meeting : m_meetings) {
        if (std::ranges::find(interruptedStatuses, meeting.status) == interruptedStatuses.end())
            continue;
        for (const auto& problem : repairAudio(meeting, m_repository->directory(meeting.id)))
            problems += (problems.empty() ? "" : "; ") + problem;
        meeting.status = MeetingStatus::interrupted;
        persist(meeting.id);
    }
    if (!problems.empty())
        m_error =
            (m_error ? *m_error + '\n' : std::string()) +
            "Some interrupted audio could not be repaired automatically. Existing files were preserved: " + problems;
}

Meeting* MeetingStore::find(const Uuid& id) {
    const auto found = std::ranges::find(m_meetings, id, &Meeting::id);
    return found == m_meetings.end() ? nullptr : &*found;
}

const Meeting* MeetingStore::meeting(const Uuid& id) const {
    return const_cast<MeetingStore*>(this)->find(id);
}

const Meeting* MeetingStore::selected() const {
    return m_selectedID ? meeting(*m_selectedID) : nullptr;
}

void MeetingStore::setCaptureMode(CaptureMode mode) {
    assign(m_captureMode, mode, &MeetingStore::captureModeChanged);
}

void MeetingStore::setError(std::optional<std::string> error) {
    if (error && error != m_error)
        qWarning("%s", error->c_str());
    assign(m_error, std::move(error), &MeetingStore::errorChanged);
}

void MeetingStore::setSelectedID(std::optional<Uuid> id) {
    assign(m_selectedID, id, &MeetingStore::selectedIDChanged);
    if (!id)
        assign(m_librarySelection, {}, &MeetingStore::librarySelectionChanged);
    else if (!m_librarySelection.contains(*id))
        assign(m_librarySelection, {*id}, &MeetingStore::librarySelectionChanged);
}

void MeetingStore::setLibrarySelection(std::set<Uuid> ids) {
    assign(m_librarySelection, std::move(ids), &MeetingStore::librarySelectionChanged);
    if (m_librarySelection.size() == 1)
        setSelectedID(*m_librarySelection.begin());
}

Task<> MeetingStore::checkRuntime() {
    return checkHealth(m_parts.speechURL, &MeetingStore::m_runtimeReady, &MeetingStore::runtimeReadyChanged);
}

Task<> MeetingStore::checkNotesRuntime() {
    return checkHealth(m_parts.notesURL, &MeetingStore::m_notesRuntimeReady, &MeetingStore::notesRuntimeReadyChanged);
}

Task<> MeetingStore::checkHealth(QUrl engine, bool MeetingStore::* field, Signal changed) {
    const auto gone = m_tasks->stopToken();
    const auto http = m_http;
    engine.setPath(QStringLiteral("/health"));
    bool healthy = false;
    try {
        const HTTPReply reply = co_await http->get(engine, std::chrono::seconds(2), gone);
        healthy = reply.status == 200;
    } catch (const std::exception&) {
        // An engine that does not answer is an everyday state; the field says it.
    }
    if (!gone.stop_requested())
        assign(this->*field, healthy, changed);
}

void MeetingStore::persist(Uuid id) {
    const Meeting* meeting = find(id);
    if (!meeting || !m_parts.writable)
        return;
    auto failures = m_saveFailures;
    try {
        if (!m_repository)
            throw Failure(storageUnavailable);
        if (id == m_recordingID)
            m_repository->save(*meeting, m_recordingEncoder);
        else
            m_repository->save(*meeting);
        failures.erase(id);
    } catch (const std::exception& failure) {
        qWarning("A meeting was not saved: %s", failure.what());
        failures.insert_or_assign(id, failure.what());
    }
    assign(m_saveFailures, std::move(failures), &MeetingStore::saveFailuresChanged);
}

bool MeetingStore::retrySaving() {
    const auto failed = m_saveFailures;
    for (const auto& [id, reason] : failed)
        persist(id);
    return m_saveFailures.empty();
}

Meeting MeetingStore::create(const std::string& title, bool select) {
    if (!writable())
        throw Failure(storageUnavailable);
    Meeting meeting = Meeting::make(validUtf8(title));
    m_repository->save(meeting);
    m_meetings.insert(m_meetings.begin(), meeting);
    Q_EMIT meetingInserted(meeting.id);
    if (select)
        setSelectedID(meeting.id);
    return meeting;
}

void MeetingStore::setNotes(const std::string& text) {
    if (m_selectedID)
        setNotes(text, *m_selectedID);
}

void MeetingStore::setNotes(const std::string& text, Uuid id) {
    update(id, [&](Meeting& meeting) { meeting.notes = validUtf8(text); });
}

void MeetingStore::setTitle(const std::string& title, Uuid id) {
    std::string kept = trimmed(validUtf8(title));
    if (kept.empty())
        return;
    update(id, [&](Meeting& meeting) { meeting.title = std::move(kept); });
}

void MeetingStore::editTurn(Uuid turnID, const std::string& text, Uuid id) {
    update(id, [&](Meeting& meeting) {
        const auto turn = std::ranges::find(meeting.turns, turnID, &TranscriptTurn::id);
        if (turn == meeting.turns.end())
            return;
        std::string edited = validUtf8(text);
        if (edited == turn->originalText)
            turn->editedText.reset();
        else
            turn->editedText = std::move(edited);
    });
}

void MeetingStore::nameSpeaker(const std::string& label, const std::string& name, Uuid id) {
    update(id, [&](Meeting& meeting) {
        if (!meeting.speakerNames)
            meeting.speakerNames.emplace();
        std::string kept = trimmed(validUtf8(name));
        if (kept.empty() || kept == label)
            meeting.speakerNames->erase(label);
        else
            meeting.speakerNames->insert_or_assign(validUtf8(label), std::move(kept));
    });
}

std::optional<fs::path> MeetingStore::audioURL(const Meeting& meeting) const {
    if (!m_repository || !meeting.audioFilename)
        return {};
    const fs::path name(*meeting.audioFilename);
    if (name.filename() != name)
        return {};
    fs::path file = m_repository->directory(meeting.id) / name;
    std::error_code ignored;
    return fs::is_regular_file(file, ignored) ? std::optional(std::move(file)) : std::nullopt;
}

} // namespace varnet
