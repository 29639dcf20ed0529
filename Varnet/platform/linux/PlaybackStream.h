#pragma once

#include "Varnet/platform/linux/PipeWireConnection.h"
#include "Varnet/platform/linux/PlaybackRing.h"

#include <functional>
#include <memory>
#include <string>

namespace varnet {

/// One playback stream of a PipeWire connection, mono, to the default output.
///
/// Made, used and destroyed on the connection's thread. PipeWire's real-time thread takes the sound from the ring and
/// wakes the connection.
class PlaybackStream {
public:
    /// `failed` is called on the connection's thread with PipeWire's own words. The connection, which must outlive it,
    /// is woken whenever sound was taken. The stream stands still until `setActive`.
    PlaybackStream(PipeWireConnection& connection, std::shared_ptr<PlaybackRing> ring,
                   std::function<void(std::string)> failed);
    ~PlaybackStream();
    PlaybackStream(const PlaybackStream&) = delete;
    PlaybackStream& operator=(const PlaybackStream&) = delete;

    /// Asks the session manager to link the stream. Returns 0, or a negative errno value.
    int connect();

    void setActive(bool active);

    PlaybackRing& ring() { return *m_ring; }
    const std::shared_ptr<PlaybackRing>& sharedRing() const { return m_ring; }

private:
    static void onStateChanged(void* self, pw_stream_state old, pw_stream_state state, const char* error);
    static void onProcess(void* self);
    std::int64_t nextFrameTime() const noexcept;

    std::shared_ptr<PlaybackRing> m_ring;
    PipeWireConnection& m_connection;
    std::function<void(std::string)> m_failed;
    bool m_active = false;
    spa_hook m_listener{};
    Handle<pw_stream, pw_stream_destroy> m_stream;
};

} // namespace varnet
