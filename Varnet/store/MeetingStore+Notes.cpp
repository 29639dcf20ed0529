#include "MeetingCore/base/Failures.h"
#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/notes/NotesFailure.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/async/Worker.h"
#include "Varnet/notes/NotesClient.h"
#include "Varnet/store/MeetingStore.h"

#include <memory>
#include <utility>

namespace varnet {

namespace {

void requireWanted(const std::stop_token& stop) {
    if (stop.stop_requested())
        throw Cancelled();
}

/// A draft of one transcript says nothing about another one.
void requireTranscript(const Meeting* present, const Meeting& drafted) {
    if (!present || present->turns != drafted.turns || present->speakerNames != drafted.speakerNames)
        throw NotesFailure(NotesFailure::Kind::sourceChanged);
}

} // namespace

std::vector<std::string> MeetingStore::removedPoints(const Meeting& meeting) const {
    const auto found = m_removedPoints.find(meeting.id);
    const bool ofThisDraft = found != m_removedPoints.end() && meeting.generatedNotes &&
                             meeting.generatedNotes->createdAt == found->second.createdAt;
    return ofThisDraft ? found->second.reasons : std::vector<std::string>();
}

void MeetingStore::generateNotes(std::optional<Uuid> meetingID) {
    const Meeting* meeting = meetingID ? this->meeting(*meetingID) : nullptr;
    if (!meeting)
        meeting = selected();
    if (m_busy || m_recording || !writable() || !meeting || meeting->turns.empty())
        return;
    // Whoever hears of it may already change the library.
    Meeting drafted = *meeting;
    const std::stop_source task;
    assign(m_busy, true, &MeetingStore::busyChanged);
    setError({});
    assign(m_notesTask, task, &MeetingStore::notesTaskChanged);
    setNotesProgress("Starting local notes model…", {});
    assign(m_notesMeetingID, drafted.id, &MeetingStore::notesMeetingIDChanged);
    m_tasks->spawn(draftNotes(std::move(drafted), task.get_token()));
}

void MeetingStore::setNotesProgress(std::string text, NotesSteps steps) {
    m_notesSteps = steps;
    assign(m_notesProgress, std::move(text), &MeetingStore::notesProgressChanged);
}

/// The store is free last of all: whoever hears of that may begin the next at once.
void MeetingStore::endNotes() {
    setNotesProgress({}, {});
    assign(m_notesTask, {}, &MeetingStore::notesTaskChanged);
    assign(m_notesMeetingID, {}, &MeetingStore::notesMeetingIDChanged);
    assign(m_busy, false, &MeetingStore::busyChanged);
}

Task<> MeetingStore::draftNotes(Meeting meeting, std::stop_token stop) {
    const auto gone = m_tasks->stopToken();
    std::exception_ptr failure;
    try {
        co_await replaceDraft(std::move(meeting), stop);
    } catch (...) {
        failure = std::current_exception();
    }
    if (gone.stop_requested())
        co_return;
    if (failure && stop.stop_requested()) {
        setError("Notes generation cancelled. The previous draft was kept.");
    } else if (failure) {
        // The sentence may hold words of the meeting, which are nothing for the log.
        qWarning("The notes of a meeting were not written.");
        assign(m_error, "Notes generation failed: " + describe(failure), &MeetingStore::errorChanged);
    }
    endNotes();
}

/// The end of the store is a stop as well: after a wait that has not thrown for it, the store is there.
Task<> MeetingStore::replaceDraft(Meeting meeting, std::stop_token stop) {
    const Uuid id = meeting.id;
    const auto removed = std::make_shared<std::vector<std::string>>();
    NotesClient client;
    client.baseURL = m_parts.notesURL;
    const auto onProgress = [this, stop](int step, int count) {
        if (!stop.stop_requested())
            setNotesProgress("Generating part " + std::to_string(step) + " of " + std::to_string(count), {step, count});
    };
    const auto onRemoved = [removed](const std::string& reason) { removed->push_back(reason); };
    GeneratedNotes draft = co_await client.generate(std::move(meeting), onProgress, {}, onRemoved, stop);
    requireWanted(stop);

    const Meeting* present = this->meeting(id);
    if (!present)
        throw NotesFailure(NotesFailure::Kind::sourceChanged);
    const auto drafted = std::make_shared<const Meeting>(*present);
    const std::string hash =
        co_await onWorker([drafted] { return NoteGrounding::hash(NoteGrounding::sources(*drafted)); }, stop);
    if (hash != draft.transcriptHash)
        throw NotesFailure(NotesFailure::Kind::sourceChanged);
    present = this->meeting(id);
    requireTranscript(present, *drafted); // it could be edited during the wait

    if (present->generatedNotes)
        m_repository->archiveBeforeTranscription(*present);
    m_removedPoints.insert_or_assign(id, RemovedPoints{draft.createdAt, std::move(*removed)});
    update(id, [&](Meeting& meeting) { meeting.generatedNotes = std::move(draft); });
}

} // namespace varnet
