#include "Varnet/platform/Clock.h"

#include <ctime>

namespace varnet {

namespace {

std::int64_t nanoseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

} // namespace

std::int64_t monotonicNanoseconds() {
    return nanoseconds(CLOCK_MONOTONIC);
}

std::int64_t continuousNanoseconds() {
    return nanoseconds(CLOCK_BOOTTIME);
}

} // namespace varnet
