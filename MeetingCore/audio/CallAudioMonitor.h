#pragma once

#include <optional>

namespace varnet {

/// Tells when the user has been heard but the call has stayed silent for `window` seconds, so that the call's sound
/// may not be reaching the recording. Levels are RMS values, times are seconds since the start of the recording.
struct CallAudioMonitor {
    explicit CallAudioMonitor(double windowSeconds) : window(windowSeconds) {}

    float speechLevel = 0.01F; ///< a microphone level from here on is the user speaking
    float soundLevel = 0.002F; ///< a call level from here on is sound from the call
    double window;
    bool callMissing = false;
    std::optional<double> firstSpeech;
    std::optional<double> lastCallSound;

    /// Takes the levels of one moment; returns the new `callMissing`. The count runs from the user's first word or the
    /// call's last sound, whichever is later.
    bool observe(float microphone, float call, double time);
};

} // namespace varnet
