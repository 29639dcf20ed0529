#include "Varnet/models/MeetingPage.h"

#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

namespace varnet {

MeetingPage::MeetingPage(MeetingStore& store, const RecordingClock& clock, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock) {
    const auto refreshShown = [this](const Uuid& id) {
        if (id == m_shown)
            refresh();
    };
    connect(&store, &MeetingStore::selectedIDChanged, this, &MeetingPage::follow);
    connect(&store, &MeetingStore::meetingsChanged, this, &MeetingPage::follow);
    connect(&store, &MeetingStore::meetingChanged, this, refreshShown);
    connect(&store, &MeetingStore::turnsAppended, this, [this](const Uuid& id, int added) {
        const auto* meeting = id == m_shown ? m_store.meeting(id) : nullptr;
        if (!meeting)
            return;
        if (m_turns.count() + added != static_cast<int>(meeting->turns.size()))
            return refresh();
        m_turns.append(*meeting, std::span(meeting->turns).last(added), m_hues);
        Q_EMIT changed();
    });
    for (const auto signal : {&MeetingStore::recordingChanged, &MeetingStore::recordingIDChanged})
        connect(&store, signal, this, [this] {
            refresh();
            Q_EMIT callMissingChanged();
            Q_EMIT clockChanged();
        });
    connect(&store, &MeetingStore::partialChanged, this, &MeetingPage::showPartial);
    connect(&store, &MeetingStore::partialTurnsChanged, this, &MeetingPage::showPartial);
    connect(&store.levels(), &CaptureLevels::changed, this, &MeetingPage::levelsChanged);
    connect(&store.levels(), &CaptureLevels::callMissingChanged, this, &MeetingPage::callMissingChanged);
    connect(&clock, &RecordingClock::changed, this, &MeetingPage::clockChanged);
    follow();
}

bool MeetingPage::present() const {
    return m_store.selected();
}

QString MeetingPage::title() const {
    const auto* meeting = m_store.selected();
    return meeting ? toQString(meeting->title) : QString();
}

QString MeetingPage::dateLine() const {
    const auto* meeting = m_store.selected();
    if (!meeting)
        return {};
    const auto day = MeetingPresentation::dayHeading(meeting->createdAt);
    QStringList parts{QStringLiteral("%1, %2").arg(toQString(day.main), toQString(day.second)),
                      MeetingText::time(meeting->createdAt), MeetingText::duration(*meeting, m_store)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
}

QString MeetingPage::badgeText() const {
    const auto* meeting = m_store.selected();
    return meeting ? toQString(MeetingPresentation::badge(*meeting, m_store).text) : QString();
}

int MeetingPage::badgeTone() const {
    const auto* meeting = m_store.selected();
    return MeetingText::tone(meeting ? MeetingPresentation::badge(*meeting, m_store).color : BadgeColor::faint);
}

bool MeetingPage::badgeMarked() const {
    const auto* meeting = m_store.selected();
    return meeting && MeetingPresentation::badge(*meeting, m_store).marked;
}

bool MeetingPage::live() const {
    return m_store.recording() && m_store.showingLiveMeeting();
}

QString MeetingPage::emptyText() const {
    const auto* meeting = m_store.selected();
    if (!meeting)
        return {};
    if (meeting->status == MeetingStatus::recordingLive && live())
        return tr("Listening. Words appear here as people talk.");
    if (meeting->status == MeetingStatus::recordingOffline && live())
        return tr("Recording the audio. There is no live transcript, because the speech engine isn't available.");
    if (meeting->status == MeetingStatus::preparingMicrophone && m_store.showingLiveMeeting())
        return tr("Getting ready to record.");
    if (meeting->status == MeetingStatus::finishingTranscript && m_store.showingLiveMeeting())
        return tr("Finishing the transcript.");
    return tr("This meeting has no transcript.");
}

QString MeetingPage::clock() const {
    return live() ? m_clock.text() : QString();
}

double MeetingPage::microphoneLevel() const {
    return MeetingText::meter(m_store.levels().microphone());
}

double MeetingPage::callLevel() const {
    return MeetingText::meter(m_store.levels().call().value_or(0));
}

bool MeetingPage::capturingCall() const {
    return m_store.levels().call().has_value();
}

bool MeetingPage::callMissing() const {
    return live() && m_store.levels().callMissing();
}

QString MeetingPage::callMissingText() const {
    return tr("Not hearing the call. Check that its sound plays through this computer's default output. "
              "Your microphone is being recorded.");
}

QString MeetingPage::partialText() const {
    return m_store.showingLiveMeeting() && m_partialTurns.count() == 0 ? toQString(m_store.partial()) : QString();
}

void MeetingPage::rename(const QString& title) {
    if (m_shown)
        m_store.setTitle(toUtf8(title), *m_shown);
}

/// Another meeting starts with empty lists, so that its rows are not taken for changes of the former one's.
void MeetingPage::follow() {
    if (m_store.selectedID() != m_shown) {
        Q_EMIT aboutToLeave();
        m_shown = m_store.selectedID();
        m_turns.clear();
        m_partialTurns.clear();
        m_hues.clear();
    }
    refresh();
    showPartial();
    Q_EMIT clockChanged();
    Q_EMIT callMissingChanged();
}

void MeetingPage::refresh() {
    if (const auto* meeting = m_store.selected())
        m_turns.show(*meeting, meeting->turns, m_hues);
    else
        m_turns.clear();
    Q_EMIT changed();
}

void MeetingPage::showPartial() {
    const auto* meeting = m_store.selected();
    if (meeting && m_store.showingLiveMeeting())
        m_partialTurns.show(*meeting, m_store.partialTurns(), m_hues);
    else
        m_partialTurns.clear();
    Q_EMIT partialChanged();
}

} // namespace varnet
