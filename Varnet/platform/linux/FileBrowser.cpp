#include "Varnet/platform/FileBrowser.h"

#include "MeetingCore/base/Failures.h"
#include "Varnet/async/Waits.h"

#include <QCoro/QCoroDBusPendingReply>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QFile>
#include <QProcess>
#include <QUrl>

#include <cerrno>
#include <chrono>

namespace varnet::FileBrowser {

namespace {

/// The bus may have to start the file browser first.
constexpr int answerMilliseconds = 10'000;
constexpr std::chrono::seconds handlerPatience{5};

QDBusMessage showFolders(const QUrl& folder) {
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowFolders"));
    call << QStringList{folder.toString(QUrl::FullyEncoded)} << QString();
    return call;
}

/// Opens the folder with the program that is set for folders; false when there is none.
Task<bool> openWithHandler(QUrl folder) {
    auto* opener = new QProcess; // its end would end a handler that runs in it
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(QProcess::nullDevice());
    opener->start(QStringLiteral("xdg-open"), {folder.toString(QUrl::FullyEncoded)});
    const auto outcome = co_await waitForFinished(opener, handlerPatience);
    if (outcome == WaitOutcome::timedOut) { // some handlers run in it for as long as their window is open
        QObject::connect(opener, &QProcess::finished, opener, &QObject::deleteLater);
        co_return true;
    }
    opener->deleteLater();
    co_return opener->error() == QProcess::UnknownError && opener->exitCode() == 0;
}

} // namespace

Task<> show(std::filesystem::path folder) {
    std::error_code failure;
    if (!std::filesystem::is_directory(folder, failure))
        throw FileFailure::reading(folder, failure ? failure.value() : ENOTDIR);
    const auto address = QUrl::fromLocalFile(QFile::decodeName(folder.c_str()));
    const QDBusPendingReply<> shown = QDBusConnection::sessionBus().asyncCall(showFolders(address), answerMilliseconds);
    co_await shown;
    if (!shown.isError())
        co_return;
    const bool opened = co_await openWithHandler(address);
    if (!opened)
        throw Failure("No program here could show the folder “" + folder.string() + "”.");
}

} // namespace varnet::FileBrowser
