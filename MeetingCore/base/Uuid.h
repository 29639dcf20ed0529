#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace varnet {

/// A 128-bit identifier (RFC 9562). Its text is canonical: upper case with hyphens. The default value is all zeros.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A fresh version 4 identifier from the system's random source. Any thread.
    static Uuid random();

    /// Reads the 36-character hyphenated form in either case; absent for anything else.
    static std::optional<Uuid> parse(std::string_view text);

    /// Upper-case hyphenated text, such as 1B4E28BA-2FA1-41D2-883F-2A5C8F3D9E11.
    std::string text() const;

    auto operator<=>(const Uuid&) const = default;
};

} // namespace varnet

template <>
struct std::hash<varnet::Uuid> {
    std::size_t operator()(const varnet::Uuid& id) const noexcept;
};
