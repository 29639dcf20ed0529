#include "Varnet/platform/ChildProcess.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"

#include <QDeadlineTimer>
#include <QDebug>
#include <QTimer>

#include <fcntl.h>
#include <linux/close_range.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstring>

namespace varnet {

using namespace std::chrono_literals;

namespace {

QString toText(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

/// An open file descriptor at the end of the log, or -1.
int openLog(const std::filesystem::path& path) {
    if (path.empty())
        return -1;
    try {
        makePrivateDirectories(path.parent_path());
    } catch (const std::exception& failure) {
        qWarning() << "The folder of a log cannot be made:" << failure.what();
    }
    const int log = ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (log < 0)
        qWarning() << "The log" << toText(path) << "cannot be opened:" << std::strerror(errno);
    return log;
}

/// Runs in the child between fork and exec, so only system calls are allowed here.
void separateFromParent(pid_t parent, int log) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) // it died before the line above
        ::_exit(1);
    ::setpgid(0, 0);
    for (const int ignored : {SIGTERM, SIGINT, SIGHUP, SIGQUIT})
        ::signal(ignored, SIG_DFL);
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    if (log >= 0) {
        ::dup2(log, STDOUT_FILENO);
        ::dup2(log, STDERR_FILENO);
    }
    ::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
}

} // namespace

std::shared_ptr<ChildProcess> ChildProcess::start(const Launch& launch) {
    // The last handle may go away while the process object is still telling its end.
    const std::shared_ptr<ChildProcess> child(new ChildProcess, [](ChildProcess* object) { object->deleteLater(); });
    const int log = openLog(launch.log);
    child->configure(launch, log);
    child->m_process.start();
    const bool started = child->m_process.waitForStarted(5000);
    if (log >= 0)
        ::close(log);
    if (child->running())
        child->m_self = child;
    if (!started) {
        child->m_process.kill();
        throw Failure(child->m_process.errorString().toStdString());
    }
    return child;
}

void ChildProcess::configure(const Launch& launch, int log) {
    QStringList arguments;
    for (const std::string& argument : launch.arguments)
        arguments.append(QString::fromStdString(argument));
    m_process.setProgram(toText(launch.executable));
    m_process.setArguments(arguments);
    m_process.setWorkingDirectory(toText(launch.workingDirectory));
    if (!launch.environment.empty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const auto& [name, value] : launch.environment)
            environment.insert(QString::fromStdString(name), QString::fromStdString(value));
        m_process.setProcessEnvironment(environment);
    }
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setChildProcessModifier([parent = ::getpid(), log] { separateFromParent(parent, log); });
    connect(&m_process, &QProcess::finished, this, [this] {
        const std::shared_ptr<ChildProcess> self = std::move(m_self);
        Q_EMIT exited();
    });
}

bool ChildProcess::running() const {
    return m_process.state() != QProcess::NotRunning;
}

bool ChildProcess::exitedBySignal() const {
    return !running() && m_process.exitStatus() == QProcess::CrashExit;
}

void ChildProcess::terminate(std::chrono::milliseconds grace) {
    if (m_terminated || !running())
        return;
    m_terminated = true;
    m_process.terminate();
    QTimer::singleShot(grace, this, [this] { m_process.kill(); });
}

void ChildProcess::terminateAll(const std::vector<std::shared_ptr<ChildProcess>>& processes,
                                std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    for (const auto& process : processes)
        process->terminate(limit);
    for (const auto& process : processes) {
        if (!process->running() || process->m_process.waitForFinished(static_cast<int>(deadline.remainingTime())))
            continue;
        process->m_process.kill();
        process->m_process.waitForFinished(1000);
    }
}

} // namespace varnet
