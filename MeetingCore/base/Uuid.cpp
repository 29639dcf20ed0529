#include "MeetingCore/base/Uuid.h"

#include "MeetingCore/base/Assert.h"

#include <sys/random.h>

#include <cerrno>
#include <cstring>

namespace varnet {

namespace {

/// Where in the canonical text the digits of each byte stand.
constexpr std::array<std::size_t, 16> digitsOfBytes{0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};

/// Values of hexadecimal digits by character; other characters have bits above 0x0F.
constexpr auto digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(0xFF);
    for (std::uint8_t value = 0; value < 16; ++value) {
        values[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] = value;
    }
    return values;
}();

} // namespace

Uuid Uuid::random() {
    Uuid id;
    std::size_t filled = 0;
    while (filled < id.bytes.size()) {
        const ssize_t got = getrandom(id.bytes.data() + filled, id.bytes.size() - filled, 0);
        VARNET_ASSERT(got > 0 || errno == EINTR);
        filled += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40); // version 4
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80); // RFC 9562 variant
    return id;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' || text[23] != '-')
        return std::nullopt;
    std::optional<Uuid> id(std::in_place);
    unsigned wrong = 0;
    for (std::size_t index = 0; index < digitsOfBytes.size(); ++index) {
        const std::size_t at = digitsOfBytes[index];
        const unsigned high = digitValues[static_cast<unsigned char>(text[at])];
        const unsigned low = digitValues[static_cast<unsigned char>(text[at + 1])];
        wrong |= high | low;
        id->bytes[index] = static_cast<std::uint8_t>(high << 4 | low);
    }
    if (wrong > 0x0F)
        id.reset();
    return id;
}

std::string Uuid::text() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text(36, '-');
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        text[digitsOfBytes[index]] = digits[bytes[index] >> 4];
        text[digitsOfBytes[index] + 1] = digits[bytes[index] & 0x0F];
    }
    return text;
}

} // namespace varnet

std::size_t std::hash<varnet::Uuid>::operator()(const varnet::Uuid& id) const noexcept {
    std::size_t value = 0;
    std::memcpy(&value, id.bytes.data(), sizeof value); // the bytes are random already
    return value;
}
