#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace varnet {

/// Whether the model of a bundled notes engine is there.
struct NotesModelState {
    enum class Kind {
        notNeeded,   ///< no download applies to this layout
        missing,     ///< the model is not there
        downloading, ///< `bytes` have been received so far
        verifying,   ///< all bytes are in, their hash is being checked
        ready,       ///< the file is in place
        failed,      ///< `text` tells the user
    };

    Kind kind = Kind::notNeeded;
    std::int64_t bytes = 0;
    std::string text;

    bool operator==(const NotesModelState&) const = default;
};

/// The one file that a bundled notes engine reads.
namespace NotesModel {

/// The size of the complete file.
inline constexpr std::int64_t byteCount = 2'741'986'464;

/// Where it belongs: "Qwen3.5-4B-Q4_K_M.gguf" in "Varnet/notes-model" in the application support folder.
std::filesystem::path file();

/// True when `file` has its exact size. Its content is not read: it comes into place only after it was checked.
bool installed();

} // namespace NotesModel

} // namespace varnet
