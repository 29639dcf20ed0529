#include "Varnet/models/LibraryModel.h"

#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"

#include <algorithm>

namespace varnet {

LibraryModel::LibraryModel(MeetingStore& store, QObject* parent) : QAbstractListModel(parent), m_store(store) {
    reload();
    connect(&store, &MeetingStore::meetingsChanged, this, &LibraryModel::reload);
    connect(&store, &MeetingStore::meetingInserted, this, &LibraryModel::insertFirst);
    connect(&store, &MeetingStore::meetingChanged, this, &LibraryModel::rowChanged);
    connect(&store, &MeetingStore::turnsAppended, this, &LibraryModel::rowChanged);
    connect(&store, &MeetingStore::selectedIDChanged, this, &LibraryModel::selectedRowChanged);
    const auto recordingMoved = [this] { allChanged({BadgeTextRole, BadgeToneRole, BadgeMarkedRole, DurationRole}); };
    connect(&store, &MeetingStore::recordingChanged, this, recordingMoved);
    connect(&store, &MeetingStore::recordingIDChanged, this, recordingMoved);
    m_midnight.setSingleShot(true);
    connect(&m_midnight, &QTimer::timeout, this, [this] {
        allChanged({DayRole, DayDetailRole});
        scheduleMidnight();
    });
    scheduleMidnight();
}

int LibraryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant LibraryModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto* meeting = at(index.row());
    if (!meeting)
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return toQString(meeting->title);
    case SubtitleRole:
        return toQString(MeetingPresentation::subtitle(*meeting));
    case BadgeTextRole:
        return toQString(MeetingPresentation::badge(*meeting, m_store).text);
    case BadgeToneRole:
        return MeetingText::tone(MeetingPresentation::badge(*meeting, m_store).color);
    case BadgeMarkedRole:
        return MeetingPresentation::badge(*meeting, m_store).marked;
    case TimeRole:
        return MeetingText::time(meeting->createdAt);
    case DurationRole:
        return MeetingText::duration(*meeting, m_store);
    case StartsDayRole:
        return startsDay(index.row());
    case DayRole:
        return toQString(MeetingPresentation::dayHeading(meeting->createdAt).main);
    case DayDetailRole:
        return toQString(MeetingPresentation::dayHeading(meeting->createdAt).second);
    case SpokenRole:
        return QStringLiteral("%1, %2, %3, %4")
            .arg(toQString(meeting->title), MeetingText::time(meeting->createdAt),
                 toQString(MeetingPresentation::badge(*meeting, m_store).text),
                 toQString(MeetingPresentation::subtitle(*meeting)));
    default:
        return {};
    }
}

QHash<int, QByteArray> LibraryModel::roleNames() const {
    return {{TitleRole, "title"},
            {SubtitleRole, "subtitle"},
            {BadgeTextRole, "badgeText"},
            {BadgeToneRole, "badgeTone"},
            {BadgeMarkedRole, "badgeMarked"},
            {TimeRole, "time"},
            {DurationRole, "duration"},
            {StartsDayRole, "startsDay"},
            {DayRole, "day"},
            {DayDetailRole, "dayDetail"},
            {SpokenRole, "spoken"}};
}

int LibraryModel::selectedRow() const {
    return m_store.selectedID() ? rowOf(*m_store.selectedID()) : -1;
}

void LibraryModel::select(int row) {
    if (row >= 0 && row < count())
        m_store.setSelectedID(m_ids[row]);
}

void LibraryModel::moveSelection(int rows) {
    if (!empty())
        select(std::clamp(selectedRow() + rows, 0, count() - 1));
}

void LibraryModel::reload() {
    beginResetModel();
    m_ids.clear();
    for (const auto& meeting : m_store.meetings())
        m_ids.push_back(meeting.id);
    endResetModel();
    Q_EMIT countChanged();
    Q_EMIT selectedRowChanged();
}

void LibraryModel::insertFirst(const Uuid& id) {
    beginInsertRows({}, 0, 0);
    m_ids.insert(m_ids.begin(), id);
    endInsertRows();
    if (count() > 1)
        Q_EMIT dataChanged(index(1), index(1), {StartsDayRole});
    Q_EMIT countChanged();
    Q_EMIT selectedRowChanged();
}

void LibraryModel::rowChanged(const Uuid& id) {
    if (const int row = rowOf(id); row >= 0)
        Q_EMIT dataChanged(index(row), index(row));
}

void LibraryModel::allChanged(const QList<int>& roles) {
    if (!empty())
        Q_EMIT dataChanged(index(0), index(count() - 1), roles);
}

/// "Today" has to become "Yesterday" in a window that stays open. Looked at in between too, because a timer stands
/// still while the machine sleeps.
void LibraryModel::scheduleMidnight() {
    constexpr qint64 longest = 10LL * 60 * 1000;
    const auto now = QDateTime::currentDateTime();
    const auto midnight = now.date().addDays(1).startOfDay();
    m_midnight.start(static_cast<int>(std::clamp<qint64>(now.msecsTo(midnight) + 50, 50, longest)));
}

int LibraryModel::rowOf(const Uuid& id) const {
    const auto found = std::find(m_ids.begin(), m_ids.end(), id);
    return found == m_ids.end() ? -1 : static_cast<int>(found - m_ids.begin());
}

const Meeting* LibraryModel::at(int row) const {
    const auto& meetings = m_store.meetings();
    const auto place = static_cast<std::size_t>(row);
    if (place < meetings.size() && meetings[place].id == m_ids[place])
        return &meetings[place];
    return m_store.meeting(m_ids[place]);
}

bool LibraryModel::startsDay(int row) const {
    if (row == 0)
        return true;
    const auto *meeting = at(row), *previous = at(row - 1);
    return meeting && previous &&
           MeetingText::localDay(meeting->createdAt) != MeetingText::localDay(previous->createdAt);
}

} // namespace varnet
