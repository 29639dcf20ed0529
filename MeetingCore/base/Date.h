#pragma once

#include <compare>
#include <string>

namespace varnet {

/// An instant: seconds since 2001-01-01T00:00:00Z, which is also how dates stand in every JSON file.
struct Date {
    double secondsSinceReference = 0;

    /// Seconds between 1970-01-01T00:00:00Z and the reference instant.
    static constexpr double unixOffset = 978307200;

    static Date now();
    static constexpr Date fromUnix(double seconds) { return {seconds - unixOffset}; }
    constexpr double toUnix() const { return secondsSinceReference + unixOffset; }

    /// ISO 8601 in UTC to the second that has begun: "2026-03-05T14:30:00Z". What is not in the years 1 to 9999 gives
    /// their nearest second, what is not a number their first.
    std::string iso8601() const;

    auto operator<=>(const Date&) const = default;
};

} // namespace varnet
