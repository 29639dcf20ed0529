#include "Varnet/shell/AppCommands.h"

#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/RecordingCoordinator.h"
#include "Varnet/store/MeetingStore.h"

namespace varnet {

AppCommands::AppCommands(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_router(router) {
    connect(&store, &MeetingStore::recordingChanged, this, &AppCommands::recordChanged);
    connect(&store, &MeetingStore::busyChanged, this, &AppCommands::recordChanged);
}

QString AppCommands::recordTitle() const {
    return m_store.recording() ? tr("Stop Recording") : tr("New Recording");
}

bool AppCommands::recordEnabled() const {
    return m_store.recording() || !m_store.busy();
}

bool AppCommands::stops() const {
    return m_store.recording();
}

void AppCommands::toggleRecording() {
    if (recordEnabled())
        m_tasks.spawn(RecordingCoordinator::toggle(&m_store, &m_engines, &m_router));
}

void AppCommands::showLibrary() {
    m_router.setPage(AppRouter::Page::library);
}

void AppCommands::openSelected() {
    if (m_store.selected())
        m_router.setPage(AppRouter::Page::meeting);
}

} // namespace varnet
