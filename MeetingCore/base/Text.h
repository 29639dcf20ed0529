#pragma once

#include <string>
#include <string_view>

/// Operations on UTF-8 text. Pure functions; any thread.
namespace varnet {

/// The text without the characters at both ends that have Unicode's White_Space property, among them the no-break space
/// and the line separators. Bytes that are not UTF-8 count as text.
std::string trimmed(std::string_view text);

/// The text as valid UTF-8: each maximal ill-formed sequence becomes one U+FFFD, the rest is unchanged.
std::string validUtf8(std::string_view text);

/// The text in lower case by Unicode's full mapping in no particular language: "İ" becomes two characters, and "Σ"
/// becomes "ς" at the end of a word. Bytes that are not UTF-8 stay. Less than 2 GiB.
std::string lowerCased(std::string_view text);

} // namespace varnet
