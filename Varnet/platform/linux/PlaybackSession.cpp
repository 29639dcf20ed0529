#include "Varnet/platform/linux/PlaybackSession.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/Clock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace varnet {

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr std::int64_t patience = 3 * second; ///< with a sound server that takes nothing
constexpr int wakesToRest = 3;                ///< of silence, until all sound before it has left the stream

std::size_t frames(double seconds, std::uint32_t sampleRate) {
    return static_cast<std::size_t>(seconds * sampleRate);
}

constexpr double readAhead = 0.25;   ///< seconds, for a busy machine and a slow disk
constexpr double ringSeconds = 0.75; ///< what was cut off takes up room until the next cycle

std::exception_ptr noServer() {
    return std::make_exception_ptr(
        Failure("The sound server PipeWire is not running, so nothing can be played. Start it and try again."));
}

std::exception_ptr noSink() {
    return std::make_exception_ptr(Failure("There is no audio output, so nothing can be played."));
}

std::exception_ptr noAnswer() {
    return std::make_exception_ptr(
        Failure("The sound server doesn't take any sound at the moment, so nothing can be played."));
}

std::exception_ptr refused(const std::string& reason) {
    return std::make_exception_ptr(Failure("The audio could not be played: " + reason + "."));
}

} // namespace

PlaybackSession::PlaybackSession(Events events) : m_events(std::move(events)), m_connection(*this) {}

PlaybackSession::~PlaybackSession() = default;

void PlaybackSession::run() noexcept {
    m_connection.run();
    disconnect();
}

void PlaybackSession::stop() {
    m_connection.stop();
}

void PlaybackSession::give(std::uint64_t number, std::optional<Order> order) {
    {
        const std::lock_guard lock(m_mutex);
        if (!order)
            m_restPosition = heardPosition();
        m_order = std::move(order);
        m_number = number;
    }
    m_connection.wake();
}

double PlaybackSession::position() const {
    const std::lock_guard lock(m_mutex);
    return heardPosition();
}

double PlaybackSession::heardPosition() const {
    if (!m_order)
        return m_restPosition;
    if (m_run.number != m_number)
        return m_order->position;
    const auto first = static_cast<std::int64_t>(m_run.firstFrame);
    const auto last = std::max(first, static_cast<std::int64_t>(m_run.ring->taken()));
    const std::int64_t heard = std::clamp(m_run.ring->heard(monotonicNanoseconds()), first, last);
    return m_run.position + static_cast<double>(heard - first) / m_run.ring->sampleRate() * m_run.rate;
}

void PlaybackSession::onWake() {
    if (m_brokenBy)
        finish(std::exchange(m_brokenBy, nullptr));
    std::uint64_t number = 0;
    std::optional<Order> order;
    {
        const std::lock_guard lock(m_mutex);
        number = m_number;
        if (number != m_begun)
            order = m_order;
    }
    try {
        if (number != m_begun)
            begin(number, order);
        fill();
    } catch (...) {
        return finish(std::current_exception());
    }
    if (m_playing)
        checkEnd();
    else
        rest();
}

void PlaybackSession::begin(std::uint64_t number, const std::optional<Order>& order) {
    m_begun = number;
    m_playing = false;
    m_reader.reset();
    m_silentWakes = 0;
    if (m_stream)
        m_stream->ring().cut();
    if (!order)
        return;
    m_reader = std::make_unique<PlaybackReader>(order->wav, order->position, order->rate);
    if (!m_connection.core())
        connect();
    if (!m_stream || m_stream->ring().sampleRate() != m_reader->sampleRate())
        openStream(m_reader->sampleRate());
    m_playing = true;
    m_lastProgress = monotonicNanoseconds();
    {
        const std::lock_guard lock(m_mutex);
        m_run = {number, m_stream->sharedRing(), m_stream->ring().written(), order->position, order->rate};
    }
    fill();
    m_stream->setActive(true);
}

void PlaybackSession::fill() {
    if (!m_reader)
        return;
    PlaybackRing& ring = m_stream->ring();
    const std::size_t ahead = frames(readAhead, ring.sampleRate());
    std::array<float, 1'024> piece{};
    while (m_reader) {
        const auto waiting = static_cast<std::size_t>(ring.written() - std::max(ring.taken(), m_run.firstFrame));
        const std::size_t wanted = std::min({piece.size(), ring.room(), ahead - std::min(ahead, waiting)});
        if (wanted == 0)
            return;
        const std::size_t count = m_reader->read(std::span(piece).first(wanted));
        if (ring.taken() == ring.written()) // it was the file that the server waited for
            m_lastProgress = monotonicNanoseconds();
        ring.write(std::span(piece).first(count));
        if (count < wanted)
            m_reader.reset();
    }
}

void PlaybackSession::checkEnd() {
    const PlaybackRing& ring = m_stream->ring();
    const std::uint64_t end = ring.written();
    if (m_reader || ring.taken() != end)
        return;
    const bool nothing = end == m_run.firstFrame;
    if (nothing || ring.heard(monotonicNanoseconds()) >= static_cast<std::int64_t>(end))
        finish(nullptr);
}

/// A stream without sound does not keep the output running.
void PlaybackSession::rest() {
    if (m_stream && m_stream->ring().taken() == m_stream->ring().written() && ++m_silentWakes == wakesToRest)
        m_stream->setActive(false);
}

void PlaybackSession::onWatch() {
    if (!m_playing)
        return;
    const std::int64_t now = monotonicNanoseconds();
    const PlaybackRing& ring = m_stream->ring();
    const std::uint64_t taken = ring.taken();
    if (taken != m_lastTaken || (m_reader && taken == ring.written())) {
        m_lastTaken = taken;
        m_lastProgress = now;
    }
    const bool none = m_connection.isRegistryKnown() && m_sinks.empty();
    if (now - m_lastProgress >= patience)
        finish(none ? noSink() : noAnswer());
}

void PlaybackSession::connect() {
    switch (m_connection.connect()) {
    case PipeWireConnection::Outcome::connected:
        return;
    case PipeWireConnection::Outcome::noLibrary:
        std::rethrow_exception(refused(std::strerror(errno)));
    case PipeWireConnection::Outcome::refused:
        std::rethrow_exception(refused("the sound server refuses the connection"));
    case PipeWireConnection::Outcome::noServer:
        std::rethrow_exception(noServer());
    }
}

void PlaybackSession::openStream(std::uint32_t sampleRate) {
    m_stream.reset();
    m_lastTaken = 0;
    auto ring = std::make_shared<PlaybackRing>(sampleRate, frames(ringSeconds, sampleRate),
                                               frames(PlaybackReader::fadeSeconds, sampleRate));
    m_stream = std::make_unique<PlaybackStream>(m_connection, std::move(ring),
                                                [this](const std::string& reason) { giveUp(refused(reason)); });
    if (const int result = m_stream->connect(); result < 0)
        std::rethrow_exception(refused(std::strerror(-result)));
}

void PlaybackSession::onRegistryKnown() {
    if (m_sinks.empty())
        giveUp(noSink());
}

void PlaybackSession::onAdded(std::uint32_t id, std::string_view, const spa_dict& properties) {
    const char* mediaClass = spa_dict_lookup(&properties, PW_KEY_MEDIA_CLASS);
    if (mediaClass && (!std::strcmp(mediaClass, "Audio/Sink") || !std::strcmp(mediaClass, "Audio/Duplex")))
        m_sinks.insert(id);
}

void PlaybackSession::onError(std::uint32_t id, int error, const char*) {
    if (id == PW_ID_CORE)
        giveUp(error == EPIPE ? noServer() : refused(std::strerror(error)));
}

/// The connection cannot be taken down in the middle of one of its events.
void PlaybackSession::giveUp(std::exception_ptr failure) {
    if (m_brokenBy)
        return;
    m_brokenBy = std::move(failure);
    m_connection.wake();
}

void PlaybackSession::disconnect() {
    m_stream.reset();
    m_connection.disconnect();
    m_sinks.clear();
}

/// The present order is done, or cannot be. A failure takes the connection with it: the next order tries anew.
void PlaybackSession::finish(const std::exception_ptr& failure) {
    const bool playing = std::exchange(m_playing, false);
    m_reader.reset();
    m_silentWakes = 0;
    bool current = false;
    {
        const std::lock_guard lock(m_mutex);
        current = m_number == m_begun && m_order;
        if (current) {
            m_restPosition = heardPosition();
            m_order.reset();
        }
    }
    if (failure)
        disconnect();
    if (current && failure)
        m_events.failed(m_begun, failure);
    else if (current && playing)
        m_events.ended(m_begun);
}

} // namespace varnet
