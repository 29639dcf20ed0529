#include "Varnet/models/LibraryModel.h"

#include "MeetingCore/base/Text.h"
#include "Varnet/models/MeetingText.h"
#include "Varnet/models/Text.h"
#include "Varnet/models/Theme.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"
#include "Varnet/store/SearchIndex.h"

#include <algorithm>
#include <utility>

namespace varnet {

namespace {

QString styled(const std::optional<SearchSnippet>& snippet) {
    if (!snippet)
        return {};
    return QStringLiteral("%1<b><font color=\"%2\">%3</font></b>%4")
        .arg(toQString(snippet->before).toHtmlEscaped(), Theme::shared().accent().name(),
             toQString(snippet->hit).toHtmlEscaped(), toQString(snippet->after).toHtmlEscaped());
}

} // namespace

LibraryModel::LibraryModel(MeetingStore& store, QObject* parent)
    : IdListModel(parent),
      m_store(store),
      m_search(store.meetings(), SearchIndex::shared()),
      m_current(store.selectedID()),
      m_anchor(m_current) {
    replaceRows(wantedRows());
    connect(&store, &MeetingStore::meetingsChanged, this, &LibraryModel::followList);
    connect(&store, &MeetingStore::meetingInserted, this, &LibraryModel::followList);
    connect(&store, &MeetingStore::meetingChanged, this, &LibraryModel::meetingChanged);
    connect(&store, &MeetingStore::turnsAppended, this, &LibraryModel::meetingChanged);
    connect(&store, &MeetingStore::selectedIDChanged, this, [this] {
        m_anchor = m_store.selectedID();
        setCurrent(m_anchor);
    });
    connect(&store, &MeetingStore::librarySelectionChanged, this, [this] {
        allChanged({SelectedRole});
        Q_EMIT summaryChanged();
    });
    const auto workMoved = [this] { allChanged({BadgeTextRole, BadgeToneRole, BadgeMarkedRole, DurationRole}); };
    connect(&store, &MeetingStore::recordingChanged, this, workMoved);
    connect(&store, &MeetingStore::recordingIDChanged, this, workMoved);
    connect(&store, &MeetingStore::notesMeetingIDChanged, this, workMoved);
    connect(&Theme::shared(), &Theme::appearanceChanged, this, [this] { allChanged({SnippetRole}); });
    m_midnight.setSingleShot(true);
    connect(&m_midnight, &QTimer::timeout, this, [this] {
        allChanged({DayRole, DayDetailRole});
        scheduleMidnight();
    });
    scheduleMidnight();
}

bool LibraryModel::empty() const {
    return m_store.meetings().empty();
}

bool LibraryModel::noResults() const {
    return ids().empty() && !empty();
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
        return startsDay(index.row()) ? toQString(MeetingPresentation::dayHeading(meeting->createdAt).main) : QString();
    case DayDetailRole:
        return startsDay(index.row()) ? toQString(MeetingPresentation::dayHeading(meeting->createdAt).second)
                                      : QString();
    case SnippetRole:
        return m_applied.empty() ? QString() : styled(SearchSnippet::find(m_applied, *meeting));
    case SelectedRole:
        return m_store.librarySelection().contains(meeting->id);
    case RenamingRole:
        return m_renaming == meeting->id;
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
            {SnippetRole, "snippet"},
            {SelectedRole, "selected"},
            {RenamingRole, "renaming"},
            {SpokenRole, "spoken"}};
}

void LibraryModel::setQuery(const QString& query) {
    if (query == m_query)
        return;
    m_query = query;
    Q_EMIT queryChanged();
    if (m_prepared || query.isEmpty())
        applyQuery();
    else
        prepareSearch();
}

void LibraryModel::prepareSearch() {
    if (!std::exchange(m_preparing, true))
        m_tasks.spawn(prepare(this, m_tasks.stopToken()));
}

Task<> LibraryModel::prepare(LibraryModel* self, std::stop_token stop) {
    co_await LibrarySearch::prepare(&self->m_search, stop);
    if (stop.stop_requested())
        co_return;
    self->m_prepared = true;
    self->applyQuery();
}

void LibraryModel::applyQuery() {
    auto applied = lowerCased(toUtf8(m_query));
    if (applied == m_applied)
        return;
    m_applied = std::move(applied);
    if (auto wanted = wantedRows(); wanted == ids())
        allChanged({SnippetRole});
    else
        replaceRows(std::move(wanted));
    listChanged();
}

std::vector<Uuid> LibraryModel::wantedRows() {
    std::vector<Uuid> ids;
    const auto& meetings = m_store.meetings();
    if (m_applied.empty()) {
        ids.reserve(meetings.size());
        for (const auto& meeting : meetings)
            ids.push_back(meeting.id);
    } else {
        for (const auto place : m_search.find(m_applied))
            ids.push_back(meetings[place].id);
    }
    return ids;
}

void LibraryModel::followList() {
    m_search.forget();
    followRows(wantedRows());
    allChanged();
    listChanged();
}

/// The rows are others now.
void LibraryModel::listChanged() {
    if (!m_applied.empty())
        dropHiddenFromSelection();
    Q_EMIT countChanged();
    Q_EMIT summaryChanged();
    Q_EMIT currentRowChanged();
}

void LibraryModel::meetingChanged(const Uuid& id) {
    m_search.forget();
    const int row = rowOf(id);
    const auto* meeting = m_store.meeting(id);
    if (meeting && m_search.matches(m_applied, *meeting) != (row >= 0))
        followList();
    else if (row >= 0)
        Q_EMIT dataChanged(index(row), index(row));
}

/// "Today" has to become "Yesterday" in a window that stays open. Looked at in between too, because a timer stands
/// still while the machine sleeps.
void LibraryModel::scheduleMidnight() {
    constexpr qint64 longest = 10LL * 60 * 1000;
    const auto now = QDateTime::currentDateTime();
    const auto midnight = now.date().addDays(1).startOfDay();
    m_midnight.start(static_cast<int>(std::clamp<qint64>(now.msecsTo(midnight) + 50, 50, longest)));
}

const Meeting* LibraryModel::at(int row) const {
    const auto& meetings = m_store.meetings();
    const auto& id = ids()[row];
    for (const auto place : {static_cast<std::size_t>(row), m_lastPlace})
        if (place < meetings.size() && meetings[place].id == id)
            return &meetings[place];
    const auto found = std::ranges::find(meetings, id, &Meeting::id);
    m_lastPlace = static_cast<std::size_t>(found - meetings.begin());
    return found == meetings.end() ? nullptr : &*found;
}

bool LibraryModel::startsDay(int row) const {
    if (row == 0)
        return true;
    const auto *meeting = at(row), *previous = at(row - 1);
    return meeting && previous &&
           MeetingText::localDay(meeting->createdAt) != MeetingText::localDay(previous->createdAt);
}

} // namespace varnet
