#include "Varnet/models/DraftModel.h"

#include "MeetingCore/records/Meeting.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"

#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace varnet {

namespace {

QString heading(NoteItem::Kind kind) {
    switch (kind) {
    case NoteItem::Kind::summary:
        return DraftModel::tr("Summary");
    case NoteItem::Kind::decision:
        return DraftModel::tr("Decisions");
    case NoteItem::Kind::action:
        return DraftModel::tr("Action items");
    }
    return {};
}

QString task(const NoteItem& item) {
    QStringList parts;
    if (item.owner)
        parts << DraftModel::tr("Owner: %1").arg(toQString(*item.owner));
    if (item.due)
        parts << DraftModel::tr("Due: %1").arg(toQString(*item.due));
    return parts.join(QStringLiteral(" · "));
}

/// A failure as the reason of a removal: the draft that was kept then is not the one that is shown now.
QString reason(const std::string& failure) {
    auto text = toQString(failure);
    const QLatin1String tail(" The previous draft was kept.");
    return text.endsWith(tail) ? text.chopped(tail.size()) : text;
}

} // namespace

DraftModel::Row DraftModel::quote(const NoteEvidence& evidence, const NoteSource* source, bool there) {
    const auto speaker = source ? toQString(source->speaker) : tr("Unknown");
    const auto clock = toQString(Meeting::timestamp(source ? source->start : 0));
    const auto words = tr("“%1”").arg(toQString(evidence.quote));
    Row row{.quote = true,
            .words = words,
            .detail = QStringLiteral("%1 · %2").arg(speaker, clock),
            .clock = clock,
            .turn = there ? toQString(source->turnID.text()) : QString(),
            .spoken = tr("Quote, %1, %2: %3").arg(speaker, clock, words)};
    if (!there) {
        row.detail = tr("%1 · no longer in the transcript").arg(row.detail);
        row.spoken = tr("%1, no longer in the transcript").arg(row.spoken);
    }
    return row;
}

std::vector<DraftModel::Row> DraftModel::rows(const Meeting& meeting) {
    const auto& draft = *meeting.generatedNotes;
    std::unordered_set<Uuid> turns;
    for (const auto& turn : meeting.turns)
        turns.insert(turn.id);
    std::unordered_map<std::string_view, const NoteSource*> sources;
    for (const auto& source : draft.sources)
        sources.try_emplace(source.id, &source);
    std::vector<Row> rows;
    for (const auto kind : {NoteItem::Kind::summary, NoteItem::Kind::decision, NoteItem::Kind::action}) {
        QString title = heading(kind);
        for (const auto& item : draft.items) {
            if (item.kind != kind)
                continue;
            Row point{.heading = std::exchange(title, {}), .words = toQString(item.text), .detail = task(item)};
            point.spoken =
                point.detail.isEmpty() ? point.words : QStringLiteral("%1, %2").arg(point.words, point.detail);
            rows.push_back(std::move(point));
            for (const auto& evidence : item.evidence) {
                const auto found = sources.find(evidence.source);
                const auto* source = found == sources.end() ? nullptr : found->second;
                rows.push_back(quote(evidence, source, source && turns.contains(source->turnID)));
            }
        }
    }
    return rows;
}

void DraftModel::show(const Meeting* meeting, bool outdated, const std::vector<std::string>& removed) {
    const auto* draft = meeting && meeting->generatedNotes ? &*meeting->generatedNotes : nullptr;
    const auto before = std::exchange(m_draft, {});
    if (draft)
        m_draft.emplace(meeting->id, draft->createdAt);
    m_outdated = draft && outdated;
    m_removed = draft ? draft->droppedItems.value_or(0) : 0;
    m_origin.clear();
    if (draft) {
        const bool sameDay = MeetingText::localDay(draft->createdAt) == MeetingText::localDay(meeting->createdAt);
        const auto when = sameDay ? MeetingText::time(draft->createdAt) : MeetingText::dayAndTime(draft->createdAt);
        m_origin = tr("Drafted by %1 · %2").arg(toQString(draft->model), when);
    }
    m_reasons.clear();
    if (m_removed > 0)
        for (const auto& failure : removed)
            m_reasons << reason(failure);
    updateTo(draft ? rows(*meeting) : std::vector<Row>(), m_draft == before);
    Q_EMIT changed();
}

void DraftModel::updateTo(std::vector<Row> rows, bool sameDraft) {
    if (rows == m_rows)
        return;
    if (!sameDraft || rows.size() != m_rows.size()) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
        return;
    }
    for (int place = 0; place < rowCount(); ++place)
        if (m_rows[place] != rows[place]) {
            m_rows[place] = std::move(rows[place]);
            Q_EMIT dataChanged(index(place), index(place));
        }
}

QString DraftModel::writeTitle() const {
    return present() ? tr("Write notes again") : tr("Write notes");
}

QString DraftModel::outdatedText() const {
    return m_outdated ? tr("Draft is outdated: transcript or speaker names changed.") : QString();
}

QString DraftModel::removedText() const {
    return m_removed == 0
               ? QString()
               : tr("Removed %Ln points that didn't match the transcript.", nullptr, static_cast<int>(m_removed));
}

QString DraftModel::emptyText() const {
    return present() && m_rows.empty() ? tr("No supported summary items were generated.") : QString();
}

int DraftModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant DraftModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto& row = m_rows[index.row()];
    switch (role) {
    case HeadingRole:
        return row.heading;
    case QuoteRole:
        return row.quote;
    case Qt::DisplayRole:
    case WordsRole:
        return row.words;
    case DetailRole:
        return row.detail;
    case ClockRole:
        return row.clock;
    case TurnRole:
        return row.turn;
    case SpokenRole:
        return row.spoken;
    default:
        return {};
    }
}

QHash<int, QByteArray> DraftModel::roleNames() const {
    return {{HeadingRole, "heading"}, {QuoteRole, "quote"}, {WordsRole, "words"},  {DetailRole, "detail"},
            {ClockRole, "clock"},     {TurnRole, "turn"},   {SpokenRole, "spoken"}};
}

} // namespace varnet
