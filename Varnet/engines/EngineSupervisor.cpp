#include "Varnet/engines/EngineSupervisor.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/ChildProcess.h"
#include "Varnet/platform/LoopbackHTTP.h"

#include <QCoreApplication>
#include <QPointer>
#include <QUrl>

#include <utility>
#include <vector>

namespace varnet {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr auto healthTimeout = 1500ms;
constexpr auto healthPause = 500ms;
constexpr auto shutdownLimit = 2s;
constexpr int maximumRestarts = 3;
constexpr std::string_view processorOnlyKey = "SpeechEngineProcessorOnlyVersion";

} // namespace

EngineSupervisor::EngineSupervisor(bool enabled, std::optional<EngineLayout> layoutOverride,
                                   std::optional<fs::path> keyFile, EngineParts parts)
    : m_enabled(enabled),
      m_layoutOverride(std::move(layoutOverride)),
      m_keyFile(keyFile ? *std::move(keyFile) : Paths::notesServiceKey()),
      m_parts(std::move(parts)),
      m_settings(m_parts.settingsFile),
      m_http(std::make_unique<LoopbackHTTP>()) {
    const auto found = layout();
    if (!found)
        return;
    m_runtimeRoot = found->root;
    if (found->bundled) {
        const bool models = SpeechModels::installed(SpeechModels::folder());
        m_models.kind = models ? ModelState::Kind::ready : ModelState::Kind::missing;
        m_notesModel.kind = NotesModel::installed() ? NotesModelState::Kind::ready : NotesModelState::Kind::missing;
    }
}

EngineSupervisor::~EngineSupervisor() {
    shutdown();
}

bool EngineSupervisor::shouldRun() {
    return qEnvironmentVariable("VARNET_NO_ENGINES") != "1" && !QCoreApplication::arguments().contains("--export-ui") &&
           !qEnvironmentVariableIsSet("XCTestConfigurationFilePath");
}

std::optional<EngineLayout> EngineSupervisor::layout() const {
    return m_layoutOverride ? m_layoutOverride : EngineLayout::resolve(m_settings);
}

bool EngineSupervisor::transcriptsSlow() const {
    const auto found = layout();
    return found && found->bundled &&
           (!m_parts.machine.runsAcceleratedEngines || EngineLayout::processorOnly(m_settings));
}

Task<bool> EngineSupervisor::healthy(int port) {
    return healthy("http://127.0.0.1:" + std::to_string(port) + "/health");
}

Task<bool> EngineSupervisor::healthy(std::string url) {
    try {
        if (m_parts.healthy)
            co_return co_await m_parts.healthy(url);
        const HTTPReply reply = co_await m_http->get(QUrl(QString::fromStdString(url)), healthTimeout);
        co_return reply.status == 200;
    } catch (const std::exception&) {
        co_return false; // silence is the ordinary answer of an engine that does not run
    }
}

// An absent result belongs to whoever else launched the engine or ended it: that one says what its state is.
Task<std::optional<EngineState>> EngineSupervisor::launch(EngineSpec spec) {
    m_lastStartCrashed = false;
    if (ownsRunning(spec.port)) {
        if (co_await healthy(spec.healthURL()))
            co_return EngineState::ready(false);
        co_return std::nullopt;
    }
    std::shared_ptr<ChildProcess> process;
    try {
        process = ChildProcess::start(
            {spec.executable, spec.arguments, spec.workingDirectory, spec.environment, logFile(spec.port)});
    } catch (const std::exception& failure) {
        co_return EngineState::failed(spec.name + " could not start: " + failure.what());
    }
    m_processes[spec.port] = process;
    connect(process.get(), &ChildProcess::exited, this,
            [this, port = spec.port, child = process.get()] { engineExited(port, child); });
    co_return co_await awaitReady(std::move(spec), std::move(process));
}

Task<std::optional<EngineState>> EngineSupervisor::awaitReady(EngineSpec spec, std::shared_ptr<ChildProcess> process) {
    const QPointer<EngineSupervisor> self(this);
    const std::int64_t start = m_parts.now();
    while (true) {
        if (std::chrono::nanoseconds(m_parts.now() - start) >= spec.startupLimit) {
            remove(spec.port, process.get());
            process->terminate();
            co_return EngineState::failed(spec.name + " did not become ready in time.");
        }
        if (!process->running()) {
            remove(spec.port, process.get());
            m_lastStartCrashed = process->exitedBySignal();
            co_return EngineState::failed(spec.name + " stopped while starting. See its log in Settings.");
        }
        const bool answers = co_await healthy(spec.healthURL());
        if (!self || process->terminated())
            co_return std::nullopt;
        if (answers && process->running()) {
            m_restarts = 0;
            co_return EngineState::ready(false);
        }
        co_await m_parts.sleep(healthPause, m_tasks.stopToken());
        if (!self || process->terminated())
            co_return std::nullopt;
    }
}

void EngineSupervisor::engineExited(int port, const ChildProcess* process) {
    const auto entry = m_processes.find(port);
    if (entry == m_processes.end() || entry->second.get() != process)
        return;
    m_processes.erase(entry);
    if (port != speechEnginePort) {
        setNotes(EngineState::stopped());
        return;
    }
    const bool restarts = m_enabled && !m_recording && m_restarts < maximumRestarts;
    if (restarts)
        setPendingRestarts(m_pendingRestarts + 1);
    setSpeech(EngineState::failed("The speech engine stopped unexpectedly."));
    if (restarts) {
        ++m_restarts;
        m_tasks.spawn(restartSpeech(2s * m_restarts));
    }
}

Task<> EngineSupervisor::restartSpeech(std::chrono::seconds delay) {
    const QPointer<EngineSupervisor> self(this);
    if (!co_await m_parts.sleep(delay, m_tasks.stopToken()) || !self)
        co_return;
    co_await startSpeech();
    if (self)
        setPendingRestarts(m_pendingRestarts - 1);
}

Task<> EngineSupervisor::startSpeech() {
    const QPointer<EngineSupervisor> self(this);
    if (m_speech.isStarting() || (ownsRunning(speechEnginePort) && !m_speech.isReady()))
        co_return;
    const bool answers = co_await healthy(speechEnginePort);
    if (!self || m_shutDown)
        co_return;
    if (answers) {
        setSpeech(EngineState::ready(!owns(speechEnginePort)));
        co_return;
    }
    if (!m_enabled) {
        setSpeech(EngineState::stopped());
        co_return;
    }
    const auto found = layout();
    const auto spec = found ? found->speech(m_settings, m_parts.machine) : std::nullopt;
    if (!spec) {
        setSpeech(EngineState::missing("Engine files weren't found. Choose the folder in Settings."));
        co_return;
    }
    if (found->bundled) {
        const bool installed = SpeechModels::installed(SpeechModels::folder());
        setModels({installed ? ModelState::Kind::ready : ModelState::Kind::missing, 0, {}});
        if (!installed) {
            setSpeech(EngineState::stopped());
            co_return;
        }
    }
    setSpeech(EngineState::starting());
    const auto state = co_await launch(*spec);
    if (!self || !state)
        co_return;
    setSpeech(*state);
    if (state->kind == EngineState::Kind::failed && m_lastStartCrashed && found->bundled &&
        m_parts.machine.runsAcceleratedEngines && !EngineLayout::processorOnly(m_settings))
        co_await fallBackToProcessor(*found);
}

Task<> EngineSupervisor::fallBackToProcessor(EngineLayout layout) {
    const QPointer<EngineSupervisor> self(this);
    m_settings.setText(processorOnlyKey, EngineLayout::appVersion());
    const auto spec = layout.speech(m_settings, m_parts.machine);
    if (!spec)
        co_return;
    setSpeech(EngineState::starting());
    const auto state = co_await launch(*spec);
    if (self && state)
        setSpeech(*state);
}

void EngineSupervisor::tryFastMode() {
    m_settings.remove(processorOnlyKey);
    m_tasks.spawn(startSpeechAnew());
}

Task<> EngineSupervisor::startSpeechAnew() {
    const QPointer<EngineSupervisor> self(this);
    if (const auto process = take(speechEnginePort)) {
        process->terminate();
        co_await m_parts.sleep(1s, m_tasks.stopToken());
        if (!self || m_shutDown)
            co_return;
    }
    setSpeech(EngineState::stopped());
    co_await startSpeech();
}

void EngineSupervisor::setRuntimeRoot(const fs::path& folder) {
    m_settings.setText("RuntimeRoot", folder.string());
    if (m_runtimeRoot != folder) {
        m_runtimeRoot = folder;
        Q_EMIT runtimeRootChanged();
    }
    m_tasks.spawn(startSpeech());
}

Task<std::optional<std::string>> EngineSupervisor::prepareForRecording() {
    const QPointer<EngineSupervisor> self(this);
    m_recording = true;
    if (owns(notesEnginePort)) {
        stopNotes();
        co_return std::nullopt;
    }
    const bool adopted = co_await healthy(notesEnginePort);
    if (adopted)
        co_return "The notes engine is running outside the app. Stopping it frees memory for live transcription.";
    if (self && !m_speech.isReady() && m_enabled)
        m_tasks.spawn(startSpeech());
    co_return std::nullopt;
}

void EngineSupervisor::recordingEnded() {
    m_recording = false;
    if (!m_speech.isReady() && m_enabled)
        m_tasks.spawn(startSpeech());
}

Task<> EngineSupervisor::refresh() {
    const QPointer<EngineSupervisor> self(this);
    const bool speechAnswers = co_await healthy(speechEnginePort);
    if (!self)
        co_return;
    const bool notesAnswers = co_await healthy(notesEnginePort);
    if (!self || m_shutDown)
        co_return;
    if (speechAnswers)
        setSpeech(EngineState::ready(!owns(speechEnginePort)));
    else if (m_speech.isReady() && !ownsRunning(speechEnginePort))
        setSpeech(EngineState::stopped());
    if (notesAnswers)
        setNotes(EngineState::ready(!owns(notesEnginePort)));
    else if ((m_notes.isReady() || m_notes == EngineState::unknown()) && !ownsRunning(notesEnginePort))
        setNotes(EngineState::stopped());
}

void EngineSupervisor::shutdown() {
    m_shutDown = true;
    m_notesIdle.request_stop();
    m_tasks.requestStop();
    std::vector<std::shared_ptr<ChildProcess>> running;
    for (const auto& [port, process] : std::exchange(m_processes, {}))
        running.push_back(process);
    ChildProcess::terminateAll(running, shutdownLimit);
}

fs::path EngineSupervisor::logFile(int port) {
    return Paths::logs() / (port == speechEnginePort ? "speech.log" : "notes.log");
}

bool EngineSupervisor::ownsRunning(int port) const {
    const auto entry = m_processes.find(port);
    return entry != m_processes.end() && entry->second->running();
}

std::shared_ptr<ChildProcess> EngineSupervisor::take(int port) {
    const auto entry = m_processes.extract(port);
    return entry ? entry.mapped() : nullptr;
}

void EngineSupervisor::remove(int port, const ChildProcess* process) {
    const auto entry = m_processes.find(port);
    if (entry != m_processes.end() && entry->second.get() == process)
        m_processes.erase(entry);
}

void EngineSupervisor::setPendingRestarts(int count) {
    const bool pending = restartPending();
    m_pendingRestarts = count;
    if (pending != restartPending())
        Q_EMIT restartPendingChanged();
}

void EngineSupervisor::setSpeech(EngineState state) {
    if (m_speech == state)
        return;
    m_speech = std::move(state);
    Q_EMIT speechChanged();
}

void EngineSupervisor::setNotes(EngineState state) {
    if (m_notes == state)
        return;
    m_notes = std::move(state);
    Q_EMIT notesChanged();
}

void EngineSupervisor::setModels(ModelState state) {
    if (m_models == state)
        return;
    m_models = std::move(state);
    Q_EMIT modelsChanged();
}

} // namespace varnet
