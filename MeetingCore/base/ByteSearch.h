#pragma once

#include <cstddef>
#include <string_view>

namespace varnet {

/// Where `part` first stands in `text`, compared byte by byte; npos where it does not. An empty part stands at 0. Made
/// for short parts in long texts: the time for a part that repeats one byte can grow with its length. Any thread.
std::size_t findBytes(std::string_view text, std::string_view part);

} // namespace varnet
