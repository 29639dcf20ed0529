#pragma once

#include "Varnet/platform/linux/CaptureRing.h"
#include "Varnet/platform/linux/PipeWireConnection.h"

#include <functional>
#include <string>

namespace varnet {

/// One capture stream of a PipeWire connection: the default microphone, or what the default output plays.
///
/// Made, used and destroyed on the connection's thread. The sound itself arrives on PipeWire's real-time thread, which
/// puts it into `ring()` and wakes the connection.
///
/// The time of a buffer's first sample is
///
///     now - buffered - max(delay, length of the buffer)
///
/// with the figures of pw_stream_get_time_n, which count frames of the graph. `now` is the start of the graph cycle
/// that hands the buffer out, so the buffer's last frame was captured no later: its first frame is older by the
/// buffer's length, or by `delay` where the path from the device is longer, and by what the resampler still holds back.
/// The header metadata that other kinds of streams carry is never there for converted audio.
class PipeWireStream {
public:
    /// `changed` is called on the connection's thread after the stream's state has changed. The connection, which must
    /// outlive it, is woken for each block in the ring.
    PipeWireStream(PipeWireConnection& connection, CaptureSource source, std::function<void()> changed);
    ~PipeWireStream();
    PipeWireStream(const PipeWireStream&) = delete;
    PipeWireStream& operator=(const PipeWireStream&) = delete;

    /// Asks the session manager to link the stream to the default device, anew if it is connected already. Returns 0,
    /// or a negative errno value when the request could not be made.
    int connect();

    /// Ends the capture; nothing comes into the ring after it.
    void disconnect();

    bool isStreaming() const;

    /// The registry id of the stream's node; PW_ID_ANY while it has none.
    std::uint32_t node() const;

    CaptureRing& ring() { return m_ring; }

private:
    static void onStateChanged(void* self, pw_stream_state old, pw_stream_state state, const char* error);
    static void onParamChanged(void* self, std::uint32_t id, const spa_pod* param);
    static void onProcess(void* self);
    void capture(const pw_buffer& buffer) noexcept;
    std::int64_t bufferTime(std::int64_t length) const noexcept;

    PipeWireConnection& m_connection;
    std::function<void()> m_changed;
    CaptureRing m_ring;
    std::atomic<CaptureFormat> m_format{CaptureFormat{}};
    spa_hook m_listener{};
    Handle<pw_stream, pw_stream_destroy> m_stream;
};

} // namespace varnet
