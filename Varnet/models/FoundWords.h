#pragma once

#include <QString>

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace varnet {

/// Words that are looked for in a text, in either case. Texts are UTF-8; queries are in lower case and not empty. Pure
/// functions.
namespace FoundWords {

/// Where the query stands in a text in lower case, from its start to its end, without overlaps.
std::vector<std::size_t> places(std::string_view lowerText, std::string_view query);

/// The text with each hit marked, as Text.StyledText. With `current`, one of the places, as Text.RichText, in which
/// that hit stands out; it takes many times as long to show. Empty without a hit.
QString marked(std::string_view text, std::string_view query, std::optional<std::size_t> current = {});

} // namespace FoundWords

} // namespace varnet
