#include "Varnet/shell/TerminationSignals.h"

#include "MeetingCore/base/Assert.h"

#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace varnet {

namespace {

constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> pipeEnds{-1, -1};
std::array<struct sigaction, signals.size()> former;

// The handler may do nothing but wake the event loop. Signals stay unblocked, because children inherit a mask.
void wake(int) {
    const int error = errno;
    [[maybe_unused]] const auto written = write(pipeEnds[1], "", 1); // full: already awake
    errno = error;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    VARNET_ASSERT(pipeEnds[0] < 0);
    VARNET_ASSERT(pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) == 0);
    auto* notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        while (read(pipeEnds[0], bytes, sizeof bytes) > 0) {
        }
        Q_EMIT requested();
    });
    struct sigaction action{};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    for (std::size_t place = 0; place < signals.size(); ++place)
        sigaction(signals[place], &action, &former[place]);
}

TerminationSignals::~TerminationSignals() {
    for (std::size_t place = 0; place < signals.size(); ++place)
        sigaction(signals[place], &former[place], nullptr);
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}

} // namespace varnet
