#pragma once

#include <span>

namespace varnet {

/// Root mean square of a block, in 32-bit float and in array order. Non-finite samples add nothing but count in the
/// divisor; an empty block gives 0.
float rmsLevel(std::span<const float> samples);

} // namespace varnet
