#include "MeetingCore/base/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace varnet {

namespace {

/// Length in bytes of the white-space character at the start of the text, 0 if there is none.
std::size_t leadingSpace(std::string_view text) {
    std::size_t end = 0;
    UChar32 character = U_SENTINEL;
    if (!text.empty())
        U8_NEXT(text.data(), end, text.size(), character);
    return character >= 0 && u_isUWhiteSpace(character) ? end : 0;
}

/// Length in bytes of the white-space character at the end of the text, 0 if there is none.
std::size_t trailingSpace(std::string_view text) {
    // ICU counts in 32 bits, so it is shown no more than one character's longest form.
    const std::string_view tail = text.substr(text.size() - std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    auto begin = static_cast<std::int32_t>(tail.size());
    UChar32 character = U_SENTINEL;
    if (!tail.empty())
        U8_PREV(tail.data(), 0, begin, character);
    return character >= 0 && u_isUWhiteSpace(character) ? tail.size() - static_cast<std::size_t>(begin) : 0;
}

} // namespace

std::string trimmed(std::string_view text) {
    while (const std::size_t length = leadingSpace(text))
        text.remove_prefix(length);
    while (const std::size_t length = trailingSpace(text))
        text.remove_suffix(length);
    return std::string(text);
}

std::string validUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t begin = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, text.size(), character);
        valid += character < 0 ? std::string_view("\uFFFD") : text.substr(begin, at - begin);
    }
    return valid;
}

} // namespace varnet
