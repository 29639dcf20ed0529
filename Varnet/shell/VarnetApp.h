#pragma once

#include "MeetingCore/records/MeetingRepository.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Onboarding.h"
#include "Varnet/platform/Settings.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/CommandLine.h"
#include "Varnet/shell/MeetingAppDelegate.h"
#include "Varnet/store/MeetingStore.h"

#include <QObject>

#include <functional>

namespace varnet {

/// The long-lived objects of the program and what ties them together. They are made in their order with this object;
/// the ties come with the first appearance of the window. Main thread.
class VarnetApp : public QObject {
    Q_OBJECT
public:
    /// Opens the library, which repairs what a crash interrupted: no other process may have it open. `load` gives its
    /// records where they are being read already.
    explicit VarnetApp(CommandLine commandLine, std::function<LoadedMeetings()> load = {}, QObject* parent = nullptr);
    ~VarnetApp() override;

    /// The library that a command line names: its own or the user's.
    static std::filesystem::path storageRoot(const CommandLine& commandLine);

    /// Ties the objects and takes the user's choices; before anybody can ask for anything.
    void tieTogether();

    /// Starts the speech engine and the poll of both engines. Once, when the window has first appeared.
    void windowAppeared();

    const CommandLine& commandLine() const { return m_commandLine; }
    Settings& settings() { return m_settings; }
    MeetingStore& store() { return m_store; }
    EngineSupervisor& engines() { return m_engines; }
    AppRouter& router() { return m_router; }
    MeetingAppDelegate& delegate() { return m_delegate; }
    AppCommands& commands() { return m_commands; }
    Onboarding& onboarding() { return m_onboarding; }

private:
    void followRecording();
    void endWelcome();
    void applyPreviews();
    static Task<> checkOnce(VarnetApp* self, std::stop_token stop);
    static Task<> poll(VarnetApp* self, std::stop_token stop);

    CommandLine m_commandLine;
    Settings m_settings;
    MeetingStore m_store;
    EngineSupervisor m_engines;
    AppRouter m_router;
    MeetingAppDelegate m_delegate;
    AppCommands m_commands{m_store, m_engines, m_router};
    Onboarding m_onboarding{m_settings, !m_commandLine.exportsWindow || m_commandLine.showsOnboarding,
                            storageRoot(m_commandLine)};
    TaskScope m_tasks{"Application"};
    bool m_appeared = false;
    bool m_wasRecording = false;
};

} // namespace varnet
