#include "Varnet/shell/MeetingAppDelegate.h"

#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/store/MeetingStore.h"

namespace varnet {

MeetingAppDelegate::MeetingAppDelegate(QObject* parent) : QObject(parent) {}

void MeetingAppDelegate::adopt(MeetingStore* store, EngineSupervisor* engines) {
    m_store = store;
    m_engines = engines;
}

bool MeetingAppDelegate::canCloseAtOnce() {
    return !m_store || (!m_store->recording() && m_store->retrySaving());
}

void MeetingAppDelegate::quit() {
    if (m_quitting)
        return;
    m_quitting = true;
    if (m_store && m_store->recording())
        m_tasks.spawn(stopRecordingAndClose(this));
    else
        close();
}

Task<> MeetingAppDelegate::stopRecordingAndClose(QPointer<MeetingAppDelegate> self) {
    // A recording that cannot be stopped says so in the store's error; whether to stay is up to what is saved.
    co_await self->m_store->stopRecording();
    if (self)
        self->close();
}

void MeetingAppDelegate::close() {
    if (!m_store || m_store->retrySaving())
        terminate();
    else
        setAskingToSave(true);
}

void MeetingAppDelegate::keepOpen() {
    if (!m_askingToSave)
        return;
    setAskingToSave(false);
    cancel();
}

void MeetingAppDelegate::retrySavingAndQuit() {
    if (!m_askingToSave)
        return;
    setAskingToSave(false);
    if (!m_store || m_store->retrySaving())
        terminate();
    else
        cancel();
}

void MeetingAppDelegate::setAskingToSave(bool asking) {
    m_askingToSave = asking;
    Q_EMIT askingToSaveChanged();
}

void MeetingAppDelegate::cancel() {
    m_quitting = false;
    Q_EMIT quitCancelled();
}

void MeetingAppDelegate::terminate() {
    if (m_engines)
        m_engines->shutdown();
    Q_EMIT terminated();
}

} // namespace varnet
