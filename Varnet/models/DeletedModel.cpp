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
        return QCoreApplication::translate("DeletedText", "Erased in %Ln days", nullptr, days);
    }
}

DeletedModel::DeletedModel(const MeetingStore& store, QObject* parent) : IdListModel(parent), m_store(store) {
    reload();
    connect(&store, &MeetingStore::deletedMeetingsChanged, this, &DeletedModel::reload);
    connect(&m_dayCheck, &QTimer::timeout, this, [this] {
        if (std::exchange(m_today, QDate::currentDate()) != m_today)
            allChanged();
    });
    m_dayCheck.start(dayCheckMilliseconds);
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
        return m_selection.ids.contains(ids()[index.row()]);
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
    return rowOf(m_current);
}

QStringList DeletedModel::selectedIDs() const {
    return texts(m_selection.ids);
}

QString DeletedModel::restoreText() const {
    return m_selection.ids.size() > 1 ? tr("Restore %Ln", nullptr, static_cast<int>(m_selection.ids.size()))
                                      : tr("Restore");
}

QString DeletedModel::eraseText() const {
    return m_selection.ids.size() > 1 ? tr("Erase %Ln now", nullptr, static_cast<int>(m_selection.ids.size()))
                                      : tr("Erase now");
}

QString DeletedModel::question() const {
    if (m_asked.size() != 1)
        return tr("Erase %Ln meetings now?", nullptr, static_cast<int>(m_asked.size()));
    const auto* asked = m_store.deletedMeeting(m_asked.front());
    return asked && !asked->meeting.title.empty() ? tr("Erase “%1” now?").arg(toQString(asked->meeting.title))
                                                  : tr("Erase the meeting now?");
}

QStringList DeletedModel::askedIDs() const {
    return texts(m_asked);
}

void DeletedModel::choose(int row, int modifiers) {
    if (row < 0 || row >= count())
        return;
    auto selection = chosen(m_selection, row, modifiers);
    m_selection.anchor = selection.anchor;
    m_current = ids()[row];
    select(std::move(selection.ids));
}

void DeletedModel::move(int rows, int modifiers) {
    if (!empty())
        choose(std::clamp(currentRow() + rows, 0, count() - 1), modifiers & Qt::ShiftModifier);
}

void DeletedModel::selectAll() {
    select({ids().begin(), ids().end()});
}

void DeletedModel::askToErase() {
    m_asked.assign(m_selection.ids.begin(), m_selection.ids.end());
    Q_EMIT askingChanged();
}

void DeletedModel::stopAsking() {
    m_asked.clear();
    Q_EMIT askingChanged();
}

void DeletedModel::reload() {
    std::vector<Uuid> wanted;
    for (const auto& deleted : m_store.deletedMeetings())
        wanted.push_back(deleted.meeting.id);
    const int formerCount = count(), formerRow = currentRow();
    followRows(std::move(wanted));
    if (count() != formerCount)
        Q_EMIT countChanged();
    keepSelection(formerRow);
}

void DeletedModel::keepSelection(int formerRow) {
    const bool stays = currentRow() >= 0;
    if (!stays)
        m_current = m_selection.anchor =
            empty() ? std::nullopt : std::optional(ids()[std::clamp(formerRow, 0, count() - 1)]);
    std::set<Uuid> selected;
    for (const auto& id : ids())
        if (m_selection.ids.contains(id))
            selected.insert(id);
    if (selected.empty() && m_current && (!stays || !m_selection.ids.empty()))
        selected = {*m_current};
    select(std::move(selected));
}

void DeletedModel::select(std::set<Uuid> ids) {
    m_selection.ids = std::move(ids);
    allChanged({SelectedRole});
    Q_EMIT selectionChanged();
}

const DeletedMeeting* DeletedModel::at(int row) const {
    const auto& deleted = m_store.deletedMeetings();
    const auto place = static_cast<std::size_t>(row);
    if (place < deleted.size() && deleted[place].meeting.id == ids()[place])
        return &deleted[place];
    return m_store.deletedMeeting(ids()[place]);
}

} // namespace varnet
