#pragma once

#include "engine/Words.h"

#include <array>
#include <cstdint>
#include <span>

namespace engine {

/// Tells speech from silence, 10 ms at a time, by the level above the background, which it follows: the quietest
/// tenth of a second within the last seconds. Works at any recording level down to digital silence.
class SpeechDetector {
public:
    SpeechDetector();

    /// Judges the next frame.
    bool isSpeech(std::span<const std::int16_t, frameSamples> frame);

private:
    double level(std::span<const std::int16_t, frameSamples> frame);
    void followBackground(double smoothed);

    static constexpr int windowFrames = 50;
    static constexpr int windows = 16;

    double m_lastInput = 0, m_lastOutput = 0; // of the filter that takes hum and offset away
    double m_smoothed = 0;
    std::array<double, windows> m_minima;
    int m_frame = 0;
    bool m_speech = false;
};

} // namespace engine
