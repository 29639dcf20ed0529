#include "engine/EngineConfig.h"
#include "engine/Failure.h"
#include "engine/Server.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <sphinxbase/err.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace engine;
using namespace std::chrono_literals;

constexpr char usage[] = "Usage: nemo-speech serve --config FILE [--port PORT] [--device cpu]\n"
                         "       nemo-speech pull MODEL [--quiet]\n";

/// SIGTERM and SIGINT as a file descriptor. Before any thread is started, so that all inherit the mask.
int terminationSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

/// A program that starts the engine as its own sets a parent-death signal, which survives the exec. It is bound to the
/// thread that forked and can be lost in a race, so the engine then looks after its parent too. Started by hand there
/// is no such signal, and the engine outlives its shell.
void followParent(QTimer& timer) {
    int deathSignal = 0;
    if (prctl(PR_GET_PDEATHSIG, &deathSignal) != 0 || deathSignal == 0)
        return;
    QObject::connect(&timer, &QTimer::timeout, [parent = getppid()] {
        if (getppid() != parent)
            QCoreApplication::quit();
    });
    timer.start(250ms);
}

int serve(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.addOptions({{"config", "", "file"}, {"port", "", "port"}, {"device", "", "device"}});
    if (!parser.parse(arguments) || !parser.isSet("config") || !parser.positionalArguments().isEmpty()) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (parser.isSet("device") && parser.value("device") != "cpu")
        throw Failure("The device must be cpu.");
    EngineConfig config = EngineConfig::load(parser.value("config").toStdString());
    if (parser.isSet("port")) {
        bool valid = false;
        config.port = parser.value("port").toUShort(&valid);
        if (!valid)
            throw Failure("The port must be a number from 0 to 65535.");
    }
    QSocketNotifier terminated(terminationSignals(), QSocketNotifier::Read);
    QObject::connect(&terminated, &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    QTimer parentTimer;
    followParent(parentTimer);

    Server server(config);
    QObject::connect(&server, &Server::failed, [](const QString& reason) {
        std::fprintf(stderr, "%s\n", qPrintable(reason));
        QCoreApplication::exit(1);
    });
    server.listen();
    std::printf("Listening on 127.0.0.1:%d\n", server.port());
    std::fflush(stdout);
    server.load();
    const int status = QCoreApplication::exec();
    server.end();
    std::fflush(nullptr);
    // Recognition can't be interrupted and owns nothing that must be saved: end under it.
    std::_Exit(status);
}

int pull(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.addOption({"quiet", ""});
    if (!parser.parse(arguments) || parser.positionalArguments().size() != 1) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (!parser.isSet("quiet"))
        std::printf("The speech engine that is built in brings its model along; there is nothing to fetch.\n");
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    err_set_logfp(nullptr);
    QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.size() > 1 ? arguments.takeAt(1) : QString();
    try {
        if (command == "serve")
            return serve(arguments);
        if (command == "pull")
            return pull(arguments);
        std::fputs(usage, stderr);
        return 2;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "nemo-speech: %s\n", failure.what());
        return 1;
    }
}
