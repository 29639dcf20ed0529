#include "Varnet/shell/AppRouter.h"

namespace varnet {

void AppRouter::setPage(Page page) {
    if (page == m_page)
        return;
    m_page = page;
    Q_EMIT pageChanged();
}

void AppRouter::setImporting(bool importing) {
    if (importing == m_importing)
        return;
    m_importing = importing;
    Q_EMIT importingChanged();
}

void AppRouter::requestSearchFocus() {
    ++m_searchFocusRequest;
    Q_EMIT searchFocusRequestChanged();
}

} // namespace varnet
