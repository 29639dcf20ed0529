#include "Varnet/platform/AudioFileReader.h"

#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/FileReader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

namespace varnet {

namespace {

/// What holds sound in one file. A demuxer that is not named here is not used, whatever the file pretends to be.
constexpr char demuxers[] =
    "aac,ac3,aiff,amr,amrnb,amrwb,asf,au,avi,caf,eac3,flac,flv,matroska,mov,mp3,mpeg,mpegts,ogg,"
    "tta,w64,wav,wv";
constexpr int bufferSize = 1 << 16;

std::string reason(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    ::av_strerror(error, text, sizeof text);
    return text;
}

template <class T>
T* allocated(T* object) {
    if (!object)
        throw std::bad_alloc();
    return object;
}

/// FFmpeg takes a WAV file that is cut for one of unknown length.
std::optional<double> secondsOfCutWav(const FileReader& file) {
    const auto header = WavHeader::read(file);
    if (!header || header->missingBytes == 0 || header->sampleRate == 0)
        return {};
    return static_cast<double>(header->dataBytes + header->missingBytes) / header->bytesPerFrame / header->sampleRate;
}

int refuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

} // namespace

void MediaDeleter::operator()(AVCodecContext* codec) const {
    ::avcodec_free_context(&codec);
}

void MediaDeleter::operator()(AVFormatContext* format) const {
    ::avformat_close_input(&format);
}

void MediaDeleter::operator()(AVFrame* frame) const {
    ::av_frame_free(&frame);
}

void MediaDeleter::operator()(AVIOContext* input) const {
    ::av_freep(static_cast<void*>(&input->buffer));
    ::avio_context_free(&input);
}

void MediaDeleter::operator()(AVPacket* packet) const {
    ::av_packet_free(&packet);
}

/// The file as the demuxer sees it. What goes wrong in its calls is kept for the reader.
class AudioFileReader::Input {
public:
    Input(const std::filesystem::path& path, std::stop_token stop) : m_file(path), m_stop(std::move(stop)) {}

    /// Throws what a read has met since.
    void check() const {
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

    const FileReader& file() const { return m_file; }

    static int read(void* self, std::uint8_t* bytes, int size) { return static_cast<Input*>(self)->read(bytes, size); }
    static std::int64_t seek(void* self, std::int64_t offset, int whence) {
        return static_cast<Input*>(self)->seek(offset, whence);
    }

private:
    int read(std::uint8_t* bytes, int size) noexcept {
        try {
            if (m_stop.stop_requested())
                throw Cancelled();
            const std::span space(reinterpret_cast<std::byte*>(bytes), static_cast<std::size_t>(size));
            const std::size_t count = m_file.read(space, m_position);
            m_position += count;
            if (count < space.size() && m_position < m_file.size())
                throw UnreadableAudio("the file became shorter while it was read");
            return count == 0 ? AVERROR_EOF : static_cast<int>(count);
        } catch (...) {
            m_failure = std::current_exception();
            return AVERROR_EXIT;
        }
    }

    std::int64_t seek(std::int64_t offset, int whence) noexcept {
        const auto size = static_cast<std::int64_t>(m_file.size());
        whence &= ~AVSEEK_FORCE;
        if (whence == AVSEEK_SIZE)
            return size;
        const std::int64_t base = whence == SEEK_SET   ? 0
                                  : whence == SEEK_CUR ? static_cast<std::int64_t>(m_position)
                                  : whence == SEEK_END ? size
                                                       : -1;
        std::int64_t target = 0;
        if (base < 0 || __builtin_add_overflow(base, offset, &target) || target < 0)
            return AVERROR(EINVAL);
        m_position = static_cast<std::uint64_t>(target);
        return target;
    }

    FileReader m_file;
    std::stop_token m_stop;
    std::uint64_t m_position = 0;
    std::exception_ptr m_failure;
};

AudioFileReader::AudioFileReader(const std::filesystem::path& path, std::stop_token stop)
    : m_stop(std::move(stop)),
      m_input(std::make_unique<Input>(path, m_stop)),
      m_packet(allocated(::av_packet_alloc())) {
    // Thousands of lines about one damaged file help nobody; the reason why a file is refused is told.
    ::av_log_set_level(AV_LOG_QUIET);
    openContainer();
    findStream();
    openDecoder();
}

AudioFileReader::~AudioFileReader() = default;

void AudioFileReader::openContainer() {
    auto* buffer = allocated(static_cast<unsigned char*>(::av_malloc(bufferSize)));
    m_bytes.reset(::avio_alloc_context(buffer, bufferSize, 0, m_input.get(), &Input::read, nullptr, &Input::seek));
    if (!m_bytes) {
        ::av_free(buffer);
        throw std::bad_alloc();
    }
    AVFormatContext* format = allocated(::avformat_alloc_context());
    format->pb = m_bytes.get();
    format->io_open = &refuseToOpen;
    AVDictionary* options = nullptr;
    ::av_dict_set(&options, "format_whitelist", demuxers, 0);
    ::av_dict_set(&options, "protocol_whitelist", "file", 0);
    // The name helps to recognise formats by their extension; it is not opened.
    const int error = ::avformat_open_input(&format, m_input->file().path().c_str(), nullptr, &options);
    ::av_dict_free(&options);
    m_format.reset(error < 0 ? nullptr : format); // a failure has freed it
    m_input->check();
    if (error < 0)
        throw UnreadableAudio("it is in no format that is read: " + reason(error));
}

void AudioFileReader::findStream() {
    const auto best = [this] { return ::av_find_best_stream(m_format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0); };
    // What the headers promise; looking further would fill it with guesses from the size of the file.
    std::vector<std::int64_t> promised;
    promised.reserve(m_format->nb_streams);
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        promised.push_back(m_format->streams[i]->duration);
    const std::int64_t whole = m_format->nb_streams == 1 ? m_format->duration : AV_NOPTS_VALUE;

    int index = best();
    if (index < 0) { // only then, as it decodes the beginning of every stream, pictures included
        ::avformat_find_stream_info(m_format.get(), nullptr);
        m_input->check();
        index = best();
    }
    if (index < 0)
        throw UnreadableAudio("it has no sound");
    for (unsigned i = 0; i < m_format->nb_streams; ++i)
        if (i != static_cast<unsigned>(index))
            m_format->streams[i]->discard = AVDISCARD_ALL;
    m_stream = m_format->streams[index];

    const std::string_view demuxer = m_format->iformat->name;
    if (demuxer == "ogg") // has only looked where the file ends
        return;
    const std::int64_t duration = static_cast<std::size_t>(index) < promised.size() ? promised[index] : AV_NOPTS_VALUE;
    if (duration > 0)
        m_declaredSeconds = static_cast<double>(duration) * ::av_q2d(m_stream->time_base);
    else if (whole > 0)
        m_declaredSeconds = static_cast<double>(whole) / AV_TIME_BASE;
    else if (demuxer == "wav")
        m_declaredSeconds = secondsOfCutWav(m_input->file());
}

void AudioFileReader::openDecoder() {
    const AVCodec* const decoder = ::avcodec_find_decoder(m_stream->codecpar->codec_id);
    if (!decoder)
        throw UnreadableAudio(std::string("there is no decoder for ") +
                              ::avcodec_get_name(m_stream->codecpar->codec_id));
    m_codec.reset(allocated(::avcodec_alloc_context3(decoder)));
    int error = ::avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar);
    m_codec->pkt_timebase = m_stream->time_base;
    m_codec->thread_count = 1; // more of them hand frames about for longer than they save
    if (error >= 0)
        error = ::avcodec_open2(m_codec.get(), decoder, nullptr);
    if (error < 0)
        throw UnreadableAudio("its decoder cannot be set up: " + reason(error));
}

AudioFrame AudioFileReader::next() {
    AudioFrame frame(allocated(::av_frame_alloc()));
    for (;;) {
        if (m_stop.stop_requested())
            throw Cancelled();
        const int result = ::avcodec_receive_frame(m_codec.get(), frame.get());
        if (result == AVERROR_EOF) {
            checkEnd();
            return {};
        }
        if (result == AVERROR(EAGAIN))
            feedDecoder();
        else if (result < 0)
            ++m_skippedPackets;
        else if (frame->nb_samples > 0 && frame->sample_rate > 0 && frame->ch_layout.nb_channels > 0) {
            note(*frame);
            return frame;
        }
    }
}

/// Gives the decoder the stream's next packet, or at the end of the file the order to hand out the rest.
void AudioFileReader::feedDecoder() {
    const bool more = readPacket();
    const int error = ::avcodec_send_packet(m_codec.get(), more ? m_packet.get() : nullptr);
    ::av_packet_unref(m_packet.get());
    if (more && error < 0)
        ++m_skippedPackets;
}

bool AudioFileReader::readPacket() {
    for (;;) {
        const int error = ::av_read_frame(m_format.get(), m_packet.get());
        m_input->check();
        if (error == AVERROR_EOF)
            return false;
        if (error >= 0 && m_packet->stream_index == m_stream->index)
            return true;
        ::av_packet_unref(m_packet.get());
        if (error >= 0)
            continue;
        // A demuxer goes on behind damage as long as it gets ahead.
        const std::int64_t position = ::avio_tell(m_bytes.get());
        if (position <= m_lastBadPosition)
            throw UnreadableAudio("it is damaged: " + reason(error));
        m_lastBadPosition = position;
        ++m_skippedPackets;
    }
}

void AudioFileReader::note(const AVFrame& frame) {
    const double seconds = static_cast<double>(frame.nb_samples) / frame.sample_rate;
    m_decodedSeconds += seconds;
    m_secondsOfPacket = std::max(m_secondsOfPacket, seconds);
    if (frame.best_effort_timestamp != AV_NOPTS_VALUE) {
        const std::int64_t start = m_stream->start_time == AV_NOPTS_VALUE ? 0 : m_stream->start_time;
        const auto ticks = static_cast<double>(frame.best_effort_timestamp - start);
        m_lastSeconds = std::max(m_lastSeconds, ticks * ::av_q2d(m_stream->time_base) + seconds);
    }
}

void AudioFileReader::checkEnd() const {
    if (m_decodedSeconds == 0 && m_skippedPackets > 0)
        throw UnreadableAudio("nothing of it can be decoded");
    if (!m_declaredSeconds)
        return;
    const double reached = std::max(m_decodedSeconds, m_lastSeconds);
    const double skipped = static_cast<double>(m_skippedPackets) * m_secondsOfPacket;
    if (reached + skipped < *m_declaredSeconds * 0.999 - 0.5) {
        char text[120];
        std::snprintf(text, sizeof text, "it ends after %.1f s of the %.1f s that its header tells of", reached,
                      *m_declaredSeconds);
        throw UnreadableAudio(text);
    }
}

double AudioFileReader::progress() const {
    const auto size = static_cast<double>(m_input->file().size());
    return size > 0 ? std::clamp(static_cast<double>(::avio_tell(m_bytes.get())) / size, 0.0, 1.0) : 1.0;
}

bool AudioFileReader::isFile(const struct stat& other) const {
    const struct stat& own = m_input->file().status();
    return own.st_dev == other.st_dev && own.st_ino == other.st_ino;
}

} // namespace varnet
