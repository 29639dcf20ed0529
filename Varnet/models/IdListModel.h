#pragma once

#include "MeetingCore/base/Uuid.h"

#include <QAbstractListModel>

#include <optional>
#include <set>
#include <vector>

namespace varnet {

/// A list whose rows are known by the ids of what they show, and of which several may be selected. Main thread.
class IdListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    int count() const { return static_cast<int>(m_ids.size()); }

protected:
    struct Selection {
        std::set<Uuid> ids;
        std::optional<Uuid> anchor; ///< the row that was last chosen without Shift
    };

    /// What choosing a row with these Qt::KeyboardModifiers makes of a selection: the row alone; with Ctrl it is taken
    /// in or out; with Shift all from the anchor to it, or itself where the anchor is no row.
    Selection chosen(Selection selection, int row, int modifiers) const;

    const std::vector<Uuid>& ids() const { return m_ids; } ///< the rows that views know of
    int rowOf(const std::optional<Uuid>& id) const;        ///< -1 where there is none
    void allChanged(const QList<int>& roles = {});         ///< all roles where none are named
    void replaceRows(std::vector<Uuid> wanted);            ///< views begin anew
    void followRows(std::vector<Uuid> wanted);             ///< views keep their place, unless the order is another

private:
    std::vector<Uuid> m_ids;
};

} // namespace varnet
