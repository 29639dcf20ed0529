#include "MeetingCore/base/Json.h"

#include "MeetingCore/base/Assert.h"

#include <unicode/utf8.h>

#include <charconv>
#include <cmath>
#include <utility>

namespace varnet {

namespace {

bool isPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x80 && c != '"' && c != '\\';
}

void appendEscaped(std::string& out, char c) {
    static constexpr char digits[] = "0123456789abcdef";
    switch (c) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\u00";
        out += digits[c >> 4];
        out += digits[c & 0x0F];
    }
}

void appendString(std::string& out, std::string_view text) {
    out += '"';
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t begin = at;
        while (at < text.size() && isPlain(text[at]))
            ++at;
        out += text.substr(begin, at - begin);
        if (at == text.size())
            break;
        const std::size_t special = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, text.size(), character);
        if (character < 0)
            out += "\uFFFD";
        else if (character < 0x80)
            appendEscaped(out, static_cast<char>(character));
        else
            out += text.substr(special, at - special);
    }
    out += '"';
}

template <class Number>
void appendNumber(std::string& out, Number value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    VARNET_ASSERT(error == std::errc());
    out.append(text, end);
}

} // namespace

JsonFailure::JsonFailure(std::string_view detail) : Failure("The data is not valid: " + std::string(detail) + ".") {}

void JsonWriter::key(std::string_view name) {
    element();
    appendString(m_out, name);
    m_out += m_pretty ? ": " : ":";
}

void JsonWriter::element() {
    if (!m_empty)
        m_out += ',';
    m_empty = false;
    newLine();
}

void JsonWriter::text(std::string_view value) {
    appendString(m_out, value);
}

void JsonWriter::number(double value) {
    VARNET_ASSERT(std::isfinite(value));
    appendNumber(m_out, value);
}

void JsonWriter::integer(std::int64_t value) {
    appendNumber(m_out, value);
}

void JsonWriter::boolean(bool value) {
    m_out += value ? "true" : "false";
}

std::string JsonWriter::takePart() {
    return std::exchange(m_out, {});
}

std::string JsonWriter::finish() {
    VARNET_ASSERT(m_depth == 0);
    if (m_pretty)
        m_out += '\n';
    return takePart();
}

void JsonWriter::open(char bracket) {
    m_out += bracket;
    ++m_depth;
    m_empty = true;
}

void JsonWriter::close(char bracket) {
    --m_depth;
    if (!m_empty)
        newLine();
    m_out += bracket;
    m_empty = false;
}

void JsonWriter::newLine() {
    if (!m_pretty)
        return;
    m_out += '\n';
    m_out.append(2 * m_depth, ' ');
}

} // namespace varnet
