#pragma once

#include <cstdint>

namespace varnet {

/// Nanoseconds of CLOCK_MONOTONIC, the clock that capture buffers are stamped with. Any thread, also a real-time one.
std::int64_t monotonicNanoseconds();

/// Nanoseconds of CLOCK_BOOTTIME, which goes on while the machine sleeps. Any thread.
std::int64_t continuousNanoseconds();

} // namespace varnet
