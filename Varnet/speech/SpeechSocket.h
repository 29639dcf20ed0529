#pragma once

#include "Varnet/async/Task.h"

#include <QUrl>

#include <memory>
#include <string>

namespace varnet {

/// One whole message of the speech engine's connection, in either direction.
struct SpeechMessage {
    enum class Kind { text, binary, other };

    Kind kind = Kind::text;
    std::string bytes; ///< UTF-8 for a text

    bool operator==(const SpeechMessage&) const = default;
};

/// The connection under a live session. One object serves one connection. Main thread.
class SpeechSocket {
public:
    virtual ~SpeechSocket() = default;

    /// Begins to connect; how that ends is learnt from `receive`.
    virtual void start() = 0;

    /// Sends one message; one call at a time. Returns when its bytes have left this program, so a peer that does not
    /// read holds it up. Throws Failure when the connection is not open or ends.
    virtual Task<> send(SpeechMessage message) = 0;

    /// The next message in order, waiting for the connection and for the message; one call at a time. Throws Failure
    /// once the connection has failed or ended and everything that came before has been given out.
    virtual Task<SpeechMessage> receive() = 0;

    /// Closes with a close code and no reason. Ends a waiting `send` and `receive` with Cancelled, and so every later
    /// call. None of them goes on inside this call.
    virtual void cancel(int closeCode) = 0;
};

/// Where the live session of the engine at `baseURL` is: scheme wss for https and ws for anything else, the path
/// replaced, the rest kept.
QUrl speechSessionURL(QUrl baseURL);

/// A WebSocket to the engine at `baseURL`, which must be of this machine; otherwise the first `receive` throws.
std::unique_ptr<SpeechSocket> makeSpeechSocket(const QUrl& baseURL);

} // namespace varnet
