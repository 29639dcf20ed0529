#include "Varnet/shell/RecordingCoordinator.h"

#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/store/MeetingStore.h"

#include <QPointer>

namespace varnet {

namespace {

/// Another press of the button has a start under way, which the engines must go on knowing about.
bool isStarting(const MeetingStore& store) {
    const Meeting* meeting = store.recordingID() ? store.meeting(*store.recordingID()) : nullptr;
    return meeting && meeting->status == MeetingStatus::preparingMicrophone;
}

} // namespace

Task<> RecordingCoordinator::toggle(MeetingStore* storeObject, EngineSupervisor* enginesObject,
                                    AppRouter* routerObject) {
    const QPointer<MeetingStore> store(storeObject);
    const QPointer<EngineSupervisor> engines(enginesObject);
    const QPointer<AppRouter> router(routerObject);
    if (store->recording()) {
        co_await store->stopRecording();
        co_return;
    }

    const std::optional<std::string> message = co_await engines->prepareForRecording();
    if (!store)
        co_return;
    if (message)
        store->setError(message);
    co_await store->checkNotesRuntime();
    if (!store)
        co_return;
    co_await store->startRecording();
    if (!store || !engines || !router)
        co_return;
    if (store->recording())
        router->setPage(AppRouter::Page::meeting);
    else if (!isStarting(*store))
        engines->recordingEnded();
}

} // namespace varnet
