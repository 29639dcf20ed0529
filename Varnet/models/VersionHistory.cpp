#include "Varnet/models/VersionHistory.h"

#include "Varnet/async/Worker.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace varnet {

namespace {

QString when(Date date) {
    const auto heading = MeetingPresentation::dayHeading(date);
    const auto age = MeetingText::localDay(date).daysTo(QDate::currentDate());
    const auto& day = age == 0 || age == 1 ? heading.main : heading.second;
    return QStringLiteral("%1, %2").arg(toQString(day), MeetingText::time(date));
}

QString draftOf(const GeneratedNotes& notes) {
    const std::array<std::pair<NoteItem::Kind, QString>, 3> groups{
        {{NoteItem::Kind::summary, VersionHistory::tr("Summary")},
         {NoteItem::Kind::decision, VersionHistory::tr("Decisions")},
         {NoteItem::Kind::action, VersionHistory::tr("Action items")}}};
    QStringList blocks;
    for (const auto& [kind, heading] : groups) {
        QStringList lines;
        for (const auto& item : notes.items)
            if (item.kind == kind)
                lines << QStringLiteral("•  ") + toQString(item.text);
        if (!lines.empty())
            blocks << heading + u'\n' + lines.join(u'\n');
    }
    return blocks.join(QStringLiteral("\n\n"));
}

} // namespace

VersionHistory::VersionHistory(MeetingStore& store, QObject* parent) : QAbstractListModel(parent), m_store(store) {}

void VersionHistory::open() {
    close();
    m_meetingID = m_store.selectedID();
    reload();
}

void VersionHistory::close() {
    ++m_request;
    m_loading = false;
    m_meetingID.reset();
    m_error.clear();
    m_notice.clear();
    show({});
    m_now = {};
}

/// The rows of before stay until the new ones are there.
void VersionHistory::reload() {
    const auto* meeting = m_meetingID ? m_store.meeting(*m_meetingID) : nullptr;
    if (!meeting)
        return;
    m_now = *meeting;
    m_loading = true;
    Q_EMIT changed();
    m_tasks.spawn(load(this, *m_meetingID, ++m_request, m_tasks.stopToken()));
}

Task<> VersionHistory::load(VersionHistory* self, Uuid id, int request, std::stop_token stop) {
    Loaded loaded;
    QString error;
    try {
        loaded.history = co_await self->m_store.history(id);
        if (stop.stop_requested() || request != self->m_request)
            co_return;
        loaded = co_await onWorker([now = self->m_now, history = std::move(loaded.history)]() mutable {
            std::vector<VersionDifference> differences;
            differences.reserve(history.entries.size());
            for (const auto& entry : history.entries)
                differences.push_back(VersionDifference::of(now, entry.meeting));
            return Loaded{std::move(history), std::move(differences)};
        });
    } catch (const std::exception& failure) {
        qWarning("The versions of a meeting could not be read: %s", failure.what());
        error = QString::fromUtf8(failure.what());
    }
    if (stop.stop_requested() || request != self->m_request)
        co_return;
    self->m_loading = false;
    if (!error.isEmpty())
        self->m_error = error;
    self->show(std::move(loaded));
}

/// The version that was current stays so, wherever it is now.
void VersionHistory::show(Loaded loaded) {
    const auto* former = current();
    const auto chosen = former ? std::optional(former->id) : std::nullopt;
    beginResetModel();
    m_history = std::move(loaded.history);
    m_differences = std::move(loaded.differences);
    m_currentRow = -1;
    endResetModel();
    const auto found = std::ranges::find_if(m_history.entries, [&](const auto& entry) { return entry.id == chosen; });
    const bool there = found != m_history.entries.end();
    showRow(there ? static_cast<int>(found - m_history.entries.begin()) : count() ? 0 : -1);
}

void VersionHistory::showRow(int row) {
    m_currentRow = row;
    m_options = {};
    m_turns.clear();
    if (const auto* version = current()) {
        SpeakerHues hues;
        m_turns.show(version->meeting, version->meeting.turns, hues);
    }
    Q_EMIT changed();
}

int VersionHistory::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant VersionHistory::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto& archivedAt = m_history.entries[index.row()].archivedAt;
    switch (role) {
    case Qt::DisplayRole:
    case WhenRole:
        return when(archivedAt);
    case DifferenceRole:
        return m_differences[index.row()].line;
    case SpokenRole:
        return QStringLiteral("%1. %2").arg(when(archivedAt), m_differences[index.row()].line);
    default:
        return {};
    }
}

QHash<int, QByteArray> VersionHistory::roleNames() const {
    return {{WhenRole, "when"}, {DifferenceRole, "difference"}, {SpokenRole, "spoken"}};
}

QString VersionHistory::title() const {
    return toQString(m_now.title);
}

QString VersionHistory::unreadableText() const {
    const auto unreadable = static_cast<int>(m_history.unreadable);
    return unreadable == 0
               ? QString()
               : tr("%Ln more versions can't be read. Their files are left as they are.", nullptr, unreadable);
}

QString VersionHistory::notesText() const {
    const auto* version = current();
    return version ? toQString(version->meeting.notes) : QString();
}

QString VersionHistory::draftText() const {
    const auto* version = current();
    return version && version->meeting.generatedNotes ? draftOf(*version->meeting.generatedNotes) : QString();
}

RestoreChoice VersionHistory::transcript() const {
    auto result = choice(&VersionDifference::transcript, &MeetingRestoreOptions::transcript);
    if (current() && m_differences[m_currentRow].otherAudio)
        result.enabled = false;
    return result;
}

RestoreChoice VersionHistory::personalNotes() const {
    return choice(&VersionDifference::personalNotes, &MeetingRestoreOptions::personalNotes);
}

RestoreChoice VersionHistory::generatedNotes() const {
    return choice(&VersionDifference::generatedNotes, &MeetingRestoreOptions::generatedNotes);
}

bool VersionHistory::restoreEnabled() const {
    return !m_loading && current() && (m_options.transcript || m_options.personalNotes || m_options.generatedNotes);
}

void VersionHistory::select(int row) {
    if (row < 0 || row >= count() || row == m_currentRow)
        return;
    m_error.clear();
    m_notice.clear();
    showRow(row);
}

void VersionHistory::moveSelection(int rows) {
    if (count())
        select(std::clamp(m_currentRow + rows, 0, count() - 1));
}

void VersionHistory::takeTranscript(bool taken) {
    take(&MeetingRestoreOptions::transcript, taken && transcript().enabled);
}

void VersionHistory::takePersonalNotes(bool taken) {
    take(&MeetingRestoreOptions::personalNotes, taken && personalNotes().enabled);
}

void VersionHistory::takeGeneratedNotes(bool taken) {
    take(&MeetingRestoreOptions::generatedNotes, taken && generatedNotes().enabled);
}

void VersionHistory::take(bool MeetingRestoreOptions::* what, bool taken) {
    m_options.*what = taken;
    m_notice.clear();
    Q_EMIT changed();
}

void VersionHistory::restore() {
    if (!restoreEnabled())
        return;
    m_error.clear();
    m_notice.clear();
    const auto& version = *current();
    try {
        const MeetingRevisions expected{MeetingRestoration::revision(m_now),
                                        MeetingRestoration::revision(version.meeting)};
        m_store.restoreHistory(version, m_options, expected);
        m_notice = tr("Restored. What was there before is kept as a version.");
        m_options = {};
        reload();
    } catch (const std::exception& failure) {
        qWarning("A version could not be restored: %s", failure.what());
        m_error = QString::fromUtf8(failure.what());
    }
    Q_EMIT changed();
}

const MeetingHistoryEntry* VersionHistory::current() const {
    return m_currentRow >= 0 ? &m_history.entries[m_currentRow] : nullptr;
}

RestoreChoice VersionHistory::choice(QString VersionDifference::* words, bool MeetingRestoreOptions::* what) const {
    if (!current())
        return {};
    const auto& difference = m_differences[m_currentRow].*words;
    return {difference.isEmpty() ? tr("Same as now") : difference, !difference.isEmpty(), m_options.*what};
}

} // namespace varnet
