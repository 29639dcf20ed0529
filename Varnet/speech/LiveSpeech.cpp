#include "Varnet/speech/LiveSpeech.h"

#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Failures.h"
#include "Varnet/async/MainThread.h"
#include "Varnet/async/Sleep.h"
#include "Varnet/platform/Clock.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace varnet {

namespace {

constexpr std::size_t queuedBlocks = 128;
constexpr int goingAway = 1001;
constexpr const char* sessionUpdate = R"({"type":"session.update","session":{"sample_rate":16000,)"
                                      R"("word_timestamps":true,"speaker_diarization":true,"endpointing_ms":800}})";
constexpr const char* commit = R"({"type":"input_audio_buffer.commit"})";

using Canceller = std::optional<std::stop_callback<std::function<void()>>>;

std::exception_ptr speechFailure(std::string message) {
    return std::make_exception_ptr(SpeechFailure(std::move(message)));
}

std::exception_ptr cancellation() {
    return std::make_exception_ptr(Cancelled());
}

void throwIfStopped(const std::stop_token& stop) {
    if (stop.stop_requested())
        throw Cancelled();
}

SpeechTiming withDefaults(SpeechTiming timing) {
    if (!timing.now)
        timing.now = [] { return std::chrono::nanoseconds(monotonicNanoseconds()); };
    if (!timing.sleep)
        timing.sleep = sleepFor;
    return timing;
}

} // namespace

std::shared_ptr<LiveSpeech> LiveSpeech::make(const QUrl& baseURL) {
    return make(makeSpeechSocket(baseURL));
}

std::shared_ptr<LiveSpeech> LiveSpeech::make(std::unique_ptr<SpeechSocket> socket, SpeechTiming timing) {
    return std::shared_ptr<LiveSpeech>(new LiveSpeech(std::move(socket), std::move(timing)));
}

LiveSpeech::LiveSpeech(std::unique_ptr<SpeechSocket> socket, SpeechTiming timing)
    : m_socket(std::move(socket)),
      m_timing(withDefaults(std::move(timing))),
      m_tasks("Live speech session"),
      m_lastProgress(m_timing.now()) {}

LiveSpeech::~LiveSpeech() {
    // A capture thread may have been the last to hold the session.
    if (!onMainThread())
        postToMain([socket = m_socket.release()] { delete socket; });
}

// MARK: connect

Task<> LiveSpeech::connect(EventHandler onEvent, ErrorHandler onError, std::stop_token stop) {
    const auto self = shared_from_this();
    begin();
    std::stop_source watchdog;
    m_tasks.spawn(deadline(m_timing.handshakeTimeout,
                           "Speech engine setup timed out. Audio can still be recorded locally.",
                           watchdog.get_token()));
    Canceller canceller(std::in_place, stop, [self] { self->close(cancellation(), false); });
    std::exception_ptr failure;
    try {
        co_await handshake(stop);
        run(std::move(onEvent), std::move(onError));
    } catch (...) {
        failure = std::current_exception();
    }
    canceller.reset();
    watchdog.request_stop();
    if (failure) {
        close(failure, false);
        std::rethrow_exception(terminalErrorOr(failure));
    }
}

void LiveSpeech::begin() {
    const std::lock_guard lock(m_stateLock);
    if (m_phase != Phase::idle)
        std::rethrow_exception(m_terminalError ? m_terminalError
                                               : speechFailure("Speech session has already been used"));
    m_phase = Phase::connecting;
}

Task<> LiveSpeech::handshake(std::stop_token stop) {
    throwIfStopped(stop);
    m_socket->start();
    const SpeechEvent created = co_await event();
    if (created.type != "session.created")
        throw SpeechFailure("Speech session did not start");
    co_await m_socket->send({SpeechMessage::Kind::text, sessionUpdate});
    const SpeechEvent updated = co_await event();
    if (updated.type != "session.updated")
        throw SpeechFailure("Speech settings were rejected");
}

void LiveSpeech::run(EventHandler onEvent, ErrorHandler onError) {
    const auto queue = std::make_shared<AudioQueue>(queuedBlocks);
    {
        const std::lock_guard lock(m_stateLock);
        if (m_phase != Phase::connecting)
            std::rethrow_exception(m_terminalError);
        m_queue = queue;
        m_reportFailure = std::move(onError);
        m_phase = Phase::connected;
    }
    // Both run until their first wait here, so the session may be closed again afterwards.
    m_tasks.spawn(sendAudio(queue));
    m_tasks.spawn(receiveEvents(std::move(onEvent)));
    const std::lock_guard lock(m_stateLock);
    if (m_phase != Phase::connected)
        std::rethrow_exception(m_terminalError);
    m_running = true;
}

// MARK: the running session

Task<SpeechEvent> LiveSpeech::event() {
    const SpeechMessage message = co_await m_socket->receive();
    if (message.kind == SpeechMessage::Kind::other)
        throw SpeechFailure("Unknown speech response");
    SpeechEvent event = SpeechEvent::decode(message.bytes);
    if (event.type == "error")
        throw SpeechFailure(event.error ? event.error->message : "Speech engine rejected the request");
    co_return event;
}

Task<> LiveSpeech::sendAudio(std::shared_ptr<AudioQueue> queue) {
    const auto self = shared_from_this();
    const std::stop_token stop = m_tasks.stopToken();
    try {
        for (;;) {
            std::optional<std::string> block = co_await queue->next(stop);
            throwIfStopped(stop);
            if (!block)
                break;
            co_await m_socket->send({SpeechMessage::Kind::binary, std::move(*block)});
            noteProgress();
        }
        co_await m_socket->send({SpeechMessage::Kind::text, commit});
    } catch (...) {
        close(std::current_exception(), true);
    }
    m_senderEnded.set();
}

Task<> LiveSpeech::receiveEvents(EventHandler onEvent) {
    const auto self = shared_from_this();
    const std::stop_token stop = m_tasks.stopToken();
    try {
        for (bool ended = false; !ended;) {
            throwIfStopped(stop);
            const SpeechEvent received = co_await event();
            noteProgress();
            co_await onEvent(received);
            ended = received.type == "input_audio_buffer.committed";
        }
        const std::lock_guard lock(m_stateLock);
        m_committed = true;
    } catch (...) {
        close(std::current_exception(), true);
    }
    m_receiverEnded.set();
}

void LiveSpeech::append(std::span<const std::byte> block) {
    std::shared_ptr<AudioQueue> queue;
    {
        const std::lock_guard lock(m_stateLock);
        if (m_phase == Phase::connected)
            queue = m_queue;
    }
    if (!queue)
        return;
    std::string bytes(reinterpret_cast<const char*>(block.data()), block.size());
    if (queue->offer(std::move(bytes)) == AudioQueue::Offer::full)
        close(speechFailure("The speech engine fell behind the recording. Live transcription stopped; retry from "
                            "saved audio after the meeting."),
              true);
}

// MARK: the end

Task<> LiveSpeech::finish(std::stop_token stop) {
    const auto self = shared_from_this();
    beginFinish()->end();
    noteProgress();
    std::stop_source watchdog;
    m_tasks.spawn(stallDeadline(m_timing.finishTimeout, m_timing.finishCap,
                                "Speech engine did not finish in time. Retry transcription from saved audio.",
                                watchdog.get_token()));
    Canceller canceller(std::in_place, stop, [self] { self->close(cancellation(), false); });
    co_await m_senderEnded.wait();
    co_await m_receiverEnded.wait();
    const std::exception_ptr failure =
        terminalErrorOr(isCommitted() ? nullptr : speechFailure("Speech engine did not acknowledge the saved audio"));
    canceller.reset();
    watchdog.request_stop();
    close(cancellation(), false);
    if (failure)
        std::rethrow_exception(failure);
}

std::shared_ptr<LiveSpeech::AudioQueue> LiveSpeech::beginFinish() {
    const std::lock_guard lock(m_stateLock);
    if (m_phase != Phase::connected || !m_running)
        std::rethrow_exception(m_terminalError ? m_terminalError : speechFailure("No active speech session to finish"));
    m_phase = Phase::finishing;
    return m_queue;
}

void LiveSpeech::close(const std::exception_ptr& error, bool notify) {
    VARNET_ASSERT(error);
    std::shared_ptr<AudioQueue> queue;
    ErrorHandler report;
    {
        const std::lock_guard lock(m_stateLock);
        if (m_phase == Phase::closed)
            return;
        m_phase = Phase::closed;
        m_terminalError = error;
        queue = std::exchange(m_queue, nullptr);
        report = std::exchange(m_reportFailure, nullptr);
    }
    if (notify && report) {
        try {
            report(error);
        } catch (...) {
            qWarning("Live speech session: %s", describe(std::current_exception()).c_str());
        }
    }
    if (queue)
        queue->end();
    m_tasks.requestStop();
    if (onMainThread())
        m_socket->cancel(goingAway);
    else
        postToMain([self = shared_from_this()] { self->m_socket->cancel(goingAway); });
}

// MARK: watchdogs

Task<> LiveSpeech::deadline(std::chrono::nanoseconds duration, std::string message, std::stop_token stop) {
    const auto self = shared_from_this();
    if (co_await m_timing.sleep(duration, stop))
        close(speechFailure(std::move(message)), true);
}

Task<> LiveSpeech::stallDeadline(std::chrono::nanoseconds idle, std::chrono::nanoseconds cap, std::string message,
                                 std::stop_token stop) {
    const auto self = shared_from_this();
    const std::chrono::nanoseconds start = m_timing.now();
    const std::chrono::nanoseconds interval = std::min<std::chrono::nanoseconds>(idle, std::chrono::seconds(1));
    for (;;) {
        const bool slept = co_await m_timing.sleep(interval, stop);
        if (!slept)
            co_return;
        const std::chrono::nanoseconds now = m_timing.now();
        std::unique_lock lock(m_stateLock);
        const bool inTime = now - m_lastProgress < idle && now - start < cap;
        lock.unlock();
        if (!inTime)
            break;
    }
    close(speechFailure(std::move(message)), true);
}

void LiveSpeech::noteProgress() {
    const std::lock_guard lock(m_stateLock);
    m_lastProgress = m_timing.now();
}

bool LiveSpeech::isCommitted() {
    const std::lock_guard lock(m_stateLock);
    return m_committed;
}

std::exception_ptr LiveSpeech::terminalErrorOr(const std::exception_ptr& other) {
    const std::lock_guard lock(m_stateLock);
    return m_terminalError ? m_terminalError : other;
}

} // namespace varnet
