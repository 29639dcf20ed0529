#include "Varnet/models/DeletedModel.h"

#include "MeetingCore/records/MeetingTrash.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

#include <QCoreApplication>

#include <algorithm>

namespace varnet {

namespace {

constexpr int urgentDays = 3;
constexpr int dayCheckMilliseconds = 600'000;

int daysLeft(Date deletedAt, QDate today) {
    const auto erased = MeetingText::localDay({deletedAt.secondsSinceReference + deletedRetention});
    return static_cast<int>(std::max<qint64>(0, today.daysTo(erased)));
}

QString dayOf(Date date) {
    const auto heading = MeetingPresentation::dayHeading(date);
    const bool recent = MeetingText::localDay(date).daysTo(QDate::currentDate()) <= 1;
    return toQString(recent ? heading.main : heading.second);
}

QStringList texts(const auto& ids) {
    QStringList list;
    for (const auto& id : ids)
        list << toQString(id.text());
    return list;
}

} // namespace

QString DeletedText::deleted(Date at, QDate today) {
    const auto time = MeetingText::time(at);
    switch (MeetingText::localDay(at).daysTo(today)) {
    case 0:
        return QCoreApplication::translate("DeletedText", "Deleted today, %1").arg(time);
    case 1:
        return QCoreApplication::translate("DeletedText", "Deleted yesterday, %1").arg(time);
    default:
        return QCoreApplication::translate("DeletedText", "Deleted %1, %2")
            .arg(toQString(MeetingPresentation::dayHeading(at).second), time);
    }
}

QString DeletedText::erased(Date deletedAt, QDate today) {
    switch (const int days = daysLeft(deletedAt, today)) {
    case 0:
        return QCoreApplication::translate("DeletedText", "Erased today");
    case 1:
        return QCoreApplication::translate("DeletedText", "Erased tomorrow");
    default:
        return QCoreApplication::translate("DeletedText", "Erased in %1 days").arg(days);
    }
}

DeletedModel::DeletedModel(const MeetingStore& store, QObject* parent) : QAbstractListModel(parent), m_store(store) {
    reload();
    connect(&store, &MeetingStore::deletedMeetingsChanged, this, &DeletedModel::reload);
    connect(&m_dayCheck, &QTimer::timeout, this, [this] {
        if (std::exchange(m_today, QDate::currentDate()) != m_today && !empty())
            Q_EMIT dataChanged(index(0), index(count() - 1));
    });
    m_dayCheck.start(dayCheckMilliseconds);
}

int DeletedModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant DeletedModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto* row = at(index.row());
    if (!row)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return toQString(row->meeting.title);
    case SubtitleRole:
        return QStringLiteral("%1 · %2").arg(dayOf(row->meeting.createdAt),
                                             toQString(MeetingPresentation::subtitle(row->meeting)));
    case DeletedRole:
        return DeletedText::deleted(row->deletedAt, m_today);
    case ErasedRole:
        return DeletedText::erased(row->deletedAt, m_today);
    case UrgentRole:
        return daysLeft(row->deletedAt, m_today) <= urgentDays;
    case SelectedRole:
        return m_selected.contains(m_ids[index.row()]);
    case SpokenRole:
        return QStringList{toQString(row->meeting.title), DeletedText::deleted(row->deletedAt, m_today),
                           DeletedText::erased(row->deletedAt, m_today)}
            .join(QStringLiteral(". "));
    default:
        return {};
    }
}

QHash<int, QByteArray> DeletedModel::roleNames() const {
    return {{TitleRole, "title"},   {SubtitleRole, "subtitle"}, {DeletedRole, "deleted"}, {ErasedRole, "erased"},
            {UrgentRole, "urgent"}, {SelectedRole, "selected"}, {SpokenRole, "spoken"}};
}

int DeletedModel::currentRow() const {
    return m_current ? rowOf(*m_current) : -1;
}

QStringList DeletedModel::selectedIDs() const {
    return texts(m_selected);
}

QString DeletedModel::restoreText() const {
    return m_selected.size() > 1 ? tr("Restore %1").arg(m_selected.size()) : tr("Restore");
}

QString DeletedModel::eraseText() const {
    return m_selected.size() > 1 ? tr("Erase %1 now").arg(m_selected.size()) : tr("Erase now");
}

QString DeletedModel::question() const {
    if (m_asked.size() != 1)
        return tr("Erase %1 meetings now?").arg(m_asked.size());
    const auto* asked = m_store.deletedMeeting(m_asked.front());
    return asked ? tr("Erase “%1” now?").arg(toQString(asked->meeting.title)) : tr("Erase the meeting now?");
}

QStringList DeletedModel::askedIDs() const {
    return texts(m_asked);
}

void DeletedModel::choose(int row, int modifiers) {
    if (row < 0 || row >= count())
        return;
    const auto id = m_ids[row];
    auto selected = m_selected;
    if (const int anchor = m_anchor ? rowOf(*m_anchor) : -1; (modifiers & Qt::ShiftModifier) && anchor >= 0) {
        selected = {m_ids.begin() + std::min(row, anchor), m_ids.begin() + std::max(row, anchor) + 1};
    } else if (modifiers & Qt::ControlModifier) {
        if (!selected.erase(id))
            selected.insert(id);
        m_anchor = id;
    } else {
        selected = {id};
        m_anchor = id;
    }
    m_current = id;
    select(std::move(selected));
}

void DeletedModel::move(int rows, int modifiers) {
    if (!empty())
        choose(std::clamp(currentRow() + rows, 0, count() - 1), modifiers & Qt::ShiftModifier);
}

void DeletedModel::selectAll() {
    select({m_ids.begin(), m_ids.end()});
}

void DeletedModel::askToErase() {
    m_asked.assign(m_selected.begin(), m_selected.end());
    Q_EMIT askingChanged();
}

void DeletedModel::stopAsking() {
    m_asked.clear();
    Q_EMIT askingChanged();
}

void DeletedModel::reload() {
    std::vector<Uuid> ids;
    for (const auto& deleted : m_store.deletedMeetings())
        ids.push_back(deleted.meeting.id);
    const int formerCount = count(), formerRow = currentRow();
    moveRowsTo(ids);
    if (count() != formerCount)
        Q_EMIT countChanged();
    keepSelection(formerRow);
}

/// Rows go and come one by one, so that a view keeps its place.
void DeletedModel::moveRowsTo(const std::vector<Uuid>& ids) {
    const std::set<Uuid> wanted(ids.begin(), ids.end());
    for (int row = count() - 1; row >= 0; --row)
        if (!wanted.contains(m_ids[row])) {
            beginRemoveRows({}, row, row);
            m_ids.erase(m_ids.begin() + row);
            endRemoveRows();
        }
    const std::set<Uuid> known(m_ids.begin(), m_ids.end());
    std::vector<Uuid> order;
    std::ranges::copy_if(ids, std::back_inserter(order), [&](const Uuid& id) { return known.contains(id); });
    if (order != m_ids) {
        beginResetModel();
        m_ids = ids;
        endResetModel();
        return;
    }
    for (int row = 0; row < static_cast<int>(ids.size()); ++row)
        if (!known.contains(ids[row])) {
            beginInsertRows({}, row, row);
            m_ids.insert(m_ids.begin() + row, ids[row]);
            endInsertRows();
        }
}

void DeletedModel::keepSelection(int formerRow) {
    const bool stays = currentRow() >= 0;
    if (!stays)
        m_current = m_anchor = empty() ? std::nullopt : std::optional(m_ids[std::clamp(formerRow, 0, count() - 1)]);
    std::set<Uuid> selected;
    for (const auto& id : m_ids)
        if (m_selected.contains(id))
            selected.insert(id);
    if (selected.empty() && m_current && (!stays || !m_selected.empty()))
        selected = {*m_current};
    select(std::move(selected));
}

void DeletedModel::select(std::set<Uuid> ids) {
    m_selected = std::move(ids);
    if (!empty())
        Q_EMIT dataChanged(index(0), index(count() - 1), {SelectedRole});
    Q_EMIT selectionChanged();
}

int DeletedModel::rowOf(const Uuid& id) const {
    const auto found = std::ranges::find(m_ids, id);
    return found == m_ids.end() ? -1 : static_cast<int>(found - m_ids.begin());
}

const DeletedMeeting* DeletedModel::at(int row) const {
    const auto& deleted = m_store.deletedMeetings();
    const auto place = static_cast<std::size_t>(row);
    if (place < deleted.size() && deleted[place].meeting.id == m_ids[place])
        return &deleted[place];
    return m_store.deletedMeeting(m_ids[place]);
}

} // namespace varnet
