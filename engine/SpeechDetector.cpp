#include "engine/SpeechDetector.h"

#include <algorithm>
#include <cmath>

namespace engine {
namespace {

constexpr double startAbove = 12; // dB over the background
constexpr double stayAbove = 9;
constexpr double quietest = -66; // dB of full scale: below it nothing is speech
constexpr double loudestBackground = -30;
constexpr double firstBackground = -50;

} // namespace

SpeechDetector::SpeechDetector() {
    m_minima.fill(loudestBackground);
}

bool SpeechDetector::isSpeech(std::span<const std::int16_t, frameSamples> frame) {
    const double now = level(frame);
    // A recording that begins with speech must not take it for the background.
    m_smoothed = m_frame == 0 ? std::min(now, firstBackground) : m_smoothed + 0.2 * (now - m_smoothed);
    followBackground(m_smoothed);
    const double background = *std::min_element(m_minima.begin(), m_minima.end());
    m_speech = now > std::max(background + (m_speech ? stayAbove : startAbove), quietest);
    return m_speech;
}

double SpeechDetector::level(std::span<const std::int16_t, frameSamples> frame) {
    double energy = 0;
    for (const std::int16_t sample : frame) {
        m_lastOutput = sample - m_lastInput + 0.96 * m_lastOutput;
        m_lastInput = sample;
        energy += m_lastOutput * m_lastOutput;
    }
    return 10 * std::log10(energy / frameSamples / (32768.0 * 32768.0) + 1e-9);
}

void SpeechDetector::followBackground(double smoothed) {
    const int position = m_frame % (windowFrames * windows);
    double& minimum = m_minima[static_cast<std::size_t>(position / windowFrames)];
    minimum = position % windowFrames == 0 ? std::min(smoothed, loudestBackground) : std::min(minimum, smoothed);
    ++m_frame;
}

} // namespace engine
