#pragma once

#include <cstddef>
#include <span>
#include <vector>

/// The yardsticks of the audio loops: the same work written down plainly, compiled without vectorisation.
namespace varnet::plain {

std::vector<std::byte> pcm(std::span<const float> samples);
float rmsLevel(std::span<const float> samples);

} // namespace varnet::plain
