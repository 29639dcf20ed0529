#include "Varnet/models/TranscriptModel.h"

#include "Varnet/models/FoundWords.h"
#include "Varnet/models/Palette.h"
#include "Varnet/models/Text.h"

#include <algorithm>

namespace varnet {

int SpeakerHues::hue(const std::string& label) {
    if (label == "Unassigned")
        return -1;
    const int next = static_cast<int>(m_hues.size() % Palette::light().speakers.size());
    return m_hues.try_emplace(label, next).first->second;
}

void TranscriptModel::show(const Meeting& meeting, std::span<const TranscriptTurn> turns, SpeakerHues& hues) {
    std::vector<Row> rows;
    rows.reserve(turns.size());
    for (const auto& turn : turns)
        rows.push_back(row(meeting, turn, hues));
    updateTo(rows);
}

void TranscriptModel::append(const Meeting& meeting, std::span<const TranscriptTurn> turns, SpeakerHues& hues) {
    if (turns.empty())
        return;
    beginInsertRows({}, count(), count() + static_cast<int>(turns.size()) - 1);
    for (const auto& turn : turns)
        m_rows.push_back(row(meeting, turn, hues));
    endInsertRows();
    Q_EMIT countChanged();
}

void TranscriptModel::clear() {
    if (m_rows.empty())
        return;
    beginResetModel();
    m_rows.clear();
    endResetModel();
    Q_EMIT countChanged();
}

void TranscriptModel::mark(const std::string& query, int currentRow, std::size_t current) {
    if (query == m_query && currentRow == m_currentRow && current == m_current)
        return;
    m_query = query;
    m_currentRow = currentRow;
    m_current = current;
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0), index(count() - 1), {MarkedRole, HitRole});
}

std::string TranscriptModel::words(int row) const {
    return toUtf8(m_rows[row].words);
}

int TranscriptModel::rowOf(const Uuid& turn) const {
    const auto found = std::ranges::find(m_rows, turn, &Row::turn);
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

int TranscriptModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant TranscriptModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto& row = m_rows[index.row()];
    switch (role) {
    case SpeakerRole:
        return row.speaker;
    case HueRole:
        return row.hue;
    case ClockRole:
        return row.clock;
    case Qt::DisplayRole:
    case WordsRole:
        return row.words;
    case SpokenRole:
        return QStringLiteral("%1, %2: %3").arg(row.speaker, row.clock, row.words);
    case TurnRole:
        return toQString(row.turn.text());
    case LabelRole:
        return row.label;
    case EditedRole:
        return row.edited;
    case RecognisedRole:
        return row.recognised;
    case MarkedRole:
        if (m_query.empty())
            return QString();
        return FoundWords::marked(words(index.row()), m_query,
                                  index.row() == m_currentRow ? std::optional(m_current) : std::nullopt);
    case HitRole:
        return index.row() == m_currentRow;
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptModel::roleNames() const {
    return {{SpeakerRole, "speaker"},       {HueRole, "hue"},       {ClockRole, "clock"}, {WordsRole, "words"},
            {SpokenRole, "spoken"},         {TurnRole, "turn"},     {LabelRole, "label"}, {EditedRole, "edited"},
            {RecognisedRole, "recognised"}, {MarkedRole, "marked"}, {HitRole, "hit"}};
}

TranscriptModel::Row TranscriptModel::row(const Meeting& meeting, const TranscriptTurn& turn, SpeakerHues& hues) {
    return {.turn = turn.id,
            .label = toQString(turn.speaker),
            .speaker = toQString(meeting.speakerName(turn.speaker)),
            .hue = hues.hue(turn.speaker),
            .clock = toQString(Meeting::timestamp(turn.start)),
            .words = toQString(turn.text()),
            .edited = turn.editedText.has_value(),
            .recognised = turn.editedText ? toQString(turn.originalText) : QString()};
}

void TranscriptModel::updateTo(const std::vector<Row>& rows) {
    const int before = count(), after = static_cast<int>(rows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_rows.resize(rows.size());
        endRemoveRows();
    }
    for (int place = 0; place < count(); ++place)
        if (m_rows[place] != rows[place]) {
            m_rows[place] = rows[place];
            Q_EMIT dataChanged(index(place), index(place));
        }
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_rows.insert(m_rows.end(), rows.begin() + before, rows.end());
        endInsertRows();
    }
    if (after != before)
        Q_EMIT countChanged();
}

} // namespace varnet
