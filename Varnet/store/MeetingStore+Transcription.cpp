#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/async/MainThread.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/async/Worker.h"
#include "Varnet/capture/AudioFailure.h"
#include "Varnet/capture/AudioFileConverter.h"
#include "Varnet/speech/SpeechClient.h"
#include "Varnet/store/MeetingStore.h"

#include <algorithm>
#include <utility>

namespace varnet {

namespace fs = std::filesystem;

namespace {

constexpr auto importedName = "imported.wav";

/// What the engine heard becomes the transcript; its text is not lost when it comes without timed words.
void apply(const SpeechResponse& response, Meeting& meeting) {
    meeting.turns = TranscriptTurn::group(response.words.value_or(std::vector<TranscriptWord>()), "Speaker", 0);
    if (meeting.turns.empty() && !response.text.empty()) {
        TranscriptTurn whole;
        whole.speaker = "Unassigned";
        whole.originalText = response.text;
        meeting.turns.push_back(std::move(whole));
    }
    meeting.status = MeetingStatus::transcribed;
}

/// A part of a file is of no use to anybody, and may have filled the disk.
void convertOrRemove(const fs::path& source, const fs::path& target, const std::function<void(double)>& onProgress,
                     const std::stop_token& stop) {
    try {
        convertFile(source, target, onProgress, stop);
    } catch (...) {
        std::error_code ignored;
        fs::remove(target, ignored);
        throw;
    }
}

} // namespace

std::stop_token MeetingStore::beginAudioWork(Uuid id, bool imports) {
    m_audioWorkStop = {};
    AudioWork work;
    work.meetingID = id;
    work.imports = imports;
    if (imports)
        work.converted = 0;
    assign(m_audioWork, work, &MeetingStore::audioWorkChanged);
    return m_audioWorkStop.get_token();
}

void MeetingStore::setConverted(std::optional<double> share) {
    AudioWork work = *m_audioWork;
    work.converted = share;
    assign(m_audioWork, work, &MeetingStore::audioWorkChanged);
}

void MeetingStore::cancelAudioWork() {
    if (!m_audioWork)
        return;
    AudioWork work = *m_audioWork;
    work.cancelling = true;
    assign(m_audioWork, work, &MeetingStore::audioWorkChanged);
    m_audioWorkStop.request_stop();
}

/// Last of all: whoever hears of the end may begin the next at once.
void MeetingStore::endAudioWork() {
    assign(m_audioWork, {}, &MeetingStore::audioWorkChanged);
    assign(m_busy, false, &MeetingStore::busyChanged);
}

Task<> MeetingStore::retryTranscription(Uuid id) {
    const Meeting* present = meeting(id);
    const auto audio = present ? audioURL(*present) : std::nullopt;
    if (m_busy || m_recording || !writable() || !audio)
        co_return;
    const auto gone = m_tasks->stopToken();
    assign(m_busy, true, &MeetingStore::busyChanged);
    setError({});
    const auto stop = beginAudioWork(id, false);

    std::exception_ptr failure;
    try {
        co_await transcribeAgain(id, *audio, stop);
    } catch (...) {
        failure = std::current_exception();
    }
    if (gone.stop_requested())
        co_return;
    if (!failure) {
        attributeSpeakers(id);
    } else if (meeting(id)) {
        setStatus(id, MeetingStatus::transcriptionNeedsAttention);
        setError("Saved audio and the previous transcript are retained: " + describe(failure));
    }
    endAudioWork();
}

Task<> MeetingStore::transcribeAgain(Uuid id, fs::path audio, std::stop_token stop) {
    const auto gone = m_tasks->stopToken();
    const Meeting archived = *meeting(id);
    m_repository->archiveBeforeTranscription(archived);
    setStatus(id, MeetingStatus::transcribing);
    SpeechResponse response;
    try {
        response = co_await SpeechClient::transcribe(std::move(audio), m_parts.speechURL, stop);
    } catch (const Cancelled&) {
        throw Failure("The transcription was cancelled.");
    }
    const Meeting* present = gone.stop_requested() ? nullptr : meeting(id);
    if (!present)
        co_return;
    // What was corrected or named while the engine worked is in no version yet.
    if (present->turns != archived.turns || present->speakerNames != archived.speakerNames)
        m_repository->archiveBeforeTranscription(*present);
    update(id, [&](Meeting& meeting) {
        apply(response, meeting);
        meeting.speakerNames.reset(); // the new numbers have nothing to do with the old ones
    });
}

Task<> MeetingStore::importAudio(fs::path file, bool select) {
    if (m_busy || m_recording || !writable())
        co_return;
    const auto gone = m_tasks->stopToken();
    assign(m_busy, true, &MeetingStore::busyChanged);
    setError({});

    std::optional<Uuid> id;
    std::exception_ptr failure;
    try {
        id = create(file.stem().string(), select).id;
        const auto stop = beginAudioWork(*id, true);
        setStatus(*id, MeetingStatus::preparingAudio);
        co_await convertAndTranscribe(*id, std::move(file), stop);
    } catch (...) {
        failure = std::current_exception();
    }
    if (gone.stop_requested())
        co_return;
    if (failure && (!id || meeting(*id))) {
        if (id)
            setStatus(*id, MeetingStatus::importNeedsAttention);
        setError(describe(failure));
    }
    endAudioWork();
}

Task<> MeetingStore::convertAndTranscribe(Uuid id, fs::path source, std::stop_token stop) {
    const auto gone = m_tasks->stopToken();
    const fs::path target = m_repository->directory(id) / importedName;
    const auto onProgress = [this, gone, id](double share) {
        postToMain([=, this] {
            // What is late belongs to work that has ended, or whose file is converted by now.
            if (!gone.stop_requested() && m_audioWork && m_audioWork->meetingID == id && m_audioWork->converted)
                setConverted(share);
        });
    };
    try {
        co_await onOwnThread([=] { convertOrRemove(source, target, onProgress, stop); });
    } catch (const Cancelled&) {
        throw Failure("The import was cancelled. The original file was not changed.");
    } catch (const AudioFailure& failure) {
        qWarning("An audio file was not converted: %s", failure.reason().c_str());
        throw;
    }
    if (gone.stop_requested() || !meeting(id))
        co_return;

    // The name only now: a meeting never names a file that is not complete.
    update(id, [](Meeting& meeting) {
        meeting.audioFilename = importedName;
        meeting.status = MeetingStatus::transcribing;
    });
    setConverted({});
    SpeechResponse response;
    try {
        response = co_await SpeechClient::transcribe(target, m_parts.speechURL, stop);
    } catch (const Cancelled&) {
        throw Failure("The import was cancelled. The converted audio was kept.");
    }
    if (!gone.stop_requested())
        update(id, [&](Meeting& meeting) { apply(response, meeting); });
}

void MeetingStore::attributeSpeakers(Uuid id) {
    const Meeting* present = meeting(id);
    if (m_repository && present && !present->turns.empty())
        m_tasks->spawn(measureSpeakers(id));
}

Task<> MeetingStore::measureSpeakers(Uuid id) {
    const auto gone = m_tasks->stopToken();
    const auto turns = std::make_shared<const std::vector<TranscriptTurn>>(meeting(id)->turns);
    // Two hours of audio on a slow disk take seconds, which a search should not have to wait for.
    const auto levels = co_await onOwnThread([turns, folder = m_repository->directory(id), gone] {
        return SpeakerAttribution::turnLevels(*turns, folder, gone);
    });
    if (levels && !gone.stop_requested())
        applySpeakerNames(id, *levels, *turns);
}

void MeetingStore::applySpeakerNames(Uuid id, const std::vector<TurnLevels>& levels,
                                     const std::vector<TranscriptTurn>& basedOn) {
    const Meeting* present = meeting(id);
    if (!present || !std::ranges::equal(present->turns, basedOn, {}, &TranscriptTurn::id, &TranscriptTurn::id))
        return;
    const auto existing = present->speakerNames.value_or(SpeakerAttribution::SpeakerNames());
    auto names =
        SpeakerAttribution::names(levels, existing, "You", present->attendees.value_or(std::vector<std::string>()));
    if (names != existing)
        update(id, [&](Meeting& meeting) { meeting.speakerNames = std::move(names); });
}

} // namespace varnet
