#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Operations on UTF-8 text. Pure functions; any thread.
namespace varnet {

/// Length in bytes of the character at the start of the text if that has Unicode's White_Space property, as the
/// no-break space and the line separators have; else 0.
std::size_t leadingWhiteSpace(std::string_view text);

/// The same of the character at the end of the text.
std::size_t trailingWhiteSpace(std::string_view text);

/// The text without the white space at both ends. Bytes that are not UTF-8 count as text.
std::string trimmed(std::string_view text);

/// Whether the text is nothing but white space.
bool isBlank(std::string_view text);

/// The text as valid UTF-8: each maximal ill-formed sequence becomes one U+FFFD, the rest is unchanged.
std::string validUtf8(std::string_view text);

/// The text in lower case by Unicode's full mapping in no particular language: "İ" becomes two characters, and "Σ"
/// becomes "ς" at the end of a word. Bytes that are not UTF-8 stay. Less than 2 GiB.
std::string lowerCased(std::string_view text);

/// Finds the places in a text that stand for places in its lower-case form, whose characters may differ in length.
class OriginalPlaces {
public:
    /// The text must outlive it.
    explicit OriginalPlaces(std::string_view text) : m_text(text) {}

    /// Where the first character begins whose lower case begins at that place of `lowerCased` or after it; the text's
    /// end if there is none. Places are asked for in ascending order: all of them take one walk through the text.
    std::size_t of(std::size_t lowerPlace);

private:
    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_lower = 0;
};

/// Whether the texts are the same by Unicode's full case folding ("Straße" and "STRASSE"). Composed and decomposed
/// characters differ.
bool equalIgnoringCase(std::string_view one, std::string_view other);

/// Length of the longest start of the text that has at most `limit` bytes and ends with a whole user-perceived
/// character (extended grapheme cluster), or of the first character if that is longer. It takes no longer for a long
/// text: what follows a cut is cut as if the whole text had been walked. Less than 2 GiB, `limit` at least 1.
std::size_t characterCut(std::string_view text, std::size_t limit);

} // namespace varnet
