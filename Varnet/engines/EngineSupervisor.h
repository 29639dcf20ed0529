#pragma once

#include "Varnet/async/Sleep.h"
#include "Varnet/async/Task.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/engines/EngineLayout.h"
#include "Varnet/engines/EngineState.h"
#include "Varnet/engines/NotesModel.h"
#include "Varnet/engines/SpeechModels.h"
#include "Varnet/platform/Clock.h"

#include <QObject>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace varnet {

class ChildProcess;
class LoopbackHTTP;

/// What the supervisor stands on; the defaults are the real things.
struct EngineParts {
    /// Whether the health address answers with status 200, within 1.5 seconds. Never throws. Empty: a real request.
    std::function<Task<bool>(std::string url)> healthy;
    std::function<Task<bool>(std::chrono::nanoseconds, std::stop_token)> sleep = sleepFor;
    std::function<std::int64_t()> now = continuousNanoseconds;
    Machine machine = Machine::current();
    std::filesystem::path settingsFile; ///< empty: the user's own
};

/// Starts the two engines, watches their health, restarts the speech engine after a crash, and stops the notes engine
/// when it is idle or a recording begins: its memory belongs to the live transcription then.
///
/// An engine that answers at its port without being a child process of ours is adopted: used as it stands, never ended.
/// One object lives for the whole run, on the main thread. Nothing here throws; what goes wrong is a state.
class EngineSupervisor : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::seconds notesIdleLimit{600};

    /// `enabled` false: nothing is ever started. `layout` stands for the resolved one. `keyFile` holds the secret
    /// shared with the notes engine, "Varnet/notes-service.key" in the application support folder by default.
    explicit EngineSupervisor(bool enabled = shouldRun(), std::optional<EngineLayout> layout = {},
                              std::optional<std::filesystem::path> keyFile = {}, EngineParts parts = {});
    ~EngineSupervisor() override; ///< shuts down

    /// The one switch for engines, notifications and reminders: false with VARNET_NO_ENGINES=1 and for a run that only
    /// exports the window or is a test.
    static bool shouldRun();

    const EngineState& speech() const { return m_speech; }
    bool restartPending() const { return m_pendingRestarts > 0; } ///< from a crash of it until it was started again
    const EngineState& notes() const { return m_notes; }
    const ModelState& models() const { return m_models; }
    const NotesModelState& notesModel() const { return m_notesModel; }
    const std::optional<std::filesystem::path>& runtimeRoot() const { return m_runtimeRoot; } ///< for the settings
    const std::filesystem::path& keyFile() const { return m_keyFile; }
    bool enabled() const { return m_enabled; }

    /// Transcripts lag behind: a bundled speech engine runs without acceleration. May change with `speech`.
    bool transcriptsSlow() const;
    bool notesAvailable() const;    ///< the notes engine runs, can be started, or can be once its model is there
    bool notesNeedDownload() const; ///< all that a bundled notes engine lacks is its model
    std::optional<std::string> notesUnavailableReason() const; ///< a sentence, when this machine can never write notes

    /// Adopts or starts the speech engine; returns when it is ready or that has failed.
    Task<> startSpeech();
    /// Adopts or starts the notes engine; true when it is ready for use. False at once during a recording. After
    /// `stop` none is launched any more; one that comes up already is ended by `stopNotes`.
    Task<bool> startNotes(std::stop_token stop = {});
    void stopNotes(); ///< ends an owned notes engine
    /// Begins the ten minutes anew after which an owned notes engine is stopped.
    void scheduleNotesIdleStop();

    /// Frees the machine for a recording; until `recordingEnded` no notes engine starts and the speech engine is not
    /// restarted. Gives a sentence for the user when a notes engine runs that cannot be stopped from here.
    Task<std::optional<std::string>> prepareForRecording();
    void recordingEnded();

    /// Brings both states up to date with what answers.
    Task<> refresh();

    /// Ends what was started here, waiting at most about two seconds; nothing is started any more.
    void shutdown();

    void tryFastMode(); ///< leaves the processor fallback and starts the speech engine anew
    void setRuntimeRoot(const std::filesystem::path& folder); ///< stores the development folder and starts from it

    /// Whether an engine answers its health address. Does not throw.
    Task<bool> healthy(int port);
    Task<bool> healthy(std::string url);

Q_SIGNALS:
    void speechChanged();
    void restartPendingChanged();
    void notesChanged();
    void runtimeRootChanged();
    void modelsChanged();
    void notesModelChanged();

private:
    std::optional<EngineLayout> layout() const;
    Task<std::optional<EngineState>> launch(EngineSpec spec);
    Task<std::optional<EngineState>> awaitReady(EngineSpec spec, std::shared_ptr<ChildProcess> process);
    Task<> fallBackToProcessor(EngineLayout layout);
    Task<> restartSpeech(std::chrono::seconds delay);
    Task<> startSpeechAnew();
    Task<> stopNotesWhenIdle(std::stop_token stop);
    void engineExited(int port, const ChildProcess* process);
    void ensureKeyFile() const;
    static std::filesystem::path logFile(int port);

    bool owns(int port) const { return m_processes.contains(port); }
    bool ownsRunning(int port) const;
    std::shared_ptr<ChildProcess> take(int port);
    void remove(int port, const ChildProcess* process);
    void setPendingRestarts(int count);
    void setSpeech(EngineState state);
    void setNotes(EngineState state);
    void setModels(ModelState state);

    const bool m_enabled;
    const std::optional<EngineLayout> m_layoutOverride;
    const std::filesystem::path m_keyFile;
    const EngineParts m_parts;
    Settings m_settings;
    std::unique_ptr<LoopbackHTTP> m_http;

    EngineState m_speech;
    EngineState m_notes;
    ModelState m_models;
    NotesModelState m_notesModel;
    std::optional<std::filesystem::path> m_runtimeRoot;

    std::map<int, std::shared_ptr<ChildProcess>> m_processes; ///< by port: started here, not seen to end
    bool m_lastStartCrashed = false;                          ///< the last launch died of a signal
    int m_restarts = 0;                                       ///< automatic, of the speech engine, since it was healthy
    int m_pendingRestarts = 0;                                ///< one that crashes in its start has the next follow
    bool m_recording = false;
    bool m_shutDown = false;
    std::stop_source m_notesIdle;
    TaskScope m_tasks{"Engines"};
};

} // namespace varnet
