#include "Varnet/store/DeletionCommand.h"

#include "Varnet/store/MeetingStore.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace varnet {

DeletionCommand::DeletionCommand(MeetingStore& store, Kind kind, std::set<Uuid> ids) : m_store(store), m_kind(kind) {
    keep(std::move(ids));
}

void DeletionCommand::keep(std::set<Uuid> ids) {
    m_ids = std::move(ids);
    const auto count = static_cast<int>(m_ids.size());
    setText(QCoreApplication::translate("DeletionCommand", "Delete %Ln Meetings", nullptr, count));
    setObsolete(m_ids.empty());
}

void DeletionCommand::undo() {
    move(m_kind == Kind::deletes ? Kind::restores : Kind::deletes);
}

void DeletionCommand::redo() {
    if (std::exchange(m_pushed, true))
        move(m_kind);
}

/// The store gets no stack here: one that is undoing must not be pushed to.
void DeletionCommand::move(Kind kind) {
    std::set<Uuid> movable;
    for (const Uuid& id : m_ids)
        if (kind == Kind::deletes ? m_store.meeting(id) != nullptr : m_store.deletedMeeting(id) != nullptr)
            movable.insert(id);
    if (!movable.empty())
        movable = kind == Kind::deletes ? m_store.deleteMeetings(movable, nullptr)
                                        : m_store.restoreMeetings(movable, nullptr);
    keep(std::move(movable));
}

} // namespace varnet
