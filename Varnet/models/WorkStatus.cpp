#include "Varnet/models/WorkStatus.h"

#include "Varnet/models/Text.h"
#include "Varnet/shell/ImportQueue.h"
#include "Varnet/store/MeetingStore.h"

#include <QLocale>

#include <utility>

namespace varnet {

WorkStatus::WorkStatus(const MeetingStore& store, const ImportQueue& queue, QObject* parent)
    : QObject(parent), m_store(store), m_queue(queue) {
    connect(&store, &MeetingStore::audioWorkChanged, this, &WorkStatus::update);
    connect(&store, &MeetingStore::recordingChanged, this, &WorkStatus::update);
    connect(&store, &MeetingStore::busyChanged, this, &WorkStatus::update);
    connect(&queue, &ImportQueue::waitingChanged, this, &WorkStatus::update);
    connect(&store, &MeetingStore::meetingChanged, this, [this](Uuid id) {
        if (m_store.audioWork() && m_store.audioWork()->meetingID == id)
            update(); // its title
    });
}

QString WorkStatus::shareText() const {
    return measured() ? tr("%1 %").arg(QLocale().toString(m_view.percent)) : QString();
}

void WorkStatus::update() {
    auto now = view();
    if (now == m_view)
        return;
    m_view = std::move(now);
    Q_EMIT changed();
}

WorkStatus::View WorkStatus::view() const {
    View view;
    const int waiting = m_queue.waiting();
    view.filesWait = waiting > 0;
    const auto& work = m_store.audioWork();
    if (!work) {
        if (view.filesWait)
            view.text = waitingAlone();
        return view;
    }
    const auto* meeting = m_store.meeting(work->meetingID);
    const auto title = meeting ? toQString(meeting->title) : QString();
    view.running = true;
    view.cancelling = work->cancelling;
    view.percent = work->converted && !work->cancelling ? static_cast<int>(*work->converted * 100) : 0;
    view.text = work->cancelling  ? tr("Cancelling…")
                : work->converted ? tr("Importing “%1”").arg(title)
                : work->imports   ? tr("Transcribing “%1”").arg(title)
                                  : tr("Transcribing “%1” again").arg(title);
    if (view.filesWait)
        view.waitingText = tr("%1 more waiting").arg(QLocale().toString(waiting));
    return view;
}

QString WorkStatus::waitingAlone() const {
    const int waiting = m_queue.waiting();
    const auto what = waiting == 1 ? tr("“%1”").arg(toQString(m_queue.first().filename().string()))
                                   : tr("%1 files").arg(QLocale().toString(waiting));
    switch (m_queue.obstacle()) {
    case ImportQueue::Obstacle::recording:
        return tr("%1 will be imported after the recording").arg(what);
    case ImportQueue::Obstacle::engine:
        return tr("%1 will be imported when the speech engine has started").arg(what);
    default:
        return tr("%1 will be imported when the present work is done").arg(what);
    }
}

} // namespace varnet
