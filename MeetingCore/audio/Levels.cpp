#include "MeetingCore/audio/Levels.h"

#include <cmath>

namespace varnet {

float rmsLevel(std::span<const float> samples) {
    if (samples.empty())
        return 0;
    float sum = 0;
    for (const float sample : samples) {
        // A statement of its own, so that no compiler contracts it with the addition.
        const float square = std::isfinite(sample) ? sample * sample : 0.0F;
        sum += square;
    }
    return std::sqrt(sum / static_cast<float>(samples.size()));
}

} // namespace varnet
