#include "Varnet/shell/VarnetApp.h"

#include "Varnet/async/Sleep.h"
#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/models/Theme.h"
#include "Varnet/platform/Paths.h"
#include "Varnet/store/CaptureMode.h"

#include <chrono>

namespace varnet {

namespace {

constexpr std::chrono::seconds pollInterval{15};

StoreParts partsFor(const CommandLine& commandLine, std::function<LoadedMeetings()> load) {
    StoreParts parts;
    parts.load = std::move(load);
    parts.writable = !commandLine.exportsWindow;
    return parts;
}

} // namespace

VarnetApp::VarnetApp(CommandLine commandLine, std::function<LoadedMeetings()> load, QObject* parent)
    : QObject(parent),
      m_commandLine(std::move(commandLine)),
      m_store(m_commandLine.storageRoot, partsFor(m_commandLine, std::move(load))) {}

VarnetApp::~VarnetApp() {
    m_tasks.requestStop();
}

std::filesystem::path VarnetApp::storageRoot(const CommandLine& commandLine) {
    return commandLine.storageRoot.value_or(Paths::applicationSupport() / "Varnet" / "meetings");
}

void VarnetApp::tieTogether() {
    m_delegate.adopt(&m_store, &m_engines);
    if (m_commandLine.appearance)
        Theme::shared().setAppearance(*m_commandLine.appearance == "dark" ? Theme::Appearance::dark
                                                                          : Theme::Appearance::light);
    if (const auto mode = CaptureModePreference::load(m_settings))
        m_store.setCaptureMode(*mode);
    connect(&m_store, &MeetingStore::recordingChanged, this, &VarnetApp::followRecording);
    connect(&m_store, &MeetingStore::busyChanged, this, &VarnetApp::endWelcome);
    connect(&m_delegate, &MeetingAppDelegate::terminating, &m_commands.imports(), &ImportQueue::clear);
}

void VarnetApp::windowAppeared() {
    if (std::exchange(m_appeared, true))
        return;
    m_tasks.spawn(m_engines.startSpeech());
    m_tasks.spawn(checkOnce(this, m_tasks.stopToken()));
    m_tasks.spawn(poll(this, m_tasks.stopToken()));
}

void VarnetApp::followRecording() {
    if (m_store.recording() == std::exchange(m_wasRecording, m_store.recording()))
        return;
    if (m_store.recording())
        m_router.setPage(AppRouter::Page::meeting);
    else
        m_engines.recordingEnded();
}

/// A recording or an import that begins, wherever it was asked for, is what people want to see.
void VarnetApp::endWelcome() {
    if (m_store.busy())
        m_onboarding.finish();
}

Task<> VarnetApp::checkOnce(VarnetApp* self, std::stop_token stop) {
    co_await self->m_store.checkRuntime();
    if (stop.stop_requested())
        co_return;
    co_await self->m_store.checkNotesRuntime();
    if (stop.stop_requested())
        co_return;
    self->applyPreviews();
    co_await self->m_engines.refresh(); // else the notes engine would be called unknown until the poll
}

/// The flags in their order: a later one's page wins.
void VarnetApp::applyPreviews() {
    if (m_commandLine.showsHistory || m_commandLine.showsMeeting)
        m_router.setPage(AppRouter::Page::meeting);
    if (m_commandLine.previewsRecording) {
        m_router.setPage(AppRouter::Page::meeting);
        m_store.levels().preview(0.07f, m_commandLine.previewsCallMissing ? 0.0f : 0.05f,
                                 m_commandLine.previewsCallMissing);
    }
    if (m_commandLine.showsDeleted)
        m_router.setPage(AppRouter::Page::deleted);
    if (m_commandLine.showsHistory) // last: turning to a page closes it
        m_commands.openHistory();
}

Task<> VarnetApp::poll(VarnetApp* self, std::stop_token stop) {
    while (true) {
        const bool slept = co_await sleepFor(pollInterval, stop);
        if (!slept)
            co_return;
        co_await self->m_store.checkRuntime();
        if (stop.stop_requested())
            co_return;
        co_await self->m_store.checkNotesRuntime();
        if (stop.stop_requested())
            co_return;
        co_await self->m_engines.refresh();
        if (stop.stop_requested())
            co_return;
    }
}

} // namespace varnet
