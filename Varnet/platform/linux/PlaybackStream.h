#pragma once

#include "Varnet/platform/linux/PipeWireHandles.h"
#include "Varnet/platform/linux/PlaybackRing.h"

#include <functional>
#include <memory>
#include <string>

namespace varnet {

/// One playback stream of a PipeWire connection, mono, to the default output.
///
/// Made, used and destroyed on the thread of the connection's loop. PipeWire's real-time thread takes the sound from
/// the ring and signals the loop.
class PlaybackStream {
public:
    /// `failed` is called on the loop's thread with PipeWire's own words. `wake` is an event source of the loop,
    /// signalled whenever sound was taken. The stream stands still until `setActive`.
    PlaybackStream(pw_core* core, std::shared_ptr<PlaybackRing> ring, pw_loop* loop, spa_source* wake,
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
    pw_loop* m_loop;
    spa_source* m_wake;
    std::function<void(std::string)> m_failed;
    bool m_active = false;
    spa_hook m_listener{};
    Handle<pw_stream, pw_stream_destroy> m_stream;
};

} // namespace varnet
