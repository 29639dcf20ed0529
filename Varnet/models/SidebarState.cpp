#include "Varnet/models/SidebarState.h"

#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/store/MeetingStore.h"

#include <QLocale>

namespace varnet {

namespace {

QString digits(std::size_t count) {
    return count ? QLocale().toString(static_cast<qulonglong>(count)) : QString();
}

} // namespace

SidebarState::SidebarState(const MeetingStore& store, const EngineSupervisor& engines, const RecordingClock& clock,
                           QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_clock(clock) {
    connect(&clock, &RecordingClock::changed, this, &SidebarState::elapsedChanged);
    connect(&store, &MeetingStore::meetingsChanged, this, &SidebarState::meetingCountChanged);
    connect(&store, &MeetingStore::meetingInserted, this, &SidebarState::meetingCountChanged);
    connect(&store, &MeetingStore::deletedMeetingsChanged, this, &SidebarState::deletedCountChanged);
    connect(&engines, &EngineSupervisor::speechChanged, this, &SidebarState::speechChanged);
    connect(&engines, &EngineSupervisor::notesChanged, this, &SidebarState::notesChanged);
}

QString SidebarState::elapsed() const {
    return m_clock.text();
}

QString SidebarState::meetingCount() const {
    return digits(m_store.meetings().size());
}

QString SidebarState::deletedCount() const {
    return digits(m_store.deletedMeetings().size());
}

EngineLine SidebarState::speech() const {
    return EngineLine::of(m_engines.speech());
}

EngineLine SidebarState::notes() const {
    return EngineLine::of(m_engines.notes());
}

} // namespace varnet
