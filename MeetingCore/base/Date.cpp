#include "MeetingCore/base/Date.h"

#include <chrono>

namespace varnet {

Date Date::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return fromUnix(std::chrono::duration<double>(sinceEpoch).count());
}

} // namespace varnet
