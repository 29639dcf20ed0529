#pragma once

#include "MeetingCore/base/Failures.h"

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct AVStream;

namespace varnet {

struct MediaDeleter {
    void operator()(AVCodecContext* codec) const;
    void operator()(AVFormatContext* format) const;
    void operator()(AVFrame* frame) const;
    void operator()(AVIOContext* input) const;
    void operator()(AVPacket* packet) const;
};

/// A stretch of decoded audio; its rate, sample format and channels are its own and may differ from the last one's.
using AudioFrame = std::unique_ptr<AVFrame, MediaDeleter>;

/// Why a file gives no audio, in words for the log.
class UnreadableAudio : public Failure {
public:
    using Failure::Failure;
};

/// Decodes the first (or best) audio stream of a media file.
///
/// Only the file itself is ever read: it is opened here and handed to the demuxer as bytes, demuxers of playlists,
/// scripts, devices and networks are refused, and so is every other file or address that a demuxer asks for. Priming
/// and padding that the container tells of are left out.
///
/// What is damaged: packets that cannot be decoded are skipped, as players do, but a file of which nothing can be
/// decoded is an UnreadableAudio. So is one that holds clearly less (half a second and a thousandth) than its own
/// header promises, or that became shorter while it was read: somebody would miss the end. A file that is cut where
/// nothing tells how long it was (a constant-rate MP3, an Ogg) just ends.
///
/// One object is used by one thread at a time. Every operation throws FileFailure when the file cannot be read,
/// UnreadableAudio, and Cancelled soon after `stop` was requested.
class AudioFileReader {
public:
    explicit AudioFileReader(const std::filesystem::path& path, std::stop_token stop = {});
    ~AudioFileReader();
    AudioFileReader(const AudioFileReader&) = delete;
    AudioFileReader& operator=(const AudioFileReader&) = delete;

    /// The next stretch of audio, never an empty one; null at the end.
    AudioFrame next();

    /// Seconds of audio that the header promises; absent where it says nothing.
    std::optional<double> declaredSeconds() const { return m_declaredSeconds; }

    /// How far in the file, 0 to 1, the demuxer is. May step back.
    double progress() const;

    /// Whether this is what stands open here, whatever its name.
    bool isFile(const struct stat& other) const;

private:
    class Input;

    void openContainer();
    void findStream();
    void openDecoder();
    bool readPacket();
    void feedDecoder();
    void checkEnd() const;
    void note(const AVFrame& frame);

    std::stop_token m_stop;
    std::unique_ptr<Input> m_input;
    std::unique_ptr<AVIOContext, MediaDeleter> m_bytes;
    std::unique_ptr<AVFormatContext, MediaDeleter> m_format;
    std::unique_ptr<AVCodecContext, MediaDeleter> m_codec;
    std::unique_ptr<AVPacket, MediaDeleter> m_packet;
    AVStream* m_stream = nullptr;
    std::optional<double> m_declaredSeconds;
    double m_decodedSeconds = 0;  ///< as many as were handed out
    double m_lastSeconds = 0;     ///< where the last stretch ended, by its own timestamp
    double m_secondsOfPacket = 0; ///< what a skipped packet has probably held
    std::uint64_t m_skippedPackets = 0;
    std::int64_t m_lastBadPosition = -1;
};

} // namespace varnet
