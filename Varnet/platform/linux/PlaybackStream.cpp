#include "Varnet/platform/linux/PlaybackStream.h"

#include "Varnet/platform/AppInfo.h"

#include <spa/param/audio/format-utils.h>

#include <algorithm>
#include <cerrno>

namespace varnet {

namespace {

pw_properties* streamProperties() {
    const std::string name = AppInfo::name();
    const std::string identifier = AppInfo::identifier();
    // No media.role: a session manager may treat some roles as a call, and lower the sound of others for it.
    return pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback", PW_KEY_APP_NAME,
                             name.c_str(), PW_KEY_APP_ID, identifier.c_str(), PW_KEY_APP_ICON_NAME, identifier.c_str(),
                             PW_KEY_NODE_NAME, name.c_str(), PW_KEY_NODE_DESCRIPTION, name.c_str(), PW_KEY_MEDIA_NAME,
                             "Playback", nullptr);
}

} // namespace

PlaybackStream::PlaybackStream(PipeWireConnection& connection, std::shared_ptr<PlaybackRing> ring,
                               std::function<void(std::string)> failed)
    : m_ring(std::move(ring)),
      m_connection(connection),
      m_failed(std::move(failed)),
      m_stream(pw_stream_new(connection.core(), "Playback", streamProperties())) {
    static constexpr pw_stream_events events = [] {
        pw_stream_events table{};
        table.version = PW_VERSION_STREAM_EVENTS;
        table.state_changed = onStateChanged;
        table.process = onProcess;
        return table;
    }();
    if (m_stream)
        pw_stream_add_listener(m_stream.get(), &m_listener, &events, this);
}

PlaybackStream::~PlaybackStream() {
    if (m_stream)
        pw_stream_disconnect(m_stream.get());
}

int PlaybackStream::connect() {
    if (!m_stream)
        return -ENOMEM;
    std::uint8_t bytes[1024];
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, bytes, sizeof bytes);
    spa_audio_info_raw mono{};
    mono.format = SPA_AUDIO_FORMAT_F32;
    mono.rate = m_ring->sampleRate();
    mono.channels = 1;
    mono.position[0] = SPA_AUDIO_CHANNEL_MONO;
    const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &mono);
    const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                    PW_STREAM_FLAG_RT_PROCESS | PW_STREAM_FLAG_INACTIVE);
    return pw_stream_connect(m_stream.get(), PW_DIRECTION_OUTPUT, PW_ID_ANY, flags, &format, 1);
}

void PlaybackStream::setActive(bool active) {
    if (std::exchange(m_active, active) != active)
        pw_stream_set_active(m_stream.get(), active);
}

void PlaybackStream::onStateChanged(void* self, pw_stream_state, pw_stream_state state, const char* error) {
    if (state == PW_STREAM_STATE_ERROR)
        static_cast<PlaybackStream*>(self)->m_failed(error ? error : "no reason given");
}

void PlaybackStream::onProcess(void* self) {
    auto& stream = *static_cast<PlaybackStream*>(self);
    pw_buffer* buffer = pw_stream_dequeue_buffer(stream.m_stream.get());
    if (!buffer)
        return;
    const spa_data& data = buffer->buffer->datas[0];
    if (data.data && data.chunk) {
        const std::size_t room = data.maxsize / sizeof(float);
        const std::size_t count = buffer->requested > 0 ? std::min<std::size_t>(buffer->requested, room) : room;
        stream.m_ring->take({static_cast<float*>(data.data), count}, stream.nextFrameTime());
        data.chunk->offset = 0;
        data.chunk->stride = sizeof(float);
        data.chunk->size = static_cast<std::uint32_t>(count * sizeof(float));
        buffer->size = count;
    }
    pw_stream_queue_buffer(stream.m_stream.get(), buffer);
    stream.m_connection.wake();
}

/// When a frame that is queued now will be heard.
std::int64_t PlaybackStream::nextFrameTime() const noexcept {
    pw_time time{};
    pw_stream_get_time_n(m_stream.get(), &time, sizeof time);
    const auto waiting = static_cast<std::int64_t>(time.queued + time.buffered);
    const std::int64_t delay =
        time.rate.denom == 0 ? 0 : time.delay * SPA_NSEC_PER_SEC * time.rate.num / time.rate.denom;
    return time.now + waiting * SPA_NSEC_PER_SEC / m_ring->sampleRate() + delay;
}

} // namespace varnet
