#pragma once

#include <optional>
#include <string>
#include <vector>

namespace engine {

/// Audio everywhere in this program: mono, 16-bit signed, this many samples a second.
inline constexpr int sampleRate = 16000;
/// The step of all analysis: 10 ms.
inline constexpr int frameSamples = 160;
inline constexpr double frameSeconds = 0.01;

/// One recognised word. Times are seconds from the start of the audio that was given.
struct Word {
    std::string text;
    double start = 0;
    double end = 0;
    std::optional<int> speaker; ///< 0 to 7; absent before it is known, and when speakers are not asked for

    bool operator==(const Word&) const = default;
};

/// The words with a blank between them.
std::string joined(const std::vector<Word>& words);

} // namespace engine
