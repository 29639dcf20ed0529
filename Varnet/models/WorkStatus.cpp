#include "Varnet/models/WorkStatus.h"

#include "Varnet/models/Text.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/store/MeetingStore.h"

#include <QLocale>

#include <utility>

namespace varnet {

WorkStatus::WorkStatus(const MeetingStore& store, AppCommands& commands, QObject* parent)
    : QObject(parent), m_store(store), m_commands(commands) {
    connect(&store, &MeetingStore::audioWorkChanged, this, &WorkStatus::update);
    connect(&store, &MeetingStore::meetingChanged, this, &WorkStatus::update); // its title
    connect(&commands, &AppCommands::recordChanged, this, &WorkStatus::update);
    connect(&commands.imports(), &ImportQueue::waitingChanged, this, &WorkStatus::update);
    connect(&commands.notes(), &NotesCoordinator::changed, this, &WorkStatus::update);
}

void WorkStatus::update() {
    auto now = view();
    if (now == m_view)
        return;
    m_view = std::move(now);
    Q_EMIT changed();
}

WorkStatus::View WorkStatus::view() const {
    View view = m_store.audioWork() ? audioView() : m_commands.notes().meeting() ? notesView() : View();
    const int waiting = m_commands.imports().waiting();
    view.filesWait = waiting > 0;
    if (view.filesWait && view.running)
        view.waitingText = tr("%Ln more waiting", nullptr, waiting);
    else if (view.filesWait)
        view.text = waitingAlone();
    return view;
}

WorkStatus::View WorkStatus::audioView() const {
    const auto& work = *m_store.audioWork();
    const auto title = this->title(work.meetingID);
    View view;
    view.running = true;
    view.cancelling = work.cancelling;
    view.percent = work.converted && !work.cancelling ? static_cast<int>(*work.converted * 100) : 0;
    if (view.percent > 0)
        view.progress = tr("%1 %").arg(QLocale().toString(view.percent));
    view.text = work.cancelling  ? tr("Cancelling…")
                : work.converted ? tr("Importing “%1”").arg(title)
                : work.imports   ? tr("Transcribing “%1”").arg(title)
                                 : tr("Transcribing “%1” again").arg(title);
    return view;
}

WorkStatus::View WorkStatus::notesView() const {
    const auto& notes = m_commands.notes();
    const auto& steps = m_store.notesSteps();
    View view;
    view.running = true;
    view.cancelling = notes.cancelling();
    view.percent = steps.current > 0 ? (steps.current - 1) * 100 / steps.count : 0;
    view.progress = notes.progress();
    view.text = tr("Writing notes for “%1”").arg(title(*notes.meeting()));
    return view;
}

QString WorkStatus::title(const Uuid& id) const {
    const auto* meeting = m_store.meeting(id);
    return meeting ? toQString(meeting->title) : QString();
}

QString WorkStatus::waitingAlone() const {
    const auto& queue = m_commands.imports();
    const int waiting = queue.waiting();
    const auto what =
        waiting == 1 ? tr("“%1”").arg(toQString(queue.first().filename().string())) : tr("%Ln files", nullptr, waiting);
    switch (queue.obstacle()) {
    case ImportQueue::Obstacle::recording:
        return tr("%1 will be imported after the recording").arg(what);
    case ImportQueue::Obstacle::engine:
        return tr("%1 will be imported when the speech engine has started").arg(what);
    default:
        return tr("%1 will be imported when the present work is done").arg(what);
    }
}

} // namespace varnet
