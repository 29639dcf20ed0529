#include "Varnet/models/IdListModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace varnet {

namespace {

/// Tells whether an id is among some.
auto memberOf(std::vector<Uuid> ids) {
    std::ranges::sort(ids);
    return [ids = std::move(ids)](const Uuid& id) { return std::ranges::binary_search(ids, id); };
}

} // namespace

int IdListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

IdListModel::Selection IdListModel::chosen(Selection selection, int row, int modifiers) const {
    const Uuid id = m_ids[row];
    if (modifiers & Qt::ShiftModifier) {
        if (rowOf(selection.anchor) < 0)
            selection.anchor = id;
        const auto [first, last] = std::minmax(rowOf(selection.anchor), row);
        selection.ids = {m_ids.begin() + first, m_ids.begin() + last + 1};
        return selection;
    }
    if (!(modifiers & Qt::ControlModifier))
        selection.ids.clear();
    if (selection.ids.erase(id) == 0)
        selection.ids.insert(id);
    selection.anchor = id;
    return selection;
}

int IdListModel::rowOf(const std::optional<Uuid>& id) const {
    const auto found = id ? std::ranges::find(m_ids, *id) : m_ids.end();
    return found == m_ids.end() ? -1 : static_cast<int>(found - m_ids.begin());
}

void IdListModel::allChanged(const QList<int>& roles) {
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1), roles);
}

void IdListModel::replaceRows(std::vector<Uuid> wanted) {
    beginResetModel();
    m_ids = std::move(wanted);
    endResetModel();
}

/// Rows that stand together go and come together.
void IdListModel::followRows(std::vector<Uuid> wanted) {
    const auto stays = memberOf(wanted), known = memberOf(m_ids);
    std::vector<Uuid> kept, keptInOrder;
    std::ranges::copy_if(m_ids, std::back_inserter(kept), stays);
    std::ranges::copy_if(wanted, std::back_inserter(keptInOrder), known);
    if (kept != keptInOrder)
        return replaceRows(std::move(wanted));
    for (int last = count() - 1; last >= 0; --last) {
        if (stays(m_ids[last]))
            continue;
        int first = last;
        while (first > 0 && !stays(m_ids[first - 1]))
            --first;
        beginRemoveRows({}, first, last);
        m_ids.erase(m_ids.begin() + first, m_ids.begin() + last + 1);
        endRemoveRows();
        last = first;
    }
    for (int first = 0; first < static_cast<int>(wanted.size()); ++first) {
        if (known(wanted[first]))
            continue;
        int last = first;
        while (last + 1 < static_cast<int>(wanted.size()) && !known(wanted[last + 1]))
            ++last;
        beginInsertRows({}, first, last);
        m_ids.insert(m_ids.begin() + first, wanted.begin() + first, wanted.begin() + last + 1);
        endInsertRows();
        first = last;
    }
}

} // namespace varnet
