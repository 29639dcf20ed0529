#include "Varnet/shell/CommandLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
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

std::optional<double> scale(const std::optional<std::string>& text) {
    double number = 0;
    const auto* end = text ? text->data() + text->size() : nullptr;
    if (!text || std::from_chars(text->data(), end, number).ptr != end || !std::isfinite(number) || number < 1)
        return {};
    return number;
}

constexpr std::array<std::string_view, 6> valueFlags{"--storage-root",   "--export-ui",  "--export-scale",
                                                     "--select-meeting", "--appearance", "--preview-notes-download"};

/// The place of the "--" behind which there are only files, or the end. The value of a flag is no such "--".
std::size_t flagsEnd(const std::vector<std::string>& arguments) {
    std::size_t place = 1;
    while (place < arguments.size() && arguments[place] != "--")
        place += std::ranges::find(valueFlags, arguments[place]) != valueFlags.end() ? 2 : 1;
    return std::min(place, arguments.size());
}

} // namespace

CommandLine CommandLine::parse(std::vector<std::string> arguments) {
    arguments.resize(flagsEnd(arguments));
    CommandLine line;
    if (const auto root = value(arguments, "--storage-root"))
        line.storageRoot = *root;
    line.exportsWindow = holds(arguments, "--export-ui");
    if (!line.exportsWindow)
        return line;
    if (const auto path = value(arguments, "--export-ui"))
        line.exportPath = *path;
    line.exportScale = scale(value(arguments, "--export-scale"));
    if (const auto meeting = value(arguments, "--select-meeting"))
        line.selectMeeting = Uuid::parse(*meeting);
    line.appearance = value(arguments, "--appearance");
    line.showsOnboarding = holds(arguments, "--show-onboarding");
    line.showsHistory = holds(arguments, "--show-history");
    line.showsMeeting = holds(arguments, "--show-meeting");
    line.previewsRecording = holds(arguments, "--preview-recording");
    line.previewsCallMissing = holds(arguments, "--preview-call-missing");
    line.showsDeleted = holds(arguments, "--show-deleted");
    return line;
}

void CommandLine::takeFiles(const std::vector<std::string>& arguments) {
    files.clear();
    if (exportsWindow)
        return;
    const auto end = flagsEnd(arguments);
    for (std::size_t place = 1; place < arguments.size(); ++place) {
        const auto& argument = arguments[place];
        if (place < end && std::ranges::find(valueFlags, argument) != valueFlags.end())
            ++place;
        else if (place > end || (place < end && !argument.starts_with("-") && !argument.empty()))
            files.push_back(argument);
    }
}

} // namespace varnet
