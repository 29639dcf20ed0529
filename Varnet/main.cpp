#include "MeetingCore/records/MeetingRepository.h"
#include "Varnet/platform/AppInfo.h"
#include "Varnet/platform/DesktopDialogs.h"
#include "Varnet/shell/ApplicationBus.h"
#include "Varnet/shell/MainWindow.h"
#include "Varnet/shell/MediaPlayer2.h"
#include "Varnet/shell/SingleInstance.h"
#include "Varnet/shell/StorageLock.h"
#include "Varnet/shell/TerminationSignals.h"
#include "Varnet/shell/Translations.h"
#include "Varnet/shell/Tray.h"
#include "Varnet/shell/VarnetApp.h"
#include "Varnet/shell/WindowExport.h"
#include "Varnet/store/MeetingPresentation.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QIcon>
#include <QSessionManager>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>

using namespace varnet;

namespace {

int refuse(const SingleInstance::Refusal& refusal) {
    if (!refusal.message.empty())
        std::fprintf(stderr, "%s\n", refusal.message.c_str());
    return refusal.exitCode;
}

/// Reads the library on threads of its own while the window is being made; the result gives what was read.
std::function<LoadedMeetings()> beginLoading(const std::filesystem::path& root) {
    const auto records = std::make_shared<std::future<LoadedMeetings>>(std::async(
        std::launch::async | std::launch::deferred, [root] { return MeetingRepository(root).loadRecovering(); }));
    return [records] { return records->get(); };
}

/// Has the fonts and the locale's dates looked up, which the first texts would wait for.
std::future<void> beginLookingUp() {
    return std::async(std::launch::async | std::launch::deferred, [] {
        QFontMetrics(QFont()).height();
        for (const auto date : {Date::now(), Date()}) // today's words, and those of older days
            MeetingPresentation::dayHeading(date);
    });
}

int run(const CommandLine& commandLine, StorageLock* lock, std::function<LoadedMeetings()> load) {
    QList<QUrl> files;
    for (const auto& file : commandLine.files)
        files << ImportQueue::address(file);
    const auto refusal = [&] {
        return lock ? SingleInstance::settle(*lock, VarnetApp::storageRoot(commandLine), files) : std::nullopt;
    };
    if (lock && !lock->held()) {
        if (const auto refused = refusal())
            return refuse(*refused);
    }

    auto screens = MainWindow::loadScreens();
    if (const auto refused = refusal()) // asks the bus, now that the screens are being read
        return refuse(*refused);
    MainWindow::awaitScreens(*screens);
    VarnetApp app(commandLine, std::move(load));
    MainWindow window(app, std::move(screens));
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

    app.tieTogether();
    ApplicationBus bus({.show = [&window](const QString& token) { window.show(token); },
                        .importFiles = [&app](const QList<QUrl>& addresses) { app.commands().importFiles(addresses); },
                        .newRecording = [&app] { app.commands().newRecording(); },
                        .toggleRecording = [&app] { app.commands().toggleRecording(); },
                        .quit = [&delegate] { delegate.quit(); }});
    QObject::connect(&delegate, &MeetingAppDelegate::terminating, &bus, &ApplicationBus::unregisterName);
    if (!commandLine.exportsWindow && bus.registerName() == ApplicationBus::Registration::nameTaken)
        return refuse(SingleInstance::anotherLibraryOpen(ApplicationBus::owner()));

    if (!window.open())
        return 1;
    WindowExport windowExport(app, window);
    QObject::connect(&window, &MainWindow::completeChanged, &app, [&] {
        QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/qt/qml/Varnet/screens/icons/app.svg")));
        app.windowAppeared();
        windowExport.exportWindowIfRequested();
    });

    std::unique_ptr<Tray> tray;
    if (!commandLine.exportsWindow)
        QObject::connect(&window, &MainWindow::completeChanged, &app, [&] {
            tray = std::make_unique<Tray>(app, window.clock());
            QObject::connect(tray.get(), &Tray::presentChanged, &window, [&] { window.setInTray(tray->present()); });
        });

    MediaPlayer2 player(*window.playback(),
                        {.raise = [&window] { window.show(); }, .quit = [&delegate] { delegate.quit(); }});
    if (!commandLine.exportsWindow)
        QObject::connect(&window, &MainWindow::completeChanged, &player, &MediaPlayer2::start);
    if (!files.isEmpty())
        app.commands().importFiles(files);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    auto commandLine = CommandLine::parse({argv, argv + argc});
    const auto root = VarnetApp::storageRoot(commandLine);
    std::optional<StorageLock> lock;
    if (!commandLine.exportsWindow)
        lock.emplace(root);
    // Another process may still be writing to a library that is not locked yet.
    auto load = lock && lock->held() ? beginLoading(root) : nullptr;
    if (commandLine.exportScale && !qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) // read when the application is made
        qputenv("QT_SCALE_FACTOR", QByteArray::number(*commandLine.exportScale));
    auto arguments = argumentsWithDesktopDialogs(argc, argv);
    int count = static_cast<int>(arguments.size()) - 1;
    QGuiApplication application(count, arguments.data());
    const auto lookedUp = beginLookingUp();
    installTranslations();
    commandLine.takeFiles({arguments.data(), arguments.data() + count}); // what the toolkit has left
    QGuiApplication::setApplicationName(QStringLiteral("Varnet"));
    QGuiApplication::setApplicationDisplayName(QString::fromStdString(AppInfo::name()));
    QGuiApplication::setApplicationVersion(QString::fromStdString(AppInfo::version()));
    QGuiApplication::setDesktopFileName(QString::fromStdString(AppInfo::identifier()));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const int exitCode = run(commandLine, lock ? &*lock : nullptr, std::move(load));
    lookedUp.wait(); // it uses the application object
    return exitCode;
}
