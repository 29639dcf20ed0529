#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace varnet {

/// What the program was started with. A value argument takes the next element of the list; the first element that is
/// equal to the flag decides, and a flag at the very end counts as not given. Unknown flags are ignored; what is
/// neither a flag nor a value of one is a file to import, and everything behind "--" is one.
struct CommandLine {
    std::optional<std::filesystem::path> storageRoot{}; ///< --storage-root: the library to use in place of the user's

    std::vector<std::string> files{}; ///< paths and addresses, as given; none in a run that only reads

    /// --export-ui stands in the list. Such a run only reads: no engines, no repairs, no lock. Everything below counts
    /// only in such a run.
    bool exportsWindow = false;
    std::optional<std::string> appearance{}; ///< --appearance: "dark" is dark, anything else is light
    bool showsMeeting = false;               ///< --show-meeting
    bool previewsRecording = false;          ///< --preview-recording
    bool previewsCallMissing = false;        ///< --preview-call-missing, which changes the former

    /// All but the files.
    static CommandLine parse(std::vector<std::string> arguments);

    /// The files among the arguments, once others have taken theirs out of the list.
    void takeFiles(const std::vector<std::string>& arguments);

    bool operator==(const CommandLine&) const = default;
};

} // namespace varnet
