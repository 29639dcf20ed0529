#pragma once

#include "engine/Words.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct fe_s;

namespace engine {

/// What tells one voice from another in a piece of speech: the mean of its voiced frames' cepstra (the shape of the
/// vocal tract and the microphone) and its median pitch. Independent of the level.
struct VoicePrint {
    static constexpr std::size_t dimensions = 19;

    std::array<double, dimensions> cepstrum{}; ///< mean of the coefficients 1 to 19 over the voiced frames
    double pitch = 0;                          ///< median of the natural logarithm of the pitch in Hz
    int frames = 0;                            ///< voiced frames of 10 ms behind it; 0: nothing could be measured

    bool operator==(const VoicePrint&) const = default;
};

/// Measures voice prints. One object belongs to one thread at a time.
class VoiceAnalyzer {
public:
    VoiceAnalyzer();

    VoicePrint measure(std::span<const std::int16_t> samples);

private:
    std::vector<std::array<double, VoicePrint::dimensions>> cepstra(std::span<const std::int16_t> samples);

    struct Release {
        void operator()(fe_s* frontEnd) const;
    };
    std::unique_ptr<fe_s, Release> m_frontEnd;
};

} // namespace engine
