#include "Varnet/models/DraftModel.h"

#include "MeetingCore/records/Meeting.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"

#include <string_view>
#include <unordered_map>
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

DraftQuote quote(const NoteEvidence& evidence, const NoteSource* source) {
    const auto speaker = source ? toQString(source->speaker) : DraftModel::tr("Unknown");
    const auto clock = toQString(Meeting::timestamp(source ? source->start : 0));
    const auto words = DraftModel::tr("“%1”").arg(toQString(evidence.quote));
    return {.words = words,
            .origin = QStringLiteral("%1 · %2").arg(speaker, clock),
            .spoken = DraftModel::tr("Quote, %1, %2: %3").arg(speaker, clock, words)};
}

} // namespace

std::vector<DraftModel::Row> DraftModel::rows(const GeneratedNotes& draft) {
    std::unordered_map<std::string_view, const NoteSource*> sources;
    for (const auto& source : draft.sources)
        sources.try_emplace(source.id, &source);
    std::vector<Row> rows;
    for (const auto kind : {NoteItem::Kind::summary, NoteItem::Kind::decision, NoteItem::Kind::action}) {
        QString title = heading(kind);
        for (const auto& item : draft.items) {
            if (item.kind != kind)
                continue;
            auto& row = rows.emplace_back(Row{std::exchange(title, {}), toQString(item.text), task(item), {}});
            for (const auto& evidence : item.evidence) {
                const auto source = sources.find(evidence.source);
                row.quotes.push_back(quote(evidence, source == sources.end() ? nullptr : source->second));
            }
        }
    }
    return rows;
}

void DraftModel::show(const GeneratedNotes* draft, bool outdated) {
    m_present = draft != nullptr;
    m_outdated = outdated;
    m_removed = draft ? draft->droppedItems.value_or(0) : 0;
    m_origin = draft ? tr("Drafted by %1 · %2").arg(toQString(draft->model), MeetingText::dayAndTime(draft->createdAt))
                     : QString();
    auto shown = draft ? rows(*draft) : std::vector<Row>();
    if (shown != m_rows) {
        beginResetModel();
        m_rows = std::move(shown);
        endResetModel();
    }
    Q_EMIT changed();
}

QString DraftModel::outdatedText() const {
    return m_outdated ? tr("Draft is outdated: transcript or speaker names changed.") : QString();
}

QString DraftModel::removedText() const {
    if (m_removed == 0)
        return {};
    return m_removed == 1 ? tr("Removed 1 point that didn't match the transcript.")
                          : tr("Removed %1 points that didn't match the transcript.").arg(m_removed);
}

QString DraftModel::emptyText() const {
    return m_present && m_rows.empty() ? tr("No supported summary items were generated.") : QString();
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
    case Qt::DisplayRole:
    case WordsRole:
        return row.words;
    case TaskRole:
        return row.task;
    case SpokenRole:
        return row.task.isEmpty() ? row.words : QStringLiteral("%1, %2").arg(row.words, row.task);
    case QuotesRole: {
        QVariantList quotes;
        for (const auto& quote : row.quotes)
            quotes << QVariant::fromValue(quote);
        return quotes;
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> DraftModel::roleNames() const {
    return {{HeadingRole, "heading"},
            {WordsRole, "words"},
            {TaskRole, "task"},
            {SpokenRole, "spoken"},
            {QuotesRole, "quotes"}};
}

} // namespace varnet
