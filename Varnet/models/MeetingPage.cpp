#include "Varnet/models/MeetingPage.h"

#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/models/EditorText.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"
#include "Varnet/store/MeetingStore.h"
#include "Varnet/store/StalenessCache.h"

#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <chrono>
#include <utility>

namespace varnet {

namespace {

constexpr std::chrono::milliseconds notesDelay{500};

} // namespace

MeetingPage::MeetingPage(MeetingStore& store, const RecordingClock& clock, QObject* parent)
    : QObject(parent), m_store(store), m_clock(clock) {
    const auto refreshShown = [this](const Uuid& id) {
        if (id == m_shown && m_shown == m_store.selectedID())
            refresh();
    };
    m_notesTimer.setSingleShot(true);
    m_notesTimer.setInterval(notesDelay);
    connect(&m_notesTimer, &QTimer::timeout, this, &MeetingPage::keepNotes);
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
    const auto followRecording = [this] {
        refresh();
        Q_EMIT callMissingChanged();
        Q_EMIT clockChanged();
    };
    for (const auto signal : {&MeetingStore::recordingChanged, &MeetingStore::recordingIDChanged})
        connect(&store, signal, this, followRecording);
    connect(&store.levels(), &CaptureLevels::previewingChanged, this, followRecording);
    connect(&store, &MeetingStore::audioWorkChanged, this, [this] {
        const auto& work = m_store.audioWork();
        if (!work || work->meetingID == m_shown)
            Q_EMIT changed();
    });
    connect(&store, &MeetingStore::notesMeetingIDChanged, this, &MeetingPage::changed);
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
    const auto length = MeetingText::duration(*meeting, m_store);
    return MeetingText::dayAndTime(meeting->createdAt) +
           (length.isEmpty() ? length : QStringLiteral("\u00A0·\u00A0") + length);
}

QString MeetingPage::attendeesLine() const {
    const auto* meeting = m_store.selected();
    if (!meeting || !meeting->attendees || meeting->attendees->empty())
        return {};
    QStringList names;
    for (const auto& name : *meeting->attendees)
        names << QChar(0x2068) + toQString(name) + QChar(0x2069); // none turns the order of the others around
    return tr("With %1").arg(names.join(QStringLiteral(", ")));
}

QString MeetingPage::shortfallText() const {
    const auto* meeting = m_store.selected();
    const auto shortfall = meeting ? MeetingPresentation::transcriptShortfall(*meeting, m_store) : std::nullopt;
    if (!shortfall)
        return {};
    return tr("The transcript ends at %1, the audio at %2.")
        .arg(toQString(MeetingPresentation::clock(shortfall->end)),
             toQString(MeetingPresentation::clock(shortfall->audio)));
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
    return (m_store.recording() && m_store.showingLiveMeeting()) || (m_store.levels().previewing() && present());
}

QString MeetingPage::emptyText() const {
    const auto* meeting = m_store.selected();
    if (!meeting)
        return tr("No meeting is selected.");
    if (meeting->status == MeetingStatus::recordingLive && live())
        return tr("Listening. Words appear here as people talk.");
    if (meeting->status == MeetingStatus::recordingOffline && live())
        return tr("Recording the audio. There is no live transcript, because the speech engine isn't available. "
                  "The audio is kept and can be transcribed later.");
    if (meeting->status == MeetingStatus::preparingMicrophone && m_store.showingLiveMeeting())
        return tr("Getting ready to record.");
    if (meeting->status == MeetingStatus::finishingTranscript && m_store.showingLiveMeeting())
        return tr("Finishing the transcript.");
    if (const auto& work = m_store.audioWork(); work && work->meetingID == meeting->id) {
        if (work->converted)
            return tr("Converting the audio. %1 %").arg(static_cast<int>(*work->converted * 100));
        return tr("Transcribing. This takes about a minute for ten minutes of audio.");
    }
    if (importFailed())
        return tr("The audio file could not be imported. The file itself was not changed.");
    if (meeting->status == MeetingStatus::savedRetryTranscription && !m_store.audioURL(*meeting))
        return tr("This meeting has no transcript, and no saved audio to make one from.");
    return tr("This meeting has no transcript.");
}

bool MeetingPage::importFailed() const {
    const auto* meeting = m_store.selected();
    return meeting && meeting->status == MeetingStatus::importNeedsAttention && !m_store.audioURL(*meeting);
}

QString MeetingPage::importedText() const {
    const auto* meeting = m_store.selected();
    return meeting ? toQString(meeting->importedContent.value_or(std::string())) : QString();
}

QString MeetingPage::notes() const {
    return toQString(m_notes.value_or(std::string()));
}

QString MeetingPage::clock() const {
    if (!live() || m_store.recording())
        return live() ? m_clock.text() : QString();
    // A preview stands where its transcript ends.
    const auto& turns = m_store.selected()->turns;
    return toQString(MeetingPresentation::clock(turns.empty() ? 0 : turns.back().end));
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

QString MeetingPage::typed(QQuickTextDocument* document) {
    return editorText(document);
}

void MeetingPage::beginTyping(QQuickTextDocument* document) {
    if (!document)
        return;
    QTextBlockFormat format;
    format.setLineHeight(Theme::shared().reading().lineGap, QTextBlockFormat::LineDistanceHeight);
    QTextCursor cursor(document->textDocument());
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
    document->textDocument()->clearUndoRedoStacks();
}

void MeetingPage::editTurn(const QString& turn, const QString& words) {
    const auto id = Uuid::parse(toUtf8(turn));
    if (m_shown && id)
        m_store.editTurn(*id, toUtf8(words), *m_shown);
}

void MeetingPage::setBack(const QString& turn) {
    const auto id = Uuid::parse(toUtf8(turn));
    const auto* meeting = m_shown && id ? m_store.meeting(*m_shown) : nullptr;
    if (!meeting)
        return;
    const auto found = std::ranges::find(meeting->turns, *id, &TranscriptTurn::id);
    if (found != meeting->turns.end())
        m_store.editTurn(*id, std::string(found->originalText), *m_shown);
}

void MeetingPage::nameSpeaker(const QString& label, const QString& name) {
    if (m_shown)
        m_store.nameSpeaker(toUtf8(label), toUtf8(name), *m_shown);
}

void MeetingPage::showTurn(const QString& turn) {
    const auto id = Uuid::parse(toUtf8(turn));
    const int row = id ? m_turns.rowOf(*id) : -1;
    if (row >= 0)
        Q_EMIT turnAsked(row);
}

void MeetingPage::typeNotes(const QString& notes) {
    m_typedNotes = toUtf8(notes);
    if (!m_notesTimer.isActive())
        m_notesTimer.start();
}

void MeetingPage::keepNotes() {
    m_notesTimer.stop();
    const auto typed = std::exchange(m_typedNotes, {});
    const auto* meeting = typed && m_shown ? m_store.meeting(*m_shown) : nullptr;
    if (!meeting)
        return;
    m_notes = typed;
    if (meeting->notes != *typed)
        m_store.setNotes(*typed, *m_shown);
}

/// The user's own typing that comes back from the store is no news: the cursor stays where it is.
void MeetingPage::showNotes(const Meeting* meeting) {
    const auto notes = meeting ? meeting->notes : std::string();
    if (m_typedNotes || m_notes == notes)
        return;
    m_notes = notes;
    Q_EMIT notesReplaced();
}

void MeetingPage::handIn() {
    Q_EMIT aboutToLeave();
    keepNotes();
}

/// Another meeting starts with empty lists, so that its rows are not taken for changes of the former one's.
void MeetingPage::follow() {
    if (m_store.selectedID() != m_shown) {
        handIn();
        m_shown = m_store.selectedID();
        m_notes.reset();
        m_find.close();
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
    const auto* meeting = m_store.selected();
    if (meeting)
        m_turns.show(*meeting, meeting->turns, m_hues);
    else
        m_turns.clear();
    if (meeting && meeting->generatedNotes)
        m_draft.show(meeting, StalenessCache::shared().isStale(*meeting), m_store.removedPoints(*meeting));
    else
        m_draft.show(nullptr);
    showNotes(meeting);
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
