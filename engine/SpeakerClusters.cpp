#include "engine/SpeakerClusters.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace engine {
namespace {

// How much a voice's own pieces scatter around its mean, measured on synthetic voices.
constexpr std::array<double, VoicePrint::dimensions> cepstrumScatter = {
    1.15, 1.00, 1.05, 0.71, 0.45, 0.50, 0.37, 0.37, 0.32, 0.25, 0.23, 0.23, 0.18, 0.15, 0.16, 0.15, 0.14, 0.12, 0.11};
constexpr double pitchScatter = 0.12;
constexpr double pitchWeight = 0.3;

// In units of that scatter, squared. A voice's own pieces stay below 5 from a second on and below 2 from two seconds
// on; other voices are above 10 in quiet and above 5 in noise.
constexpr double newVoiceDistance = 4.8;
constexpr double newVoiceDistanceFrames = 100; // divided by the piece's frames and added
constexpr double joinDistance = 3.5;
constexpr int newVoiceFrames = 60;
constexpr int longestMemory = 6000; // voiced frames; older pieces fade, so that a mean follows a moving speaker
constexpr int refinements = 4;

double squared(double value) {
    return value * value;
}

} // namespace

void SpeakerClusters::Voice::add(const VoicePrint& print) {
    const int total = mean.frames + print.frames;
    if (total == 0)
        return;
    const double share = static_cast<double>(print.frames) / total;
    for (std::size_t i = 0; i < VoicePrint::dimensions; ++i)
        mean.cepstrum[i] += share * (print.cepstrum[i] - mean.cepstrum[i]);
    mean.pitch += share * (print.pitch - mean.pitch);
    mean.frames = std::min(total, longestMemory);
}

double SpeakerClusters::distance(const VoicePrint& a, const VoicePrint& b) {
    double sum = 0;
    for (std::size_t i = 0; i < VoicePrint::dimensions; ++i)
        sum += squared((a.cepstrum[i] - b.cepstrum[i]) / cepstrumScatter[i]);
    return sum / VoicePrint::dimensions + pitchWeight * squared((a.pitch - b.pitch) / pitchScatter);
}

int SpeakerClusters::nearest(const std::vector<Voice>& voices, const VoicePrint& print) {
    const auto closer = [&](const Voice& a, const Voice& b) {
        return distance(a.mean, print) < distance(b.mean, print);
    };
    return static_cast<int>(std::min_element(voices.begin(), voices.end(), closer) - voices.begin());
}

int SpeakerClusters::assign(const VoicePrint& print) {
    int speaker = m_assigned.empty() ? 0 : m_assigned.back(); // what can't be measured goes on with who spoke last
    if (m_voices.empty()) {
        m_voices.emplace_back();
    } else if (print.frames > 0) {
        speaker = nearest(m_voices, print);
        const bool strange = distance(m_voices[static_cast<std::size_t>(speaker)].mean, print) >
                             newVoiceDistance + newVoiceDistanceFrames / print.frames;
        if (strange && print.frames >= newVoiceFrames && m_voices.size() < maximumSpeakers) {
            speaker = static_cast<int>(m_voices.size());
            m_voices.emplace_back();
        }
    }
    m_voices[static_cast<std::size_t>(speaker)].add(print);
    m_prints.push_back(print);
    m_assigned.push_back(speaker);
    return speaker;
}

void SpeakerClusters::joinNearVoices(std::vector<Voice>& voices) const {
    for (;;) {
        std::size_t first = 0, second = 0;
        double least = joinDistance;
        for (std::size_t a = 0; a < voices.size(); ++a) {
            for (std::size_t b = a + 1; b < voices.size(); ++b) {
                if (const double apart = distance(voices[a].mean, voices[b].mean); apart < least) {
                    least = apart;
                    first = a;
                    second = b;
                }
            }
        }
        if (first == second)
            return;
        voices[first].add(voices[second].mean);
        voices.erase(voices.begin() + static_cast<std::ptrdiff_t>(second));
    }
}

std::vector<int> SpeakerClusters::reassign() const {
    std::vector<Voice> voices = m_voices;
    std::vector<int> labels = m_assigned;
    for (int round = 0; round < refinements; ++round) {
        joinNearVoices(voices);
        std::vector<Voice> refined(voices.size());
        for (std::size_t i = 0; i < m_prints.size(); ++i) {
            if (m_prints[i].frames > 0)
                labels[i] = nearest(voices, m_prints[i]);
            else
                labels[i] = i > 0 ? labels[i - 1] : 0;
            refined[static_cast<std::size_t>(labels[i])].add(m_prints[i]);
        }
        std::erase_if(refined, [](const Voice& voice) { return voice.mean.frames == 0; });
        if (!refined.empty())
            voices = std::move(refined);
    }
    std::map<int, int> numbers;
    for (int& label : labels)
        label = numbers.emplace(label, static_cast<int>(numbers.size())).first->second;
    return labels;
}

} // namespace engine
