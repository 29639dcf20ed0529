#include "MeetingCore/base/Assert.h"
#include "MeetingCore/notes/NoteGrounding.h"

#include <unicode/regex.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <memory>

// ICU decides, but takes microseconds. What ASCII decides by itself is taken from that first: a match between ASCII
// neighbours stands, and in a text that is all ASCII there is no other.

namespace varnet::NoteGrounding {

namespace {

bool isASCII(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

bool isAllASCII(std::string_view text) {
    return std::ranges::all_of(text, isASCII);
}

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string lowerASCII(std::string text) {
    for (char& c : text)
        c = static_cast<char>(c + (c >= 'A' && c <= 'Z' ? 'a' - 'A' : 0));
    return text;
}

/// Whether the text ends there, or ASCII follows of which no word is made.
bool isWordEnd(std::string_view text, std::size_t at) {
    return at == text.size() || (isASCII(text[at]) && !isLetterOrDigit(text[at]) && text[at] != '_');
}

bool isFree(char neighbour) {
    return isASCII(neighbour) && !isLetterOrDigit(neighbour);
}

bool containsASCIIPhrase(std::string_view text, std::string_view phrase) {
    for (std::size_t at = text.find(phrase); at != std::string_view::npos; at = text.find(phrase, at + 1)) {
        const std::size_t end = at + phrase.size();
        if ((at == 0 || isFree(text[at - 1])) && (end == text.size() || isFree(text[end])))
            return true;
    }
    return false;
}

bool isASCIICommitment(std::string_view words) {
    static constexpr std::array<std::string_view, 6> commitments{" will",       "'ll",        " am going to",
                                                                 "'m going to", " commit to", " take responsibility"};
    for (std::size_t at = words.find('i'); at != std::string_view::npos; at = words.find('i', at + 1)) {
        const std::string_view rest = words.substr(at + 1);
        const bool commits = std::ranges::any_of(commitments, [&](std::string_view commitment) {
            return rest.starts_with(commitment) && isWordEnd(rest, commitment.size());
        });
        if (commits && (at == 0 || isFree(words[at - 1])))
            return true;
    }
    return false;
}

icu::UnicodeString utf16(const std::string& text) {
    return icu::UnicodeString::fromUTF8(text);
}

/// Whether the character belongs to [\p{L}\p{N}] where case does not matter: those classes, and the iota subscript,
/// which is a mark that has the letter iota as its upper case.
bool isLetterOrNumber(UChar32 character) {
    constexpr UChar32 iotaSubscript = 0x345;
    return (U_GET_GC_MASK(character) & (U_GC_L_MASK | U_GC_N_MASK)) != 0 || character == iotaSubscript;
}

bool containsAnyPhrase(const std::string& text, const std::string& phrase) {
    const icu::UnicodeString input = utf16(text);
    // Only the phrase is compiled: the classes around it would take a thousand times as long. A start has one match at
    // most, so that one between the wrong neighbours means the next start.
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(utf16(phrase), input, UREGEX_LITERAL | UREGEX_CASE_INSENSITIVE, status);
    std::int32_t from = 0;
    while (matcher.find(from, status)) {
        const std::int32_t begin = matcher.start(status);
        const std::int32_t end = matcher.end(status);
        if ((begin == 0 || !isLetterOrNumber(input.char32At(begin - 1))) &&
            (end == input.length() || !isLetterOrNumber(input.char32At(end))))
            return true;
        if (begin == input.length())
            break;
        from = input.moveIndex32(begin, 1);
    }
    VARNET_ASSERT(U_SUCCESS(status));
    return false;
}

bool isAnyCommitment(const std::string& words) {
    static const std::unique_ptr<const icu::RegexPattern> pattern = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<const icu::RegexPattern> compiled(icu::RegexPattern::compile(
            icu::UnicodeString::fromUTF8(R"((?i)(?<![\p{L}\p{N}])I(?: will\b|['’]ll\b| am going to\b|['’]m going to\b)"
                                         R"(| commit to\b| take responsibility\b))"),
            0, status));
        VARNET_ASSERT(U_SUCCESS(status));
        return compiled;
    }();
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = utf16(words);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(input, status));
    VARNET_ASSERT(U_SUCCESS(status));
    const bool found = matcher->find(status);
    VARNET_ASSERT(U_SUCCESS(status));
    return found;
}

} // namespace

bool containsPhrase(std::string_view text, std::string_view phrase) {
    const std::string words = normalized(text);
    const std::string part = normalized(phrase);
    // Folding the case makes no text four times as long. A phrase may be anything that a model came up with.
    if (part.size() / 4 > words.size())
        return false;
    if (!part.empty() && isAllASCII(part)) {
        if (containsASCIIPhrase(lowerASCII(words), lowerASCII(part)))
            return true;
        if (isAllASCII(words))
            return false;
    }
    return containsAnyPhrase(words, part);
}

bool isCommitment(std::string_view words) {
    const std::string text = normalized(words);
    return isASCIICommitment(lowerASCII(text)) || (!isAllASCII(text) && isAnyCommitment(text));
}

} // namespace varnet::NoteGrounding
