#include "Varnet/platform/linux/PipeWireStream.h"

#include "Varnet/platform/AppInfo.h"

#include <QDebug>

#include <spa/param/audio/format-utils.h>

namespace varnet {

namespace {

// Ten seconds of eight channels at 48 kHz, in blocks of 64 frames at the smallest.
constexpr std::size_t sampleCapacity = 10 * 48'000 * 8;
constexpr std::size_t blockCapacity = 10 * 48'000 / 64;

static_assert(std::atomic<CaptureFormat>::is_always_lock_free);

pw_properties* streamProperties(CaptureSource source) {
    const bool call = source == CaptureSource::system;
    const std::string name = AppInfo::name();
    const std::string identifier = AppInfo::identifier();
    // No media.role: with "Communication" the session manager links the call's stream to the microphone. The id keeps
    // the two apart where the session manager remembers which device the user has chosen for a stream.
    pw_properties* properties = pw_properties_new(
        PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_APP_NAME, name.c_str(), PW_KEY_APP_ID,
        (call ? identifier + ".call" : identifier).c_str(), PW_KEY_APP_ICON_NAME, identifier.c_str(), PW_KEY_NODE_NAME,
        (name + (call ? " call" : " microphone")).c_str(), PW_KEY_MEDIA_NAME, call ? "Call" : "Microphone", nullptr);
    if (call)
        pw_properties_set(properties, PW_KEY_STREAM_CAPTURE_SINK, "true");
    return properties;
}

} // namespace

PipeWireStream::PipeWireStream(PipeWireConnection& connection, CaptureSource source, std::function<void()> changed)
    : m_connection(connection),
      m_changed(std::move(changed)),
      m_ring(sampleCapacity, blockCapacity),
      m_stream(pw_stream_new(connection.core(), "Capture", streamProperties(source))) {
    static constexpr pw_stream_events events = [] {
        pw_stream_events table{};
        table.version = PW_VERSION_STREAM_EVENTS;
        table.state_changed = onStateChanged;
        table.param_changed = onParamChanged;
        table.process = onProcess;
        return table;
    }();
    if (m_stream)
        pw_stream_add_listener(m_stream.get(), &m_listener, &events, this);
}

PipeWireStream::~PipeWireStream() {
    disconnect();
}

int PipeWireStream::connect() {
    if (!m_stream)
        return -ENOMEM;
    disconnect();
    std::uint8_t bytes[1024];
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, bytes, sizeof bytes);
    spa_audio_info_raw anyRateAndChannels{};
    anyRateAndChannels.format = SPA_AUDIO_FORMAT_F32;
    const spa_pod* format = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &anyRateAndChannels);
    const auto flags = static_cast<pw_stream_flags>(PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS |
                                                    PW_STREAM_FLAG_RT_PROCESS);
    return pw_stream_connect(m_stream.get(), PW_DIRECTION_INPUT, PW_ID_ANY, flags, &format, 1);
}

void PipeWireStream::disconnect() {
    if (m_stream)
        pw_stream_disconnect(m_stream.get());
}

bool PipeWireStream::isStreaming() const {
    return m_stream && pw_stream_get_state(m_stream.get(), nullptr) == PW_STREAM_STATE_STREAMING;
}

std::uint32_t PipeWireStream::node() const {
    return m_stream ? pw_stream_get_node_id(m_stream.get()) : PW_ID_ANY;
}

void PipeWireStream::onStateChanged(void* self, pw_stream_state, pw_stream_state state, const char* error) {
    if (state == PW_STREAM_STATE_ERROR)
        qWarning("Audio stream failed: %s", error ? error : "no reason given");
    static_cast<PipeWireStream*>(self)->m_changed();
}

void PipeWireStream::onParamChanged(void* self, std::uint32_t id, const spa_pod* param) {
    if (id != SPA_PARAM_Format || !param)
        return;
    spa_audio_info_raw info{};
    if (spa_format_audio_raw_parse(param, &info) < 0 || info.rate == 0 || info.channels == 0)
        return;
    static_cast<PipeWireStream*>(self)->m_format = {static_cast<int>(info.rate), static_cast<int>(info.channels)};
}

void PipeWireStream::onProcess(void* self) {
    auto& stream = *static_cast<PipeWireStream*>(self);
    // More than one is waiting only after a missed cycle. The time is the newest one's; the others are lost audio,
    // which the recorders keep as silence at its own place.
    pw_buffer* buffer = nullptr;
    while (pw_buffer* next = pw_stream_dequeue_buffer(stream.m_stream.get())) {
        if (buffer)
            pw_stream_queue_buffer(stream.m_stream.get(), buffer);
        buffer = next;
    }
    if (!buffer)
        return;
    stream.capture(*buffer);
    pw_stream_queue_buffer(stream.m_stream.get(), buffer);
}

void PipeWireStream::capture(const pw_buffer& buffer) noexcept {
    const CaptureFormat format = m_format.load();
    if (buffer.buffer->n_datas == 0 || format.channelCount == 0)
        return;
    const spa_data& data = buffer.buffer->datas[0];
    if (!data.data || !data.chunk || (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED))
        return;
    const std::uint32_t offset = std::min(data.chunk->offset, data.maxsize);
    const std::uint32_t size = std::min(data.chunk->size, data.maxsize - offset);
    const std::size_t frameCount = size / sizeof(float) / static_cast<std::size_t>(format.channelCount);
    if (frameCount == 0)
        return;
    const auto* samples = reinterpret_cast<const float*>(static_cast<const std::byte*>(data.data) + offset);
    const std::int64_t length = static_cast<std::int64_t>(frameCount) * SPA_NSEC_PER_SEC / format.sampleRate;
    m_ring.push(format, bufferTime(length), {samples, frameCount * static_cast<std::size_t>(format.channelCount)});
    m_connection.wake();
}

std::int64_t PipeWireStream::bufferTime(std::int64_t length) const noexcept {
    pw_time time{};
    pw_stream_get_time_n(m_stream.get(), &time, sizeof time);
    const auto nanoseconds = [&](std::int64_t frames) -> std::int64_t {
        return time.rate.denom == 0 ? 0 : frames * SPA_NSEC_PER_SEC * time.rate.num / time.rate.denom;
    };
    return time.now - nanoseconds(static_cast<std::int64_t>(time.buffered)) - std::max(nanoseconds(time.delay), length);
}

} // namespace varnet
