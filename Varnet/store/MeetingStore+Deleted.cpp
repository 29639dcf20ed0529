#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/store/DeletionCommand.h"
#include "Varnet/store/MeetingStore.h"

#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace varnet {

namespace {

constexpr auto storageUnavailable = "Meeting storage is unavailable.";

/// One line of a message for each meeting that an operation failed on.
class FailureLines {
public:
    /// Does the work for one meeting; whether it went well.
    template <class Work>
    bool attempt(const Meeting* meeting, Work work) {
        const std::string title = meeting && !meeting->title.empty() ? meeting->title : "A meeting";
        try {
            work();
            return true;
        } catch (const std::exception& failure) {
            m_lines += '\n' + title + ": " + failure.what();
            return false;
        }
    }

    bool empty() const { return m_lines.empty(); }
    const std::string& text() const { return m_lines; }

private:
    std::string m_lines;
};

/// Equal dates keep their order.
template <class Record>
void sortNewestFirst(std::vector<Record>& records, Date Record::* date) {
    std::vector<std::pair<double, std::size_t>> order;
    order.reserve(records.size());
    for (std::size_t place = 0; place < records.size(); ++place)
        order.emplace_back(-(records[place].*date).secondsSinceReference, place);
    std::ranges::sort(order);
    std::vector<Record> sorted;
    sorted.reserve(records.size());
    for (const auto& [age, place] : order)
        sorted.push_back(std::move(records[place]));
    records = std::move(sorted);
}

} // namespace

const DeletedMeeting* MeetingStore::deletedMeeting(const Uuid& id) const {
    const auto found =
        std::ranges::find(m_deletedMeetings, id, [](const DeletedMeeting& deleted) { return deleted.meeting.id; });
    return found == m_deletedMeetings.end() ? nullptr : &*found;
}

std::optional<std::string> MeetingStore::deletionBlocker(const std::set<Uuid>& ids) const {
    if (ids.empty())
        return "Select a meeting first.";
    if (m_recordingID && ids.contains(*m_recordingID))
        return "Stop recording before deleting this meeting.";
    const bool underWay = std::ranges::any_of(ids, [this](const Uuid& id) {
        if (id == m_notesMeetingID)
            return true;
        const Meeting* meeting = m_busy ? this->meeting(id) : nullptr;
        return meeting &&
               (meeting->status == MeetingStatus::preparingAudio || meeting->status == MeetingStatus::transcribing);
    });
    if (underWay)
        return "Wait for the current transcription or notes to finish, then delete.";
    return {};
}

std::set<Uuid> MeetingStore::deleteMeetings(const std::set<Uuid>& ids, QUndoStack* undoManager) {
    if (auto blocker = deletionBlocker(ids)) {
        setError(std::move(blocker));
        return {};
    }
    if (!writable()) {
        setError(storageUnavailable);
        return {};
    }
    const Date now = Date::now();
    std::set<Uuid> moved;
    FailureLines failures;
    for (const Uuid& id : ids) {
        const bool done = failures.attempt(meeting(id), [&] {
            // Only the memory has edits that cannot be saved: a folder that moved without them would lose them.
            if (m_saveFailures.contains(id))
                persist(id);
            if (const auto pending = m_saveFailures.find(id); pending != m_saveFailures.end())
                throw Failure(pending->second);
            m_repository->moveToDeleted(id, now);
        });
        if (done)
            moved.insert(id);
    }
    if (!moved.empty())
        takeOut(moved, now);
    if (!failures.empty())
        setError("Some meetings could not be deleted. Their files were left in place." + failures.text());
    if (moved.empty())
        return moved;
    if (undoManager)
        undoManager->push(new DeletionCommand(*this, DeletionCommand::Kind::deletes, moved));
    assign(m_pendingUndo, DeletionReceipt{Uuid::random(), {moved.begin(), moved.end()}},
           &MeetingStore::pendingUndoChanged);
    return moved;
}

/// The selection moves first, while every meeting that it may name is still there.
void MeetingStore::takeOut(const std::set<Uuid>& moved, Date deletedAt) {
    const auto gone = [&](const Meeting& meeting) { return moved.contains(meeting.id); };
    if (m_selectedID && moved.contains(*m_selectedID)) {
        const auto place = std::ranges::find(m_meetings, *m_selectedID, &Meeting::id);
        auto next = std::find_if_not(place, m_meetings.end(), gone);
        if (next == m_meetings.end()) {
            const auto above = std::find_if_not(std::make_reverse_iterator(place), m_meetings.rend(), gone);
            next = above == m_meetings.rend() ? m_meetings.end() : std::prev(above.base());
        }
        setSelectedID(next == m_meetings.end() ? std::nullopt : std::optional(next->id));
    }
    auto rows = m_librarySelection;
    std::erase_if(rows, [&](const Uuid& id) { return moved.contains(id); });
    if (rows.empty() && m_selectedID)
        rows.insert(*m_selectedID);
    setLibrarySelection(std::move(rows));

    for (auto& meeting : m_meetings)
        if (gone(meeting))
            m_deletedMeetings.push_back({std::move(meeting), deletedAt});
    std::erase_if(m_meetings, gone); // by the ids, which the moves above leave
    sortNewestFirst(m_deletedMeetings, &DeletedMeeting::deletedAt);
    Q_EMIT meetingsChanged();
    Q_EMIT deletedMeetingsChanged();
}

std::set<Uuid> MeetingStore::restoreMeetings(const std::set<Uuid>& ids, QUndoStack* undoManager) {
    if (!writable()) {
        setError(storageUnavailable);
        return {};
    }
    std::set<Uuid> restored;
    FailureLines failures;
    for (const Uuid& id : ids) {
        const DeletedMeeting* deleted = deletedMeeting(id);
        const bool done = failures.attempt(deleted ? &deleted->meeting : nullptr, [&] {
            if (meeting(id)) // its folder may have gone, but not its place in the library
                throw MeetingTrashError(MeetingTrashError::Kind::alreadyInLibrary);
            m_meetings.push_back(m_repository->restoreDeleted(id));
        });
        if (done)
            restored.insert(id);
    }
    if (!restored.empty()) {
        sortNewestFirst(m_meetings, &Meeting::createdAt);
        Q_EMIT meetingsChanged();
        if (!m_selectedID)
            setSelectedID(m_meetings.front().id);
    }
    forgetDeleted(restored, failures.empty());
    withdrawUndo(ids);
    if (!failures.empty())
        setError("Some meetings could not be restored." + failures.text());
    if (undoManager && !restored.empty())
        undoManager->push(new DeletionCommand(*this, DeletionCommand::Kind::restores, restored));
    return restored;
}

void MeetingStore::eraseDeleted(const std::set<Uuid>& ids) {
    if (!writable()) {
        setError(storageUnavailable);
        return;
    }
    std::set<Uuid> erased;
    FailureLines failures;
    for (const Uuid& id : ids) {
        const DeletedMeeting* deleted = deletedMeeting(id);
        if (failures.attempt(deleted ? &deleted->meeting : nullptr, [&] { m_repository->eraseDeleted(id); }))
            erased.insert(id);
    }
    forgetDeleted(erased, failures.empty());
    withdrawUndo({});
    if (!failures.empty())
        setError("Some meetings could not be erased." + failures.text());
}

/// What failed may have lost its files since they were listed.
void MeetingStore::forgetDeleted(const std::set<Uuid>& ids, bool allWentWell) {
    if (!allWentWell)
        m_deletedMeetings = m_repository->loadDeleted(Date::now());
    std::erase_if(m_deletedMeetings, [&](const DeletedMeeting& deleted) { return ids.contains(deleted.meeting.id); });
    Q_EMIT deletedMeetingsChanged();
}

/// Ends the offer to undo a delete once nothing is left of it but what these ids name.
void MeetingStore::withdrawUndo(const std::set<Uuid>& ids) {
    if (m_pendingUndo && std::ranges::all_of(m_pendingUndo->meetingIDs,
                                             [&](const Uuid& id) { return ids.contains(id) || !deletedMeeting(id); }))
        dismissPendingUndo();
}

void MeetingStore::dismissPendingUndo() {
    assign(m_pendingUndo, {}, &MeetingStore::pendingUndoChanged);
}

} // namespace varnet
