#pragma once

namespace varnet {

/// Keeps a source that runs on its own hardware clock at the pace of the recording's clock: from the distance between
/// the two it works out by how much the sample rate conversion must be corrected. It settles within seconds without
/// overshooting, and a steady skew of 100 ppm leaves it less than half a frame behind at the worst moment.
class ClockFollower {
public:
    /// `behind` is how many output frames the samples are behind the clock, `seconds` the length of the audio until the
    /// next call. Returns the correction for that audio as Resampler takes it, at most half a percent.
    double correction(double behind, double seconds);

private:
    double m_skew = 0; ///< learnt difference of the clocks, output frames a second
};

} // namespace varnet
