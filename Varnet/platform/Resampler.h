#pragma once

#include <memory>
#include <span>
#include <vector>

struct SwrContext;

namespace varnet {

/// Turns one uninterrupted stretch of interleaved 32-bit float samples of any rate and channel count into mono at
/// 16,000 frames a second. Channels are averaged. Signal to noise is above 130 dB and what lies from 8.5 kHz on is
/// below -120 dB, so that nothing folds back into speech.
///
/// Output frame 0 lies exactly at input frame 0: the filter's delay shows only as `pendingFrames`. Output comes in a
/// steady flow. One object is used by one thread at a time. Failures are Failure.
class Resampler {
public:
    static constexpr int outputRate = 16'000;

    /// Rate and channel count must be above 0. Throws if the platform has no converter for them.
    Resampler(int sampleRate, int channelCount);

    /// Takes whole frames and returns what is ready, which may be nothing.
    std::vector<float> convert(std::span<const float> samples);

    /// Returns the output that the input so far still owes. Nothing can be converted after it.
    std::vector<float> finish();

    /// How many output frames the input so far still owes, with its fraction.
    double pendingFrames() const;

    /// From now on makes `correction` more output for the same input: 0.0001 is 100 ppm more, negative values make
    /// less. Limited to a hundredth. The pitch follows; nothing is dropped or doubled.
    void setCorrection(double correction);

private:
    std::vector<float> run(std::span<const float> mono);

    struct Free {
        void operator()(SwrContext* context) const;
    };
    int m_sampleRate;
    std::size_t m_channelCount;
    std::unique_ptr<SwrContext, Free> m_context;
    std::vector<float> m_mono; ///< kept between calls for its memory
    bool m_corrected = false;
};

} // namespace varnet
