#include "engine/EngineConfig.h"

#include "engine/Failure.h"

#include <charconv>
#include <fstream>
#include <sstream>

namespace engine {
namespace {

constexpr std::size_t maximumBytes = 64 * 1024;

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string_view unquoted(std::string_view text) {
    if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
        return text.substr(1, text.size() - 2);
    return text;
}

int number(std::string_view text, int least, int most) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < least || value > most)
        throw Failure("\"" + std::string(text) + "\" is not a number from " + std::to_string(least) + " to " +
                      std::to_string(most) + ".");
    return value;
}

void set(EngineConfig& config, std::string_view key, std::string_view value) {
    if (key == "port")
        config.port = number(value, 0, 65535);
    else if (key == "maximum_sessions")
        config.maximumSessions = number(value, 1, 16);
    else if (key == "acoustic_model")
        config.acousticModel = value;
    else if (key == "language_model")
        config.languageModel = value;
    else if (key == "dictionary")
        config.dictionary = value;
    else
        throw Failure("the key \"" + std::string(key) + "\" is not known.");
}

} // namespace

EngineConfig EngineConfig::parse(std::string_view text) {
    EngineConfig config;
    std::istringstream lines{std::string(text)};
    std::string line;
    for (int lineNumber = 1; std::getline(lines, line); ++lineNumber) {
        const std::string_view content = trimmed(std::string_view(line).substr(0, line.find('#')));
        if (content.empty())
            continue;
        const auto colon = content.find(':');
        try {
            if (colon == std::string_view::npos)
                throw Failure("there is no \"key: value\".");
            set(config, trimmed(content.substr(0, colon)), unquoted(trimmed(content.substr(colon + 1))));
        } catch (const Failure& failure) {
            throw Failure("Line " + std::to_string(lineNumber) + " of the configuration: " + failure.what());
        }
    }
    if (config.acousticModel.empty() || config.languageModel.empty() || config.dictionary.empty())
        throw Failure("The configuration must name acoustic_model, language_model and dictionary.");
    return config;
}

EngineConfig EngineConfig::load(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text(maximumBytes + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad() || stream.gcount() == 0)
        throw Failure("The configuration " + file.string() + " can't be read.");
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (text.size() > maximumBytes)
        throw Failure("The configuration " + file.string() + " is too large.");
    return parse(text);
}

} // namespace engine
