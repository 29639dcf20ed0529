#include "MeetingCore/base/Json.h"

#include "MeetingCore/base/Assert.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

namespace varnet {

namespace {

constexpr std::size_t blockBytes = sizeof(std::uint64_t);
constexpr std::size_t longestEscape = 6;
constexpr std::size_t longestNumber = 32;
constexpr std::size_t quotes = 2;
constexpr std::size_t keyEnd = 2;
/// For a block, of which only some bytes may stay, and an escape in place of one byte.
constexpr std::size_t slack = blockBytes + longestEscape;

/// The most that stands before an element at that depth.
constexpr std::size_t elementStart(std::size_t depth) {
    return 2 + 2 * depth;
}

char* writeBytes(char* out, std::string_view bytes) {
    return std::ranges::copy(bytes, out).out;
}

/// How many of the block's first bytes are ASCII and stand in a document as they are.
std::size_t plainBytes(std::uint64_t block) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::uint64_t ones = 0x0101010101010101U;
    constexpr std::uint64_t tops = 0x80 * ones;
    // A subtraction sets the top bit of a byte that was less; what it borrows only spoils the bytes behind.
    const std::uint64_t quote = block ^ ('"' * ones);
    const std::uint64_t backslash = block ^ ('\\' * ones);
    const std::uint64_t special = (block | (block - 0x20 * ones) | (quote - ones) | (backslash - ones)) & tops;
    return special == 0 ? blockBytes : static_cast<std::size_t>(std::countr_zero(special)) / 8;
}

bool isPlain(char c) {
    return U8_IS_SINGLE(c) && c >= 0x20 && c != '"' && c != '\\';
}

char* writeEscaped(char* out, char c) {
    static constexpr char digits[] = "0123456789abcdef";
    static constexpr std::string_view named = "\"\\\n\r\t";
    *out++ = '\\';
    if (const std::size_t index = named.find(c); index != std::string_view::npos) {
        *out++ = "\"\\nrt"[index];
        return out;
    }
    for (const char digit : {'u', '0', '0', digits[c >> 4], digits[c & 0x0F]})
        *out++ = digit;
    return out;
}

template <class Number>
char* writeNumber(char* out, Number value) {
    const auto [end, error] = std::to_chars(out, out + longestNumber, value);
    VARNET_ASSERT(error == std::errc());
    return end;
}

/// Writes a number of hundredths, as recognisers give times in; they need no search for the shortest text. Null for
/// any other number.
char* writeHundredths(char* out, double value) {
    constexpr double limit = 1e5; // powers of ten from here on are shorter with an exponent
    if (std::signbit(value) || value >= limit)
        return nullptr;
    const std::int64_t hundredths = std::llround(value * 100);
    if (static_cast<double>(hundredths) / 100 != value)
        return nullptr;
    out = writeNumber(out, hundredths / 100);
    if (const auto rest = static_cast<char>(hundredths % 100); rest != 0) {
        *out++ = '.';
        *out++ = static_cast<char>('0' + rest / 10);
        if (rest % 10 != 0)
            *out++ = static_cast<char>('0' + rest % 10);
    }
    return out;
}

} // namespace

JsonFailure::JsonFailure(std::string_view detail)
    : Failure("The data is not valid: " + std::string(detail) + (detail.ends_with('.') ? "" : ".")) {}

void JsonWriter::key(std::string_view name) {
    element();
    text(name);
    wrote(writeBytes(room(keyEnd), m_pretty ? ": " : ":"));
}

void JsonWriter::plainKey(std::string_view name) {
    char* out = writeNextElement(room(elementStart(m_depth) + name.size() + quotes + keyEnd));
    *out++ = '"';
    out = writeBytes(out, name);
    wrote(writeBytes(out, m_pretty ? "\": " : "\":"));
}

void JsonWriter::element() {
    wrote(writeNextElement(room(elementStart(m_depth))));
}

void JsonWriter::text(std::string_view value) {
    char* out = room(value.size() + quotes + slack);
    *out++ = '"';
    std::size_t at = 0;
    while (true) {
        while (value.size() - at >= blockBytes) {
            std::uint64_t block = 0;
            std::memcpy(&block, value.data() + at, blockBytes);
            std::memcpy(out, &block, blockBytes);
            const std::size_t plain = plainBytes(block);
            at += plain;
            out += plain;
            if (plain < blockBytes)
                break;
        }
        while (at < value.size() && isPlain(value[at]))
            *out++ = value[at++];
        if (at == value.size())
            break;
        const std::size_t special = at;
        UChar32 character = 0;
        U8_NEXT(value.data(), at, value.size(), character);
        if (character >= 0x80) {
            out = writeBytes(out, value.substr(special, at - special));
            continue;
        }
        out = character < 0 ? writeBytes(out, "\uFFFD") : writeEscaped(out, static_cast<char>(character));
        wrote(out); // it may have become longer
        out = room(value.size() - at + quotes + slack);
    }
    *out++ = '"';
    wrote(out);
}

void JsonWriter::plainText(std::string_view value) {
    char* out = room(value.size() + quotes);
    *out++ = '"';
    out = writeBytes(out, value);
    *out++ = '"';
    wrote(out);
}

void JsonWriter::number(double value) {
    VARNET_ASSERT(std::isfinite(value));
    char* const begin = room(longestNumber);
    const char* const end = writeHundredths(begin, value);
    wrote(end != nullptr ? end : writeNumber(begin, value));
}

void JsonWriter::integer(std::int64_t value) {
    wrote(writeNumber(room(longestNumber), value));
}

void JsonWriter::boolean(bool value) {
    const std::string_view text = value ? "true" : "false";
    wrote(writeBytes(room(text.size()), text));
}

std::string JsonWriter::takePart() {
    m_buffer.resize(std::exchange(m_size, 0));
    return std::exchange(m_buffer, {});
}

std::string JsonWriter::finish() {
    VARNET_ASSERT(m_depth == 0);
    wrote(writeNewLine(room(elementStart(m_depth))));
    return takePart();
}

void JsonWriter::open(char bracket) {
    char* out = room(1);
    *out++ = bracket;
    wrote(out);
    ++m_depth;
    m_empty = true;
}

void JsonWriter::close(char bracket) {
    --m_depth;
    char* out = room(elementStart(m_depth) + 1);
    if (!m_empty)
        out = writeNewLine(out);
    *out++ = bracket;
    wrote(out);
    m_empty = false;
}

char* JsonWriter::writeNextElement(char* out) {
    if (!m_empty)
        *out++ = ',';
    m_empty = false;
    return writeNewLine(out);
}

char* JsonWriter::writeNewLine(char* out) const {
    if (!m_pretty)
        return out;
    *out++ = '\n';
    return std::ranges::fill_n(out, static_cast<std::ptrdiff_t>(2 * m_depth), ' ');
}

char* JsonWriter::room(std::size_t bytes) {
    if (m_buffer.size() - m_size < bytes)
        m_buffer.resize(2 * (m_size + bytes));
    return m_buffer.data() + m_size;
}

} // namespace varnet
