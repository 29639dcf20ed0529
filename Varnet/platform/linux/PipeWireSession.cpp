#include "Varnet/platform/linux/PipeWireSession.h"

#include "MeetingCore/base/Assert.h"
#include "Varnet/platform/Clock.h"

#include <QDebug>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace varnet {

namespace {

constexpr std::int64_t second = 1'000'000'000;
constexpr std::int64_t startDeadline = 5 * second;
constexpr std::int64_t interruptionTolerance = 2 * second; ///< a change of devices takes milliseconds
constexpr std::int64_t reconnectInterval = 4 * second;

using Reason = CaptureUnavailable::Reason;

bool isRefusal(int error) {
    return error == EACCES || error == EPERM;
}

std::string_view value(const spa_dict& properties, const char* key) {
    const char* text = spa_dict_lookup(&properties, key);
    return text ? text : "";
}

std::uint32_t idValue(const spa_dict& properties, const char* key) {
    const char* text = spa_dict_lookup(&properties, key);
    return text ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : PW_ID_ANY;
}

std::string interruptionNotice(CaptureSource source) {
    return source == CaptureSource::microphone
               ? "The microphone can't be heard at the moment. Your side is recorded as silence until it is back."
               : "The call's sound can't be captured at the moment. The other side is recorded as silence until it is "
                 "back.";
}

std::string lateStartMessage(CaptureSource source, bool wrongDevice) {
    const std::string stream = source == CaptureSource::microphone ? "The microphone" : "The sound of the call";
    return stream + (wrongDevice ? " was connected to the wrong kind of device." : " could not be connected in time.");
}

} // namespace

PipeWireSession::PipeWireSession(const std::vector<CaptureSource>& sources, AudioCapture::Callbacks callbacks,
                                 std::function<void(std::exception_ptr)> started)
    : m_callbacks(std::move(callbacks)), m_started(std::move(started)), m_connection(*this) {
    VARNET_ASSERT(!sources.empty());
    for (const CaptureSource source : sources)
        m_tracks.push_back({source, nullptr});
}

PipeWireSession::~PipeWireSession() = default;

void PipeWireSession::stop() {
    m_connection.stop();
}

void PipeWireSession::run() noexcept {
    m_startTime = monotonicNanoseconds();
    try {
        connect();
        m_connection.run();
    } catch (...) {
        fail(std::current_exception());
    }
    m_closing = true;
    for (const Track& track : m_tracks)
        if (track.stream)
            track.stream->disconnect();
    deliver();
    if (m_started)
        fail(std::make_exception_ptr(Cancelled()));
    m_tracks.clear();
    m_connection.disconnect();
}

void PipeWireSession::connect() {
    switch (m_connection.connect()) {
    case PipeWireConnection::Outcome::connected:
        return;
    case PipeWireConnection::Outcome::noLibrary:
        throw CaptureUnavailable(Reason::streamFailed,
                                 std::string("PipeWire's library could not be set up: ") + std::strerror(errno) + ".");
    case PipeWireConnection::Outcome::refused:
        throw CaptureUnavailable(Reason::accessDenied, "The sound server refuses the connection.");
    case PipeWireConnection::Outcome::noServer:
        throw CaptureUnavailable(Reason::noServer, "No sound server is running.");
    }
}

void PipeWireSession::onRegistryKnown() {
    for (const Track& track : m_tracks) {
        if (m_graph.hasDevice(track.source))
            continue;
        if (track.source == CaptureSource::microphone)
            return fail(Reason::noMicrophone, "No microphone is connected.");
        return fail(Reason::noOutput, "There is no audio output whose sound could be captured.");
    }
    for (Track& track : m_tracks) {
        track.brokenSince = track.connectedAt = monotonicNanoseconds();
        track.stream = std::make_unique<PipeWireStream>(m_connection, track.source, [this] { update(); });
    }
    for (Track& track : m_tracks)
        if (const int result = track.stream->connect(); result < 0)
            return fail(isRefusal(-result) ? Reason::accessDenied : Reason::streamFailed,
                        std::string("An audio stream could not be made: ") + std::strerror(-result) + ".");
}

void PipeWireSession::onAdded(std::uint32_t id, std::string_view type, const spa_dict& properties) {
    if (type == PW_TYPE_INTERFACE_Node)
        m_graph.addNode(id, value(properties, PW_KEY_MEDIA_CLASS));
    else if (type == PW_TYPE_INTERFACE_Port)
        m_graph.addPort(id, value(properties, PW_KEY_PORT_MONITOR) == "true");
    else if (type == PW_TYPE_INTERFACE_Link)
        m_graph.addLink(id, {.outputNode = idValue(properties, PW_KEY_LINK_OUTPUT_NODE),
                             .outputPort = idValue(properties, PW_KEY_LINK_OUTPUT_PORT),
                             .inputNode = idValue(properties, PW_KEY_LINK_INPUT_NODE)});
    else
        return;
    update();
}

void PipeWireSession::onRemoved(std::uint32_t id) {
    m_graph.remove(id);
    update();
}

void PipeWireSession::onError(std::uint32_t id, int error, const char* message) {
    if (id == PW_ID_CORE && error == EPIPE) {
        deliver();
        return fail(Reason::noServer, "The sound server has stopped, so the capture has ended.");
    }
    if (m_started && isRefusal(error))
        return fail(Reason::accessDenied, "The sound server refuses to let this program capture audio.");
    qWarning("Sound server: object %u: %s (%s)", id, message, std::strerror(error));
}

void PipeWireSession::update() {
    if (m_closing || m_ended)
        return;
    for (Track& track : m_tracks) {
        if (!track.stream)
            return;
        const PipeWireGraph::Feed feed = m_graph.feed(track.source, track.stream->node());
        if (feed != track.feed)
            deliver(track); // what is in the ring came by the old links
        track.feed = feed;
        if (isCapturing(track)) {
            track.brokenSince = 0;
            track.noticeGiven = false;
        } else if (track.brokenSince == 0) {
            track.brokenSince = monotonicNanoseconds();
        }
    }
    if (m_started && std::ranges::all_of(m_tracks, isCapturing))
        std::exchange(m_started, nullptr)(nullptr);
}

bool PipeWireSession::isCapturing(const Track& track) {
    return track.feed == PipeWireGraph::Feed::right && track.stream->isStreaming();
}

void PipeWireSession::onWatch() {
    if (m_ended)
        return;
    const std::int64_t now = monotonicNanoseconds();
    if (m_started)
        return checkDeadline(now);
    for (Track& track : m_tracks) {
        if (const std::uint64_t dropped = track.stream->ring().takeDroppedCount())
            qWarning("Capture fell behind: %llu blocks were lost", static_cast<unsigned long long>(dropped));
        if (track.brokenSince != 0 && now - track.brokenSince >= interruptionTolerance)
            mend(track, now);
    }
}

void PipeWireSession::checkDeadline(std::int64_t now) {
    if (now - m_startTime < startDeadline)
        return;
    if (!m_connection.isRegistryKnown())
        return fail(Reason::noServer, "The sound server doesn't answer.");
    const auto late = std::ranges::find_if_not(m_tracks, isCapturing);
    if (late != m_tracks.end())
        fail(Reason::streamFailed, lateStartMessage(late->source, late->feed == PipeWireGraph::Feed::wrong));
}

void PipeWireSession::mend(Track& track, std::int64_t now) {
    if (!track.noticeGiven && m_callbacks.onNotice)
        m_callbacks.onNotice(interruptionNotice(track.source));
    track.noticeGiven = true;
    // Streams stay paused for ever when the session manager was restarted under them; a new request finds its device.
    if (!m_graph.hasDevice(track.source) || now - track.connectedAt < reconnectInterval)
        return;
    track.connectedAt = now;
    if (const int result = track.stream->connect(); result < 0)
        qWarning("An audio stream could not be connected again: %s", std::strerror(-result));
}

void PipeWireSession::deliver() {
    for (Track& track : m_tracks)
        deliver(track);
}

void PipeWireSession::deliver(Track& track) {
    if (!track.stream)
        return;
    CaptureRing& ring = track.stream->ring();
    while (const auto block = ring.front()) {
        try {
            if (track.feed == PipeWireGraph::Feed::right && !m_ended)
                m_callbacks.onBuffer({track.source, block->format, block->samples, block->time});
        } catch (...) {
            fail(std::current_exception());
        }
        ring.pop();
    }
}

void PipeWireSession::fail(Reason reason, std::string message) {
    fail(std::make_exception_ptr(CaptureUnavailable(reason, std::move(message))));
}

void PipeWireSession::fail(std::exception_ptr failure) {
    if (std::exchange(m_ended, true))
        return;
    m_connection.quit();
    if (m_started)
        std::exchange(m_started, nullptr)(std::move(failure));
    else if (m_callbacks.onError)
        m_callbacks.onError(std::move(failure));
}

} // namespace varnet
