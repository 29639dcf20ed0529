#include "Varnet/async/Sleep.h"

#include "Varnet/async/Wait.h"

#include <algorithm>

namespace varnet {

Task<bool> sleepFor(std::chrono::nanoseconds duration, std::stop_token stop) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    // Timers count whole milliseconds and at most some days, so what is left is asked again.
    for (auto left = duration; left.count() > 0 && !stop.stop_requested(); left = duration - (Clock::now() - start)) {
        const std::chrono::nanoseconds part = std::min<std::chrono::nanoseconds>(left, std::chrono::hours(24));
        co_await Wait::ended(std::make_shared<Wait>(), part, stop);
    }
    co_return !stop.stop_requested();
}

} // namespace varnet
