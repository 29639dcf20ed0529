#include "MeetingCore/base/Date.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace varnet {

Date Date::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return fromUnix(std::chrono::duration<double>(sinceEpoch).count());
}

std::string Date::iso8601() const {
    using namespace std::chrono;
    constexpr double first = sys_seconds(sys_days(year(1) / January / 1)).time_since_epoch().count();
    constexpr double last = sys_seconds(sys_days(year(9999) / December / 31) + days(1)).time_since_epoch().count() - 1;
    const double whole = std::fmin(std::fmax(std::floor(toUnix()), first), last); // not NaN either
    const sys_seconds instant{seconds(static_cast<std::int64_t>(whole))};
    const auto midnight = floor<days>(instant);
    const year_month_day day(midnight);
    const hh_mm_ss time(instant - midnight);
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(day.year()),
                  static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text;
}

} // namespace varnet
