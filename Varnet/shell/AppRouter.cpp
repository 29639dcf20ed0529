#include "Varnet/shell/AppRouter.h"

namespace varnet {

void AppRouter::setPage(Page page) {
    if (page == m_page)
        return;
    setHistoryOpen(false);
    setRetrying({});
    m_page = page;
    Q_EMIT pageChanged();
}

void AppRouter::setHistoryOpen(bool open) {
    if (open == m_historyOpen)
        return;
    m_historyOpen = open;
    Q_EMIT historyOpenChanged();
}

void AppRouter::setImporting(bool importing) {
    if (importing == m_importing)
        return;
    m_importing = importing;
    Q_EMIT importingChanged();
}

void AppRouter::setExporting(bool exporting) {
    if (exporting == m_exporting)
        return;
    m_exporting = exporting;
    Q_EMIT exportingChanged();
}

void AppRouter::setSettingsOpen(bool open) {
    if (open == m_settingsOpen)
        return;
    m_settingsOpen = open;
    Q_EMIT settingsOpenChanged();
}

void AppRouter::setRetrying(const QString& meeting) {
    if (meeting == m_retrying)
        return;
    m_retrying = meeting;
    Q_EMIT retryingChanged();
}

void AppRouter::requestSearchFocus() {
    ++m_searchFocusRequest;
    Q_EMIT searchFocusRequestChanged();
}

} // namespace varnet
