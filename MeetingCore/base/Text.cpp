#include "MeetingCore/base/Text.h"

#include "MeetingCore/base/Assert.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

namespace varnet {

namespace {

icu::StringPiece piece(std::string_view text) {
    VARNET_ASSERT(text.size() <= std::numeric_limits<std::int32_t>::max()); // ICU counts in 32 bits
    return icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size()));
}

std::string lowerCasedInContext(std::string_view text) {
    std::string lower;
    icu::StringByteSink<std::string> sink(&lower);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8ToLower("", 0, piece(text), sink, nullptr, status);
    VARNET_ASSERT(U_SUCCESS(status));
    return lower;
}

/// Length of the ASCII at the start of the text.
std::size_t asciiLength(std::string_view text) {
    std::size_t at = 0;
    for (; text.size() - at >= sizeof(std::uint64_t); at += sizeof(std::uint64_t)) {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, text.data() + at, sizeof bytes);
        if (bytes & 0x8080808080808080U)
            break;
    }
    while (at < text.size() && U8_IS_SINGLE(text[at]))
        ++at;
    return at;
}

void lowerASCII(char* text, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) // vectorised
        text[i] = static_cast<char>(text[i] + (text[i] >= 'A' && text[i] <= 'Z' ? 'a' - 'A' : 0));
}

constexpr std::array<UChar32, 2> charactersWithoutCase{0x3000, 0x9FFF}; ///< ideographs and kana
constexpr UChar32 twoByteLimit = 0x800;

/// The lower case of the characters that have at most two bytes, which are nearly all that have any.
const std::array<char16_t, twoByteLimit>& lowerCaseTable() {
    static const auto table = [] {
        std::array<char16_t, twoByteLimit> mapped{};
        for (UChar32 character = 0; character < twoByteLimit; ++character)
            mapped[static_cast<std::size_t>(character)] = static_cast<char16_t>(u_tolower(character));
        return mapped;
    }();
    return table;
}

/// One for each thread, as finding its rules takes longer than using them.
icu::BreakIterator& characterIterator() {
    static thread_local const auto iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        VARNET_ASSERT(U_SUCCESS(status));
        return made;
    }();
    return *iterator;
}

} // namespace

std::size_t leadingWhiteSpace(std::string_view text) {
    if (text.empty())
        return 0;
    if (U8_IS_SINGLE(text.front()))
        return text.front() == ' ' || (text.front() >= '\t' && text.front() <= '\r') ? 1 : 0;
    std::size_t end = 0;
    UChar32 character = U_SENTINEL;
    U8_NEXT(text.data(), end, text.size(), character);
    return character >= 0 && u_isUWhiteSpace(character) ? end : 0;
}

std::size_t trailingWhiteSpace(std::string_view text) {
    // ICU counts in 32 bits, so it is shown no more than one character's longest form.
    const std::string_view tail = text.substr(text.size() - std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    auto begin = static_cast<std::int32_t>(tail.size());
    UChar32 character = U_SENTINEL;
    if (!tail.empty())
        U8_PREV(tail.data(), 0, begin, character);
    return character >= 0 && u_isUWhiteSpace(character) ? tail.size() - static_cast<std::size_t>(begin) : 0;
}

std::string trimmed(std::string_view text) {
    while (const std::size_t length = leadingWhiteSpace(text))
        text.remove_prefix(length);
    while (const std::size_t length = trailingWhiteSpace(text))
        text.remove_suffix(length);
    return std::string(text);
}

bool isBlank(std::string_view text) {
    while (const std::size_t length = leadingWhiteSpace(text))
        text.remove_prefix(length);
    return text.empty();
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

std::string lowerCased(std::string_view text) {
    constexpr UChar32 sigma = 0x3A3; // the only character whose mapping depends on those around it
    const auto& table = lowerCaseTable();
    std::string lower(text);
    std::size_t at = 0;
    while (at < text.size()) {
        if (U8_IS_SINGLE(text[at])) {
            const std::size_t length = asciiLength(text.substr(at));
            lowerASCII(lower.data() + at, length);
            at += length;
            continue;
        }
        std::size_t begin = at;
        UChar32 character = 0;
        U8_NEXT(text.data(), at, text.size(), character);
        if (character < 0 || (character >= charactersWithoutCase[0] && character <= charactersWithoutCase[1]))
            continue;
        const UChar32 mapped =
            character < twoByteLimit ? table[static_cast<std::size_t>(character)] : u_tolower(character);
        if (mapped == character)
            continue;
        // The other length is also that of the simple mapping of İ, the only character whose full one is two.
        if (character == sigma || U8_LENGTH(mapped) != static_cast<int>(at - begin))
            return lowerCasedInContext(text);
        U8_APPEND_UNSAFE(lower.data(), begin, mapped);
    }
    return lower;
}

std::size_t OriginalPlaces::of(std::size_t lowerPlace) {
    while (m_at < m_text.size() && m_lower < lowerPlace) {
        std::size_t end = m_at + 1;
        while (end < m_text.size() && U8_IS_TRAIL(static_cast<std::uint8_t>(m_text[end])))
            ++end;
        m_lower += lowerCased(m_text.substr(m_at, end - m_at)).size();
        m_at = end;
    }
    return m_at;
}

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    const auto left = icu::UnicodeString::fromUTF8(piece(one));
    return left.caseCompare(icu::UnicodeString::fromUTF8(piece(other)), U_FOLD_CASE_DEFAULT) == 0;
}

std::size_t characterCut(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return text.size();
    const char before = text[limit - 1];
    const char after = text[limit];
    if (U8_IS_SINGLE(before) && U8_IS_SINGLE(after) && !(before == '\r' && after == '\n'))
        return limit; // one character ends between any others of ASCII

    UErrorCode status = U_ZERO_ERROR;
    UText source = UTEXT_INITIALIZER;
    const icu::StringPiece whole = piece(text);
    const icu::LocalUTextPointer opened(utext_openUTF8(&source, whole.data(), whole.size(), &status));
    icu::BreakIterator& iterator = characterIterator();
    iterator.setText(&source, status);
    VARNET_ASSERT(U_SUCCESS(status));
    // preceding() looks before its argument, so that is the first code point that begins beyond the limit.
    auto beyond = static_cast<std::int32_t>(limit);
    U8_SET_CP_START(reinterpret_cast<const std::uint8_t*>(text.data()), 0, beyond);
    U8_FWD_1(text.data(), beyond, whole.size());
    const std::int32_t cut = iterator.preceding(beyond);
    return static_cast<std::size_t>(cut > 0 ? cut : iterator.following(0));
}

} // namespace varnet
