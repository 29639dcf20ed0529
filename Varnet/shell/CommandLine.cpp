#include "Varnet/shell/CommandLine.h"

#include <algorithm>
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

} // namespace

CommandLine CommandLine::parse(const std::vector<std::string>& arguments) {
    CommandLine line;
    if (const auto root = value(arguments, "--storage-root"))
        line.storageRoot = *root;
    line.exportsWindow = holds(arguments, "--export-ui");
    if (!line.exportsWindow)
        return line;
    line.appearance = value(arguments, "--appearance");
    line.showsMeeting = holds(arguments, "--show-meeting");
    line.previewsRecording = holds(arguments, "--preview-recording");
    line.previewsCallMissing = holds(arguments, "--preview-call-missing");
    return line;
}

} // namespace varnet
