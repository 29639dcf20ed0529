#pragma once

#include <cstdint>
#include <memory>
#include <vector>

struct AVFrame;
struct SwrContext;

namespace varnet {

/// Brings the decoded audio of a whole file to mono at 16,000 frames a second in 16 bits. Channels are mixed by what
/// their places in the room are worth, or evenly where nothing tells their places, and never louder together than the
/// loudest can be alone. What lies above 8 kHz is more than 120 dB down. Audio that is in the format already passes
/// bit by bit.
///
/// Delivers in bursts, so it is for files and not for a capture. One object is used by one thread at a time. Throws
/// UnreadableAudio for a format that cannot be converted.
class MonoResampler {
public:
    static constexpr int outputRate = 16'000;

    /// Appends what is ready to `samples`. A frame in another format than the last one ends its stretch and begins a
    /// new one.
    void convert(const AVFrame& frame, std::vector<std::int16_t>& samples);

    /// Appends what the frames so far still owe.
    void finish(std::vector<std::int16_t>& samples);

private:
    struct Deleter {
        void operator()(SwrContext* context) const;
    };

    void begin(const AVFrame& frame);
    void run(const std::uint8_t* const* planes, int frameCount, std::vector<std::int16_t>& samples);

    std::unique_ptr<SwrContext, Deleter> m_context;
    int m_sampleFormat = -1;
    int m_rate = 0;
    int m_channelCount = 0;
    std::uint64_t m_places = 0; ///< which channel stands where, as a mask; 0 where nothing tells
};

} // namespace varnet
