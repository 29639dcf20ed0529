#pragma once

#include "MeetingCore/base/Uuid.h"

#include <QUndoCommand>

#include <set>

namespace varnet {

class MeetingStore;

/// A delete of meetings that has happened, or a restore of deleted ones, for the undo stack. It moves only meetings
/// that it moved before and that are still where it left them; with none left it drops out of the stack. Main thread;
/// the store must outlive it.
class DeletionCommand : public QUndoCommand {
public:
    enum class Kind { deletes, restores };

    DeletionCommand(MeetingStore& store, Kind kind, std::set<Uuid> ids);

    /// Whether this is the delete of just these meetings.
    bool deletes(const std::set<Uuid>& ids) const { return m_kind == Kind::deletes && m_ids == ids; }

    void undo() override;
    void redo() override; ///< nothing the first time, when the stack takes the command

private:
    void keep(std::set<Uuid> ids);
    void move(Kind kind);

    MeetingStore& m_store;
    Kind m_kind;
    std::set<Uuid> m_ids;
    bool m_pushed = false;
};

} // namespace varnet
