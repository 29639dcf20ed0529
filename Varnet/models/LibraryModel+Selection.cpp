#include "Varnet/models/LibraryModel.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

#include <algorithm>
#include <iterator>

namespace varnet {

QString LibraryModel::summary() const {
    if (selectedCount() > 1)
        return tr("%Ln selected", nullptr, selectedCount());
    if (m_applied.empty() || ids().empty())
        return {};
    return tr("%Ln matches", nullptr, count());
}

int LibraryModel::selectedCount() const {
    return static_cast<int>(m_store.librarySelection().size());
}

int LibraryModel::currentRow() const {
    return rowOf(m_current);
}

bool LibraryModel::clickRow(int row, int modifiers) {
    if (row < 0 || row >= count())
        return false;
    const Uuid id = ids()[row];
    const auto selection = chosen({m_store.librarySelection(), m_anchor}, row, modifiers);
    select(selection.ids, id);
    m_anchor = selection.anchor;
    return !(modifiers & (Qt::ShiftModifier | Qt::ControlModifier));
}

void LibraryModel::moveBy(int rows, int modifiers) {
    if (ids().empty())
        return;
    const int row = std::clamp(currentRow() + rows, 0, count() - 1);
    if (modifiers & Qt::ControlModifier)
        setCurrent(ids()[row]);
    else
        clickRow(row, modifiers & Qt::ShiftModifier);
}

void LibraryModel::selectAll() {
    if (!ids().empty())
        select({ids().begin(), ids().end()}, currentRow() >= 0 ? *m_current : ids().front());
}

void LibraryModel::selectForMenu(int row) {
    if (row >= 0 && row < count() && !m_store.librarySelection().contains(ids()[row]))
        clickRow(row, Qt::NoModifier);
}

/// Selects these; the current one is on display too if it is among them.
void LibraryModel::select(const std::set<Uuid>& ids, const Uuid& current) {
    m_store.setLibrarySelection(ids);
    if (ids.contains(current))
        m_store.setSelectedID(current);
    setCurrent(current);
}

/// A command must not act on what is not to be seen.
void LibraryModel::dropHiddenFromSelection() {
    std::set<Uuid> kept;
    std::ranges::copy_if(ids(), std::inserter(kept, kept.end()),
                         [this](const Uuid& id) { return m_store.librarySelection().contains(id); });
    m_store.setLibrarySelection(std::move(kept));
    if (m_store.librarySelection().empty() && rowOf(m_store.selectedID()) >= 0)
        m_store.setSelectedID(m_store.selectedID());
}

void LibraryModel::setCurrent(const std::optional<Uuid>& id) {
    m_current = id;
    Q_EMIT currentRowChanged();
}

void LibraryModel::beginRename() {
    if (currentRow() >= 0)
        setRenaming(m_current);
}

void LibraryModel::rename(const QString& title) {
    if (m_renaming)
        m_store.setTitle(toUtf8(title), *m_renaming);
    endRename();
}

void LibraryModel::endRename() {
    setRenaming({});
}

void LibraryModel::setRenaming(const std::optional<Uuid>& id) {
    if (id == m_renaming)
        return;
    m_renaming = id;
    allChanged({RenamingRole});
}

} // namespace varnet
