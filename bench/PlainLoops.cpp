#include "bench/PlainLoops.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace varnet::plain {

std::vector<std::byte> pcm(std::span<const float> samples) {
    std::vector<std::byte> bytes(samples.size() * 2);
    auto* target = reinterpret_cast<std::int16_t*>(bytes.data());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double finite = std::isfinite(samples[i]) ? static_cast<double>(samples[i]) : 0.0;
        target[i] = static_cast<std::int16_t>(std::clamp(finite * 32767.0, -32768.0, 32767.0));
    }
    return bytes;
}

float rmsLevel(std::span<const float> samples) {
    float sum = 0;
    for (const float sample : samples)
        if (std::isfinite(sample))
            sum += sample * sample;
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<float>(samples.size()));
}

} // namespace varnet::plain
