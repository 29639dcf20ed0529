#include "Varnet/models/ErrorBanner.h"

#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

namespace varnet {

ErrorBanner::ErrorBanner(MeetingStore& store, QObject* parent) : QObject(parent), m_store(store) {
    connect(&store, &MeetingStore::errorChanged, this, &ErrorBanner::messageChanged);
    connect(&store, &MeetingStore::saveFailuresChanged, this, &ErrorBanner::saveMessageChanged);
}

QString ErrorBanner::message() const {
    return toQString(m_store.error().value_or(std::string()));
}

QString ErrorBanner::saveMessage() const {
    const auto& failures = m_store.saveFailures();
    if (failures.empty())
        return {};
    const auto reason = toQString(failures.begin()->second);
    const auto count = static_cast<int>(failures.size());
    return tr("Changes to %Ln meetings have not been saved; they are kept in memory. %1", nullptr, count).arg(reason);
}

void ErrorBanner::dismiss() {
    m_store.setError({});
}

void ErrorBanner::retrySaving() {
    m_store.retrySaving();
}

} // namespace varnet
