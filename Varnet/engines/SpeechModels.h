#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace varnet {

/// Whether the models of a bundled speech engine are there.
struct ModelState {
    enum class Kind {
        notNeeded,   ///< a development layout brings its own models
        missing,     ///< bundled, and not installed
        downloading, ///< `fraction` of the expected bytes is on disk
        ready,       ///< installed
        failed,      ///< `text` tells the user
    };

    Kind kind = Kind::notNeeded;
    double fraction = 0; ///< 0 to 1
    std::string text;

    bool operator==(const ModelState&) const = default;
};

/// The models of a bundled speech engine: one for speech recognition, one that tells speakers apart.
namespace SpeechModels {

/// The user's model folder, "Varnet/models" in the application support folder.
std::filesystem::path folder();

/// True when both models in the model folder carry the engine's mark of a complete download: a folder in the model's
/// own folder that directly holds an item whose name ends in ".verified".
bool installed(const std::filesystem::path& modelFolder);

/// The size of all files below the model folder; what cannot be read counts as nothing.
std::int64_t bytesOnDisk(const std::filesystem::path& modelFolder);

} // namespace SpeechModels

} // namespace varnet
