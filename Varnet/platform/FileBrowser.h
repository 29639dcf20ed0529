#pragma once

#include "Varnet/async/Task.h"

#include <filesystem>

namespace varnet {

/// The desktop's own file browser. Main thread.
namespace FileBrowser {

/// Shows what is in a folder. Throws Failure, with a sentence, when the folder is not there or nothing on this desktop
/// shows folders.
Task<> show(std::filesystem::path folder);

} // namespace FileBrowser

} // namespace varnet
