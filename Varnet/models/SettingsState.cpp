#include "Varnet/models/SettingsState.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Onboarding.h"
#include "Varnet/models/Text.h"
#include "Varnet/platform/Autostart.h"
#include "Varnet/platform/FileBrowser.h"
#include "Varnet/platform/Paths.h"
#include "Varnet/store/MeetingStore.h"

#include <array>
#include <utility>

namespace varnet {

namespace fs = std::filesystem;

namespace {

/// In the order of `captureModes`.
constexpr std::array modes{CaptureMode::meeting, CaptureMode::microphone};

} // namespace

SettingsState::SettingsState(MeetingStore& store, EngineSupervisor& engines, Settings& settings, Onboarding& onboarding,
                             QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_settings(settings), m_onboarding(onboarding) {
    connect(&store, &MeetingStore::captureModeChanged, this, &SettingsState::captureModeChanged);
    connect(&store, &MeetingStore::recordingChanged, this, &SettingsState::recordingChanged);
    connect(&engines, &EngineSupervisor::speechChanged, this, &SettingsState::speechChanged);
    connect(&engines, &EngineSupervisor::notesChanged, this, &SettingsState::notesChanged);
    connect(&engines, &EngineSupervisor::runtimeRootChanged, this, &SettingsState::runtimeRootChanged);
}

bool SettingsState::startsAtLogin() const {
    return Autostart::enabled();
}

QStringList SettingsState::captureModes() const {
    return {tr("Microphone and meeting audio"), tr("Microphone only")};
}

int SettingsState::captureMode() const {
    return m_store.captureMode() == modes[0] ? 0 : 1;
}

bool SettingsState::recording() const {
    return m_store.recording();
}

EngineLine SettingsState::speech() const {
    return EngineLine::of(m_engines.speech());
}

EngineLine SettingsState::notes() const {
    return EngineLine::of(m_engines.notes());
}

bool SettingsState::speechStartable() const {
    return !m_engines.speech().isStarting() && !m_engines.speech().isReady();
}

QString SettingsState::runtimeRoot() const {
    const auto& root = m_engines.runtimeRoot();
    return root ? toQString(root->string()) : tr("Not set");
}

bool SettingsState::slow() const {
    return m_engines.transcriptsSlow();
}

bool SettingsState::fastModeCrashed() const {
    return slow() && EngineLayout::processorOnly(m_settings);
}

void SettingsState::setStartsAtLogin(bool starts) {
    forgetProblem();
    try {
        Autostart::setEnabled(starts);
    } catch (...) {
        failed(std::current_exception());
    }
    Q_EMIT startsAtLoginChanged(); // also to take a switch back
}

void SettingsState::chooseCaptureMode(int index) {
    if (m_store.recording() || index < 0 || index >= static_cast<int>(modes.size()))
        return Q_EMIT captureModeChanged(); // to take the picker back
    const CaptureMode mode = modes[static_cast<std::size_t>(index)];
    m_store.setCaptureMode(mode);
    CaptureModePreference::save(m_settings, mode);
}

void SettingsState::startSpeech() {
    m_tasks.spawn(m_engines.startSpeech());
}

void SettingsState::tryFastMode() {
    if (m_store.recording())
        return;
    m_engines.tryFastMode();
    Q_EMIT speechChanged(); // an engine that did not run goes on not running, but no longer slowly
}

void SettingsState::chooseRuntimeRoot(const QUrl& folder) {
    forgetProblem();
    if (folder.isLocalFile())
        m_engines.setRuntimeRoot(fs::path(toUtf8(folder.toLocalFile())));
    else
        setProblem(tr("The engines can only be in a folder of this computer."));
}

void SettingsState::runtimeChooserFailed() {
    setProblem(tr("The folder picker could not be opened."));
}

void SettingsState::showLogs() {
    forgetProblem();
    const fs::path folder = Paths::logs();
    std::error_code error;
    if (fs::create_directories(folder, error); error)
        failed(std::make_exception_ptr(FileFailure::writing(folder, error.value())));
    else
        m_tasks.spawn(browse(this, folder));
}

void SettingsState::showMeetings() {
    forgetProblem();
    m_tasks.spawn(browse(this, m_store.storageRoot()));
}

Task<> SettingsState::browse(QPointer<SettingsState> self, fs::path folder) {
    std::exception_ptr failure;
    try {
        co_await FileBrowser::show(std::move(folder));
    } catch (...) {
        failure = std::current_exception();
    }
    if (self && failure)
        self->failed(failure);
}

void SettingsState::showWelcome() {
    forgetProblem();
    m_onboarding.setDone(false);
}

void SettingsState::forgetProblem() {
    setProblem({});
}

void SettingsState::failed(const std::exception_ptr& failure) {
    const std::string sentence = describe(failure);
    qWarning("%s", sentence.c_str());
    setProblem(toQString(sentence));
}

void SettingsState::setProblem(const QString& problem) {
    if (std::exchange(m_problem, problem) != problem)
        Q_EMIT problemChanged();
}

} // namespace varnet
