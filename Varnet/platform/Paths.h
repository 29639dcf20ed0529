#pragma once

#include <filesystem>
#include <optional>

namespace varnet {

/// The folders that the platform gives a program. The environment is read at each call, nothing is created, and a
/// variable that is empty or not absolute counts as not set. Any thread.
namespace Paths {

/// Where programs keep a user's data: $XDG_DATA_HOME, else ~/.local/share. Ours lies below it in "Varnet".
std::filesystem::path applicationSupport();

/// The secret that the application shares with its notes engine: "Varnet/notes-service.key" there.
std::filesystem::path notesServiceKey();

/// Where programs keep a user's configuration: $XDG_CONFIG_HOME, else ~/.config.
std::filesystem::path configuration();

/// Our log files: "Varnet/logs" in $XDG_STATE_HOME, else in ~/.local/state.
std::filesystem::path logs();

/// What can be made again: "Varnet" in $XDG_CACHE_HOME, else in ~/.cache.
std::filesystem::path caches();

/// What an installed program brings along: "lib/varnet" beside the "bin" folder of the executable. Absent when that
/// folder is not there, as in a build tree.
std::optional<std::filesystem::path> resources();

} // namespace Paths

} // namespace varnet
