#include "Varnet/shell/MeetingAppDelegate.h"

#include "Varnet/async/Waits.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/store/MeetingStore.h"

#include <chrono>

namespace varnet {

namespace {

constexpr std::chrono::seconds captureTimeout{10};

} // namespace

MeetingAppDelegate::MeetingAppDelegate(QObject* parent) : QObject(parent) {}

void MeetingAppDelegate::adopt(MeetingStore* store, EngineSupervisor* engines) {
    m_store = store;
    m_engines = engines;
}

bool MeetingAppDelegate::canCloseAtOnce() {
    Q_EMIT closing();
    return !m_store || (!captures() && m_store->retrySaving());
}

void MeetingAppDelegate::quit() {
    if (m_quitting)
        return;
    m_quitting = true;
    Q_EMIT closing();
    if (captures())
        m_tasks.spawn(endCaptureAndClose(this, m_tasks.stopToken()));
    else
        close();
}

bool MeetingAppDelegate::captures() const {
    return m_store && (m_store->recording() || m_store->capturing());
}

/// A start or a stop that is under way comes to its end first, so that the files of the recording are closed.
Task<> MeetingAppDelegate::endCaptureAndClose(QPointer<MeetingAppDelegate> self, std::stop_token stop) {
    do {
        // A recording that cannot be stopped says so in the store's error; whether to stay is up to what is saved.
        if (self->m_store->recording())
            co_await self->m_store->stopRecording();
        else if (co_await waitForSignal(self->m_store.data(), &MeetingStore::meetingChanged, captureTimeout, stop) ==
                 WaitOutcome::timedOut)
            break;
        if (!self || stop.stop_requested())
            co_return;
    } while (self->m_store && self->m_store->capturing());
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
    if (captures()) // begun while the question was up
        m_tasks.spawn(endCaptureAndClose(this, m_tasks.stopToken()));
    else if (!m_store || m_store->retrySaving())
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
    Q_EMIT terminating();
    if (m_engines)
        m_engines->shutdown();
    Q_EMIT terminated();
}

} // namespace varnet
