#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace engine {

/// What config/speech.yaml says: lines "key: value", "#" starts a comment, values may stand in double quotes.
struct EngineConfig {
    int port = 17863; ///< 1 to 65535, on 127.0.0.1; 0 lets the system choose one
    std::filesystem::path acousticModel;
    std::filesystem::path languageModel;
    std::filesystem::path dictionary;
    int maximumSessions = 4; ///< live sessions at once, 1 to 16

    bool operator==(const EngineConfig&) const = default;

    /// Throws Failure that names the line for an unknown key, a value out of its range or a missing path.
    static EngineConfig parse(std::string_view text);
    /// Reads and parses a file of at most 64 KiB. Throws Failure.
    static EngineConfig load(const std::filesystem::path& file);
};

} // namespace engine
