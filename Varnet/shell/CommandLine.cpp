#include "Varnet/shell/CommandLine.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace varnet {

namespace {

bool holds(const std::vector<std::string>& arguments, std::string_view flag) {
    return std::find(arguments.begin(), arguments.end(), flag) != arguments.end();
}

std::optional<std::string> value(const std::vector<std::string>& arguments, std::string_view flag) {
    const auto found = std::find(arguments.begin(), arguments.end(), flag);
    if (found == arguments.end() || found + 1 == arguments.end())
        return {};
    return *(found + 1);
}

constexpr std::array<std::string_view, 6> valueFlags{"--storage-root",   "--export-ui",  "--export-scale",
                                                     "--select-meeting", "--appearance", "--preview-notes-download"};

/// The program's own name and the values of flags are none.
std::vector<std::string> fileArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> files;
    for (std::size_t place = 1; place < arguments.size(); ++place) {
        const auto& argument = arguments[place];
        if (std::ranges::find(valueFlags, argument) != valueFlags.end())
            ++place;
        else if (!argument.starts_with("-") && !argument.empty())
            files.push_back(argument);
    }
    return files;
}

} // namespace

CommandLine CommandLine::parse(const std::vector<std::string>& arguments) {
    CommandLine line;
    if (const auto root = value(arguments, "--storage-root"))
        line.storageRoot = *root;
    line.exportsWindow = holds(arguments, "--export-ui");
    if (!line.exportsWindow) {
        line.files = fileArguments(arguments);
        return line;
    }
    line.appearance = value(arguments, "--appearance");
    line.showsMeeting = holds(arguments, "--show-meeting");
    line.previewsRecording = holds(arguments, "--preview-recording");
    line.previewsCallMissing = holds(arguments, "--preview-call-missing");
    return line;
}

} // namespace varnet
