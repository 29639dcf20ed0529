#include "Varnet/models/UndoToast.h"

#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingStore.h"

#include <algorithm>

namespace varnet {

UndoToast::UndoToast(MeetingStore& store, int milliseconds, QObject* parent)
    : QObject(parent), m_store(store), m_milliseconds(milliseconds) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, &store, &MeetingStore::dismissPendingUndo);
    connect(&store, &MeetingStore::pendingUndoChanged, this, &UndoToast::restart);
    restart();
}

bool UndoToast::showing() const {
    return m_store.pendingUndo().has_value();
}

void UndoToast::setHeld(bool held) {
    if (held == m_held)
        return;
    m_held = held;
    if (held && m_timer.isActive()) {
        m_timer.stop();
        m_left = std::max(0, m_left - static_cast<int>(m_ran.elapsed()));
    } else if (!held && showing()) {
        run();
    }
    Q_EMIT heldChanged();
}

void UndoToast::restart() {
    m_timer.stop();
    m_left = m_milliseconds;
    if (showing() && !m_held)
        run();
    if (showing())
        m_text = words(m_store.pendingUndo()->meetingIDs);
    Q_EMIT changed();
}

QString UndoToast::words(const std::vector<Uuid>& ids) const {
    if (ids.size() != 1)
        return tr("Deleted %Ln meetings", nullptr, static_cast<int>(ids.size()));
    const auto* deleted = m_store.deletedMeeting(ids.front());
    return deleted && !deleted->meeting.title.empty() ? tr("Deleted “%1”").arg(toQString(deleted->meeting.title))
                                                      : tr("Deleted a meeting");
}

void UndoToast::run() {
    m_ran.start();
    m_timer.start(m_left);
}

} // namespace varnet
