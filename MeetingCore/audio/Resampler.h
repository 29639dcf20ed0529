#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace varnet {

/// Turns one uninterrupted stretch of interleaved 32-bit float samples of any rate and channel count into mono at
/// 16,000 frames a second. Channels are averaged; non-finite samples become 0. Up to 6.7 kHz (for slower input 0.42 of
/// its rate) the signal passes with more than 130 dB to the noise; from 8.5 kHz on it is more than 120 dB down, so that
/// nothing folds back into speech.
///
/// Output frame 0 lies exactly at input frame 0; the filter's look ahead shows only as `pendingFrames`. Output comes in
/// a steady flow. Before and after the stretch is silence. One object is used by one thread at a time.
class Resampler {
public:
    static constexpr int outputRate = 16'000;
    static constexpr int maximumRate = 768'000;

    /// Rate and channel count are above 0, the rate at most `maximumRate`; otherwise the program ends.
    Resampler(int sampleRate, int channelCount);

    /// Takes whole frames and returns what is ready, which may be nothing.
    std::vector<float> convert(std::span<const float> samples);

    /// Returns the output that the input so far still owes. Nothing can be converted after it.
    std::vector<float> finish();

    /// How many output frames the input so far still owes, with its fraction.
    double pendingFrames() const;

    /// From now on makes `correction` more output for the same input: 0.0001 is 100 ppm more, negative values make
    /// less. Limited to a hundredth. The pitch follows; nothing is dropped or doubled. The first one that is not 0
    /// costs some milliseconds for its filters.
    void setCorrection(double correction);

private:
    void makeFilters(int phaseBits);
    std::vector<float> run(std::size_t most);

    int m_sampleRate;
    std::size_t m_channelCount;
    std::size_t m_tapCount;

    // Positions are fixed-point: `m_unit` is one input sample.
    std::int64_t m_unit;
    std::int64_t m_exactStep; ///< from one output frame to the next
    std::int64_t m_step;      ///< the same, corrected
    std::int64_t m_fraction = 0;

    int m_phaseBits = 0;          ///< two phases lie 2 to the power of it apart
    std::vector<float> m_filters; ///< one for each phase of a sample, and the first one of the next
    std::vector<float> m_input;   ///< from the first sample that the next output needs
};

} // namespace varnet
