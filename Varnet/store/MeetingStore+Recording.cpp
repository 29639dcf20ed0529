#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/async/MainThread.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/capture/AudioRecorder.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/capture/SystemAudioRecorder.h"
#include "Varnet/platform/AppInfo.h"
#include "Varnet/platform/LoopbackHTTP.h"
#include "Varnet/platform/SleepInhibitor.h"
#include "Varnet/speech/LiveSpeech.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"

#include <QDebug>

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnet {

namespace {

constexpr auto mixedName = "meeting.wav";
constexpr auto systemName = "system.wav";
constexpr auto microphoneName = "microphone.wav";

/// Live text that an engine never completes stops growing there.
constexpr std::size_t maximumPartialBytes = 256 * 1024;

/// The sentence of what a task threw; absent when it ended well.
Task<std::optional<std::string>> failureOf(Task<> task) {
    try {
        co_await task;
    } catch (...) {
        co_return describe(std::current_exception());
    }
    co_return std::nullopt;
}

std::exception_ptr cancellation() {
    return std::make_exception_ptr(Cancelled());
}

void throwIfGone(const std::stop_token& gone) {
    if (gone.stop_requested())
        throw Cancelled();
}

bool canBeRecordedInto(const Meeting& meeting) {
    return MeetingPresentation::isFromCalendar(meeting) && !meeting.source->cancelled && !meeting.audioFilename;
}

std::string microphoneOnlyMessage() {
    const std::string name = AppInfo::name();
    return "Recording your microphone only. To also record the other people in the call, turn on " + name +
           " in System Settings › Privacy & Security › Screen & System Audio Recording, then quit and reopen " + name +
           ".";
}

} // namespace

Task<> MeetingStore::startRecording() {
    if (m_recording || m_busy || !writable())
        co_return;
    const auto gone = m_tasks->stopToken();
    assign(m_busy, true, &MeetingStore::busyChanged);
    setError({});
    clearPartial();

    std::optional<Uuid> id;
    std::exception_ptr failure;
    try {
        id = meetingToRecord();
        co_await beginCapture(*id);
    } catch (...) {
        failure = std::current_exception();
    }
    if (gone.stop_requested())
        co_return;
    if (failure)
        co_await abandonStart(id, failure);
    else
        recordingStarted(*id);
}

bool MeetingStore::hasBeenRecorded(const CalendarEvent& event) const {
    return std::ranges::any_of(m_meetings, [key = event.source.key()](const Meeting& meeting) {
        return meeting.audioFilename && meeting.source && meeting.source->key() == key;
    });
}

Uuid MeetingStore::meetingToRecord() {
    const Meeting* chosen = selected();
    if (chosen && canBeRecordedInto(*chosen))
        return chosen->id;
    const auto event = m_calendarLookup ? m_calendarLookup() : std::nullopt;
    if (event && !hasBeenRecorded(*event) && useCalendarEvent(*event) && canBeRecordedInto(*selected()))
        return *m_selectedID;
    return create(MeetingPresentation::recordingTitle(Date::now())).id;
}

Task<> MeetingStore::beginCapture(Uuid id) {
    const auto gone = m_tasks->stopToken();
    const CaptureMode mode = m_captureMode;
    setRecordingID(id);
    // From this save on a crash leaves a record that the next start recognises.
    update(id, [&](Meeting& meeting) {
        meeting.audioFilename = mode == CaptureMode::meeting ? mixedName : microphoneName;
        meeting.status = MeetingStatus::preparingMicrophone;
    });

    co_await checkRuntime();
    throwIfGone(gone);
    if (m_runtimeReady)
        co_await connectLive(id);
    throwIfGone(gone);

    m_levels->reset(mode == CaptureMode::meeting);
    if (mode == CaptureMode::meeting)
        co_await startMeetingCapture(id);
    else
        co_await startMicrophone(id);
}

Task<> MeetingStore::connectLive(Uuid id) {
    const auto gone = m_tasks->stopToken();
    const auto session = m_parts.makeLiveSpeech(m_parts.speechURL);
    const std::weak_ptr<LiveSpeech> weak = session;
    LiveSpeech::EventHandler onEvent = [this, gone, id](SpeechEvent event) {
        return deliver(this, gone, std::move(event), id);
    };
    LiveSpeech::ErrorHandler onError = [this, gone, id, weak](const std::exception_ptr& failure) {
        postToMain([=, this] {
            if (!gone.stop_requested())
                liveFailed(weak, failure, id);
        });
    };

    const auto failure = co_await failureOf(session->connect(std::move(onEvent), std::move(onError), gone));
    if (failure || gone.stop_requested())
        session->close(cancellation(), false);
    if (gone.stop_requested())
        co_return;
    if (failure) {
        qWarning("No live transcript: %s", failure->c_str());
        setError("Live transcription unavailable. Audio will still be recorded locally.");
    } else {
        m_live = session;
    }
}

Task<> MeetingStore::startMicrophone(Uuid id) {
    const auto recorder = std::make_shared<AudioRecorder>(m_parts.makeCapture());
    m_recorder = recorder;
    co_await recorder->start(m_repository->directory(id) / microphoneName, captureCallbacks(id, recorder));
}

/// Both tracks; when they cannot be had, whatever the reason, the microphone alone.
Task<> MeetingStore::startMeetingCapture(Uuid id) {
    const auto gone = m_tasks->stopToken();
    const auto folder = m_repository->directory(id);
    const auto recorder = std::make_shared<SystemAudioRecorder>(m_parts.makeCapture());
    m_systemRecorder = recorder;
    const auto failure = co_await failureOf(recorder->start(folder / mixedName, captureCallbacks(id, recorder)));
    if (!failure)
        co_return;

    qWarning("The call is not recorded: %s", failure->c_str());
    co_await failureOf(recorder->stop());
    throwIfGone(gone);
    m_systemRecorder.reset();
    for (const auto* name : {mixedName, systemName}) {
        std::error_code ignored;
        std::filesystem::remove(folder / name, ignored);
    }
    m_levels->reset(false);
    co_await startMicrophone(id);
    throwIfGone(gone);
    update(id, [](Meeting& meeting) { meeting.audioFilename = microphoneName; });
    setError(microphoneOnlyMessage());
}

void MeetingStore::recordingStarted(Uuid id) {
    m_recording = true;
    m_recordingStartedAt = Date::now();
    Q_EMIT recordingChanged();
    Q_EMIT recordingStartedAtChanged();
    setStatus(id, m_live ? MeetingStatus::recordingLive : MeetingStatus::recordingOffline);
    assign(m_busy, false, &MeetingStore::busyChanged);
    m_tasks->spawn(inhibitSleep(id));
}

Task<> MeetingStore::abandonStart(std::optional<Uuid> id, std::exception_ptr cause) {
    const auto gone = m_tasks->stopToken();
    if (const auto recorder = m_recorder)
        co_await failureOf(recorder->stop());
    if (gone.stop_requested())
        co_return;
    m_recorder.reset();
    if (const auto recorder = m_systemRecorder)
        co_await failureOf(recorder->stop());
    if (gone.stop_requested())
        co_return;
    m_systemRecorder.reset();

    closeLive();
    setRecordingID({});
    if (id)
        setStatus(*id, MeetingStatus::didNotStart);
    setError(describe(cause));
    assign(m_busy, false, &MeetingStore::busyChanged);
}

RecorderCallbacks MeetingStore::captureCallbacks(Uuid id, const std::shared_ptr<void>& recorder) {
    const auto gone = m_tasks->stopToken();
    const std::weak_ptr<void> weak = recorder;
    RecorderCallbacks callbacks;
    callbacks.onPCM = [session = m_live](std::vector<std::byte> pcm) {
        if (session)
            session->append(pcm);
    };
    callbacks.onLevels = [this, gone](float microphone, std::optional<float> call) {
        postToMain([=, this] {
            if (!gone.stop_requested())
                m_levels->apply(microphone, call);
        });
    };
    callbacks.onNotice = [this, gone, id, weak](const std::string& notice) {
        postToMain([=, this] {
            if (!gone.stop_requested() && capturesWith(weak, id))
                setError(notice);
        });
    };
    callbacks.onError = [this, gone, id, weak](const std::exception_ptr& failure) {
        postToMain([=, this] {
            if (!gone.stop_requested() && capturesWith(weak, id))
                m_tasks->spawn(captureFailed(failure));
        });
    };
    return callbacks;
}

/// False for a recorder that has been given up, so that its late failure does not end the one that replaced it.
bool MeetingStore::capturesWith(const std::weak_ptr<void>& recorder, Uuid id) const {
    const auto current = recorder.lock();
    return m_recordingID == id && current && (current == m_recorder || current == m_systemRecorder);
}

Task<> MeetingStore::captureFailed(std::exception_ptr failure) {
    setError("Recording error: " + describe(failure));
    co_await stopRecording(failure);
}

Task<> MeetingStore::deliver(MeetingStore* store, std::stop_token gone, SpeechEvent event, Uuid id) {
    if (!gone.stop_requested())
        store->receive(event, id);
    co_return;
}

void MeetingStore::liveFailed(const std::weak_ptr<LiveSpeech>& session, const std::exception_ptr& failure, Uuid id) {
    if (m_recordingID != id || !m_live || session.lock() != m_live)
        return;
    setError("Live transcription interrupted: " + describe(failure) + ". Recording continues locally.");
    closeLive();
    clearPartial();
    if (m_recording)
        setStatus(id, MeetingStatus::recordingOffline);
}

void MeetingStore::closeLive() {
    if (const auto session = std::exchange(m_live, nullptr))
        session->close(cancellation(), false);
}

Task<> MeetingStore::inhibitSleep(Uuid id) {
    const auto gone = m_tasks->stopToken();
    auto inhibitor = co_await m_parts.inhibitSleep(QStringLiteral("A meeting is being recorded"));
    if (!gone.stop_requested() && m_recording && m_recordingID == id)
        m_sleepInhibitor = std::move(inhibitor);
}

void MeetingStore::receive(const SpeechEvent& event, Uuid id) {
    if (m_recordingID != id)
        return;
    const auto turnsOf = [](const SpeechEvent& spoken) {
        return TranscriptTurn::group(spoken.words.value_or(std::vector<TranscriptWord>()), "Speaker", 0);
    };
    if (event.type.ends_with(".delta")) {
        std::string text = event.transcript ? *event.transcript : m_partial + event.delta.value_or("");
        if (text.size() <= maximumPartialBytes)
            assign(m_partial, std::move(text), &MeetingStore::partialChanged);
        assign(m_partialTurns, turnsOf(event), &MeetingStore::partialTurnsChanged);
    } else if (event.type.ends_with(".completed")) {
        auto turns = turnsOf(event);
        const Meeting* recorded = meeting(id);
        if (turns.empty() && event.transcript && !event.transcript->empty() && recorded) {
            TranscriptTurn turn;
            turn.start = recorded->turns.empty() ? 0 : recorded->turns.back().end;
            turn.end = event.audio_processed.value_or(0);
            turn.speaker = "Unassigned";
            turn.originalText = *event.transcript;
            turns.push_back(std::move(turn));
        }
        if (!turns.empty())
            appendFinalizedTurns(std::move(turns), id);
        clearPartial();
    }
}

void MeetingStore::appendFinalizedTurns(std::vector<TranscriptTurn> turns, Uuid id) {
    Meeting* recorded = find(id);
    if (!recorded)
        return;
    const auto count = static_cast<int>(turns.size());
    std::ranges::move(turns, std::back_inserter(recorded->turns));
    persist(id);
    Q_EMIT turnsAppended(id, count);
}

Task<> MeetingStore::stopRecording(std::exception_ptr captureError) {
    if (!m_recording || !m_recordingID)
        co_return;
    const auto gone = m_tasks->stopToken();
    const Uuid id = *m_recordingID;
    m_recording = false;
    m_busy = true;
    m_recordingStartedAt.reset();
    Q_EMIT recordingChanged();
    Q_EMIT busyChanged();
    Q_EMIT recordingStartedAtChanged();

    const bool closed = co_await closeCapture();
    if (gone.stop_requested())
        co_return;
    const bool incomplete = captureError || !closed;
    m_sleepInhibitor.reset();
    setStatus(id, MeetingStatus::finishingTranscript);

    const bool transcribed = co_await finishTranscript(incomplete);
    if (gone.stop_requested())
        co_return;
    clearPartial();
    setRecordingID({});
    assign(m_busy, false, &MeetingStore::busyChanged);
    setStatus(id, incomplete    ? MeetingStatus::captureIncomplete
                  : transcribed ? MeetingStatus::savedWithTranscript
                                : MeetingStatus::savedRetryTranscription);
    attributeSpeakers(id);
}

/// Whether the files were closed without a failure.
Task<bool> MeetingStore::closeCapture() {
    const auto gone = m_tasks->stopToken();
    bool clean = true;
    if (const auto recorder = m_recorder) {
        const auto failure = co_await failureOf(recorder->stop());
        if (gone.stop_requested())
            co_return false;
        if (failure)
            setError("Microphone capture could not be finalized. Saved audio may be incomplete: " + *failure);
        clean = clean && !failure;
        m_recorder.reset();
    }
    if (const auto recorder = m_systemRecorder) {
        const auto failure = co_await failureOf(recorder->stop());
        if (gone.stop_requested())
            co_return false;
        if (failure)
            setError("Capture stopped with an error. Saved audio remains available: " + *failure);
        clean = clean && !failure;
        m_systemRecorder.reset();
    }
    co_return clean;
}

/// Whether there was a live session and it ended with everything acknowledged. Its last events still arrive here.
Task<bool> MeetingStore::finishTranscript(bool captureIncomplete) {
    const auto gone = m_tasks->stopToken();
    const auto session = std::exchange(m_live, nullptr);
    if (!session)
        co_return false;
    const auto failure = co_await failureOf(session->finish(gone));
    if (gone.stop_requested() || !failure)
        co_return !failure;
    const std::string message = "Live transcript may be incomplete: " + *failure;
    if (captureIncomplete)
        setError(m_error ? *m_error + '\n' + message : message);
    else
        setError("Audio was saved. " + message);
    co_return false;
}

void MeetingStore::setRecordingID(std::optional<Uuid> id) {
    m_recordingEncoder = {};
    assign(m_recordingID, id, &MeetingStore::recordingIDChanged);
}

void MeetingStore::setStatus(Uuid id, std::string_view status) {
    update(id, [&](Meeting& meeting) { meeting.status = status; });
}

void MeetingStore::clearPartial() {
    assign(m_partial, {}, &MeetingStore::partialChanged);
    assign(m_partialTurns, {}, &MeetingStore::partialTurnsChanged);
}

} // namespace varnet
