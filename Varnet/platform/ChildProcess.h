#pragma once

#include <QObject>
#include <QProcess>

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace varnet {

/// A program that runs beside the application and ends with it, at the latest when the application is killed.
///
/// It inherits the environment, the three standard streams (input is empty) and nothing else: no open file, no blocked
/// or ignored signal, no Ctrl-C of the terminal. The object keeps itself until the program has ended, so a handle may
/// be dropped at any time and that neither ends the program nor waits for it. Main thread only, and made there: the
/// program dies with the thread that started it.
class ChildProcess : public QObject {
    Q_OBJECT

public:
    struct Launch {
        std::filesystem::path executable;
        std::vector<std::string> arguments;
        std::filesystem::path workingDirectory;
        /// Laid over the application's own environment, which is passed on untouched when this is empty.
        std::map<std::string, std::string> environment;
        /// Both output streams are appended to this file, which is made with its folder if need be. When it is empty
        /// or cannot be opened, they stay those of the application.
        std::filesystem::path log;
    };

    /// Starts the program and returns once it is executed, which takes milliseconds. Throws Failure with the system's
    /// reason; nothing runs then.
    static std::shared_ptr<ChildProcess> start(const Launch& launch);

    /// Until the end of the program has been noticed by the event loop, just before `exited`.
    bool running() const;

    /// True when the program has ended by a signal that it did not catch, as in a crash.
    bool exitedBySignal() const;

    /// Whether `terminate` has been called.
    bool terminated() const { return m_terminated; }

    qint64 processID() const { return m_process.processId(); }

    /// Asks the program to end (SIGTERM) and kills it when it still runs after `grace`. Returns at once; `exited` tells
    /// the end. A second call does nothing.
    void terminate(std::chrono::milliseconds grace = std::chrono::seconds(5));

    /// Ends the programs as `terminate` does, waiting for them until `limit` is over and killing those that are left:
    /// for the end of the application.
    static void terminateAll(const std::vector<std::shared_ptr<ChildProcess>>& processes,
                             std::chrono::milliseconds limit);

Q_SIGNALS:
    void exited();

private:
    ChildProcess() = default;
    void configure(const Launch& launch, int log);

    QProcess m_process;
    std::shared_ptr<ChildProcess> m_self; ///< while the program runs
    bool m_terminated = false;
};

} // namespace varnet
