#include "Varnet/platform/AppInfo.h"
#include "Varnet/shell/ApplicationBus.h"
#include "Varnet/shell/MainWindow.h"
#include "Varnet/shell/SingleInstance.h"
#include "Varnet/shell/StorageLock.h"
#include "Varnet/shell/TerminationSignals.h"
#include "Varnet/shell/VarnetApp.h"

#include <QGuiApplication>
#include <QIcon>
#include <QSessionManager>

#include <cstdio>

using namespace varnet;

namespace {

int refuse(const SingleInstance::Refusal& refusal) {
    if (!refusal.message.empty())
        std::fprintf(stderr, "%s\n", refusal.message.c_str());
    return refusal.exitCode;
}

int run(const CommandLine& commandLine) {
    std::optional<StorageLock> lock;
    if (!commandLine.exportsWindow) {
        const auto root = VarnetApp::storageRoot(commandLine);
        lock.emplace(root);
        if (const auto refusal = SingleInstance::settle(*lock, root))
            return refuse(*refusal);
    }

    VarnetApp app(commandLine);
    MainWindow window(app);
    TerminationSignals signals;
    auto& delegate = app.delegate();
    QObject::connect(&signals, &TerminationSignals::requested, &delegate, &MeetingAppDelegate::quit);
    QObject::connect(
        &delegate, &MeetingAppDelegate::terminated, qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, &delegate,
        [&delegate](QSessionManager& session) {
            // The session waits for no event loop: it is held up until the quit that starts here has come to its end.
            if (delegate.canCloseAtOnce())
                return;
            if (session.allowsInteraction())
                session.cancel();
            delegate.quit();
        },
        Qt::DirectConnection);

    if (!window.open())
        return 1;
    app.windowAppeared();

    ApplicationBus bus({.show = [&window] { window.show(); },
                        .toggleRecording = [&app] { app.commands().toggleRecording(); },
                        .quit = [&delegate] { delegate.quit(); }});
    QObject::connect(&delegate, &MeetingAppDelegate::terminating, &bus, &ApplicationBus::unregisterName);
    if (!commandLine.exportsWindow && bus.registerName() == ApplicationBus::Registration::nameTaken)
        return refuse(SingleInstance::anotherLibraryOpen(ApplicationBus::owner()));
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const auto commandLine = CommandLine::parse({argv, argv + argc});
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Varnet"));
    QGuiApplication::setApplicationDisplayName(QString::fromStdString(AppInfo::name()));
    QGuiApplication::setApplicationVersion(QString::fromStdString(AppInfo::version()));
    QGuiApplication::setDesktopFileName(QString::fromStdString(AppInfo::identifier()));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Varnet/screens/icons/app.svg")));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return run(commandLine);
}
