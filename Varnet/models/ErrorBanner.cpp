#include "Varnet/models/ErrorBanner.h"

#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

namespace varnet {

ErrorBanner::ErrorBanner(MeetingStore& store, QObject* parent) : QObject(parent), m_store(store) {
    connect(&store, &MeetingStore::errorChanged, this, &ErrorBanner::messageChanged);
    connect(&store, &MeetingStore::saveFailuresChanged, this, &ErrorBanner::saveMessageChanged);
    connect(&store, &MeetingStore::meetingChanged, this, [this](Uuid id) {
        if (m_store.saveFailures().contains(id)) // its title may be another one
            Q_EMIT saveMessageChanged();
    });
}

QString ErrorBanner::message() const {
    return toQString(m_store.error().value_or(std::string()));
}

QString ErrorBanner::saveMessage() const {
    const auto& failures = m_store.saveFailures();
    if (failures.empty())
        return {};
    const auto& [id, failure] = *failures.begin();
    const auto count = static_cast<int>(failures.size());
    const auto* meeting = m_store.meeting(id);
    const auto title = meeting ? toQString(meeting->title) : QString();
    auto reason = toQString(failure);
    if (!title.isEmpty()) // its folder's name says nothing to anybody
        reason.replace(u'“' + toQString(id.text()) + u'”', count == 1 ? tr("Its folder") : u'“' + title + u'”');
    if (count == 1 && !title.isEmpty())
        return tr("Changes to “%1” have not been saved; they are kept in memory. %2").arg(title, reason);
    return tr("Changes to %Ln meetings have not been saved; they are kept in memory. %1", nullptr, count).arg(reason);
}

void ErrorBanner::dismiss() {
    m_store.setError({});
}

void ErrorBanner::retrySaving() {
    m_store.retrySaving();
}

} // namespace varnet
