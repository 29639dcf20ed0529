#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/calendar/CalendarEvents.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/async/Worker.h"
#include "Varnet/store/MeetingStore.h"

#include <sys/stat.h>

#include <algorithm>
#include <map>
#include <utility>

namespace varnet {

namespace fs = std::filesystem;

namespace {

/// What the user's other programs give their files.
mode_t ordinaryFileMode() {
    const mode_t mask = umask(077); // there is no way only to look; what another thread makes meanwhile is private
    umask(mask);
    return 0666 & ~mask;
}

} // namespace

void MeetingStore::exportSelected(const fs::path& file) {
    const Meeting* meeting = selected();
    if (!meeting)
        return;
    try {
        writeFileAtomically(file, meeting->markdown(), ordinaryFileMode());
    } catch (const std::exception& failure) {
        setError(failure.what());
    }
}

const Meeting* MeetingStore::meetingFrom(const MeetingSource& source) const {
    const auto found = std::ranges::find_if(m_meetings, [key = source.key()](const Meeting& meeting) {
        return meeting.source && meeting.source->key() == key;
    });
    return found == m_meetings.end() ? nullptr : &*found;
}

bool MeetingStore::saveImported(Meeting meeting) {
    constexpr auto notSaved = "Could not save imported meeting: ";
    if (m_recording) {
        setError("Finish recording before importing a meeting.");
        return false;
    }
    if (!writable()) {
        setError("Meeting storage is unavailable.");
        return false;
    }
    const Meeting* existing = meeting.source ? meetingFrom(*meeting.source) : nullptr;
    const Uuid id = existing ? existing->id : meeting.id;
    try {
        if (existing)
            m_repository->archiveBeforeTranscription(*existing);
        else
            m_repository->save(meeting);
    } catch (const std::exception& failure) {
        setError(std::string(notSaved) + failure.what());
        return false;
    }
    if (existing) {
        update(id, [&](Meeting& kept) {
            kept.source = std::move(meeting.source);
            kept.importedContent = std::move(meeting.importedContent);
        });
    } else {
        m_meetings.insert(m_meetings.begin(), std::move(meeting));
        Q_EMIT meetingInserted(id);
    }
    setSelectedID(id);
    const auto failure = m_saveFailures.find(id);
    if (failure == m_saveFailures.end())
        return true;
    setError("Imported changes have not been saved: " + failure->second);
    return false;
}

void MeetingStore::setCalendarLookup(CalendarLookup lookup) {
    m_calendarLookup = std::move(lookup);
}

bool MeetingStore::useCalendarEvent(const CalendarEvent& event) {
    const Meeting* existing = meetingFrom(event.source);
    if (!existing)
        return saveImported(event.makeMeeting());
    setSelectedID(existing->id);
    return true;
}

void MeetingStore::reconcileCalendar(const std::vector<CalendarEvent>& events) {
    std::map<std::string, Uuid> known;
    for (const auto& meeting : m_meetings)
        if (meeting.source)
            known.emplace(meeting.source->key(), meeting.id);
    for (const auto& event : events) {
        const auto found = known.find(event.source.key());
        if (found == known.end())
            continue;
        update(found->second, [&](Meeting& meeting) {
            meeting.source = event.source;
            if (!meeting.audioFilename)
                meeting.status = event.source.cancelled ? MeetingStatus::cancelled : MeetingStatus::scheduled;
        });
    }
}

Task<MeetingHistory> MeetingStore::history(Uuid id) const {
    if (!m_repository)
        throw Failure("Meeting storage is unavailable.");
    return onWorker([repository = *m_repository, id] { return repository.history(id); });
}

void MeetingStore::restoreHistory(const MeetingHistoryEntry& entry, MeetingRestoreOptions options,
                                  const MeetingRevisions& expected) {
    const Uuid id = entry.meeting.id;
    const Meeting* current = meeting(id);
    if (m_busy || m_recording || !writable() || !current)
        throw Failure("Finish the current operation before restoring a meeting.");
    // The file may lack edits that could not be saved; the user was shown the meeting in memory.
    if (MeetingRestoration::revision(*current) != expected.current)
        throw MeetingHistoryError(MeetingHistoryError::Kind::changed);
    if (m_saveFailures.contains(id))
        persist(id);
    if (m_saveFailures.contains(id))
        throw Failure("Save this meeting's pending edits before restoring a version.");

    Meeting restored = m_repository->restore(entry, options, expected);
    Meeting* place = find(id);
    if (!place)
        throw MeetingHistoryError(MeetingHistoryError::Kind::changed);
    *place = std::move(restored);
    Q_EMIT meetingChanged(id);
}

} // namespace varnet
