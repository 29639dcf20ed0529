#pragma once

#include "MeetingCore/speech/SpeechEvent.h"
#include "Varnet/async/AsyncQueue.h"
#include "Varnet/async/Event.h"
#include "Varnet/async/TaskScope.h"
#include "Varnet/speech/SpeechSocket.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <stop_token>
#include <string>

namespace varnet {

/// The limits of a live session and the clock that they are measured on.
struct SpeechTiming {
    std::chrono::nanoseconds handshakeTimeout = std::chrono::seconds(10);       ///< for the whole of `connect`
    std::chrono::nanoseconds finishTimeout = std::chrono::seconds(30);          ///< the longest silence during `finish`
    std::chrono::nanoseconds finishCap = std::chrono::seconds(600);             ///< for the whole of `finish`
    std::function<std::chrono::nanoseconds()> now;                              ///< default: CLOCK_MONOTONIC
    std::function<Task<bool>(std::chrono::nanoseconds, std::stop_token)> sleep; ///< default: sleepFor
};

/// Streams the audio of a running recording to the speech engine and hands back its events. A failure ends only the
/// session; the recording does not depend on it.
///
/// One object serves one session: `connect`, any number of `append`, `finish`; `close` at any time. It is shared with
/// the capture threads, and while `connect` or `finish` waits or the session is connected it keeps itself alive:
/// whoever lets go of a connected session closes it.
///
/// The first error with which the session was closed stays its error: later calls throw it.
class LiveSpeech final : public std::enable_shared_from_this<LiveSpeech> {
public:
    /// Handles one event on the main thread; the next one is not read before it is done.
    using EventHandler = std::function<Task<>(SpeechEvent)>;
    /// Told once, of a failure of a connected session, on the thread that closed it. It must not wait.
    using ErrorHandler = std::function<void(std::exception_ptr)>;

    /// A session with the engine at `baseURL`, not connected yet.
    static std::shared_ptr<LiveSpeech> make(const QUrl& baseURL);
    static std::shared_ptr<LiveSpeech> make(std::unique_ptr<SpeechSocket> socket, SpeechTiming timing = {});
    ~LiveSpeech();
    LiveSpeech(const LiveSpeech&) = delete;
    LiveSpeech& operator=(const LiveSpeech&) = delete;

    /// Opens the connection and returns once the engine has accepted the settings. Throws what went wrong, with the
    /// session closed; Cancelled when `stop` was requested. Main thread.
    Task<> connect(EventHandler onEvent, ErrorHandler onError, std::stop_token stop = {});

    /// Queues one block: 16-bit signed little-endian samples, mono, 16,000 a second. A block that does not fit behind
    /// 128 others ends the session; without a connected session it is ignored. Any thread; never blocks, never throws.
    void append(std::span<const std::byte> block);

    /// Sends what is queued, waits for the engine to acknowledge all of it, and closes. Throws what went wrong, with
    /// the session closed; Cancelled when `stop` was requested. Main thread.
    Task<> finish(std::stop_token stop = {});

    /// Ends the session with `error`, which `notify` tells the error handler; on a closed session nothing. Any thread.
    void close(const std::exception_ptr& error, bool notify);

private:
    enum class Phase { idle, connecting, connected, finishing, closed };
    using AudioQueue = AsyncQueue<std::string>;

    LiveSpeech(std::unique_ptr<SpeechSocket> socket, SpeechTiming timing);

    Task<SpeechEvent> event();
    Task<> handshake(std::stop_token stop);
    void run(EventHandler onEvent, ErrorHandler onError);
    Task<> sendAudio(std::shared_ptr<AudioQueue> queue);
    Task<> receiveEvents(EventHandler onEvent);
    Task<> deadline(std::chrono::nanoseconds duration, std::string message, std::stop_token stop);
    Task<> stallDeadline(std::chrono::nanoseconds idle, std::chrono::nanoseconds cap, std::string message,
                         std::stop_token stop);
    void begin();
    std::shared_ptr<AudioQueue> beginFinish();
    void noteProgress();
    bool isCommitted();
    std::exception_ptr terminalErrorOr(const std::exception_ptr& other);

    std::unique_ptr<SpeechSocket> m_socket; ///< never replaced; main thread
    const SpeechTiming m_timing;
    TaskScope m_tasks; ///< its stop token calls off the sender and the receiver
    Event m_senderEnded;
    Event m_receiverEnded;

    std::mutex m_stateLock; ///< guards all below; never held across a wait, a callback or a call of the socket
    Phase m_phase = Phase::idle;
    std::exception_ptr m_terminalError;
    std::shared_ptr<AudioQueue> m_queue;
    ErrorHandler m_reportFailure;
    bool m_running = false; ///< sender and receiver have both been started
    bool m_committed = false;
    std::chrono::nanoseconds m_lastProgress;
};

} // namespace varnet
