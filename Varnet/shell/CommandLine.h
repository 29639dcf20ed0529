#pragma once

#include "MeetingCore/base/Uuid.h"

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
    std::optional<std::filesystem::path> exportPath{}; ///< its value: the PNG to write; without one nothing is written
    std::optional<double> exportScale{}; ///< --export-scale: pixels per unit, from 1; other values count as not given
    std::optional<Uuid> selectMeeting{}; ///< --select-meeting; what is no UUID counts as not given
    std::optional<std::string> appearance{}; ///< --appearance: "dark" is dark, anything else is light
    bool showsOnboarding = false;            ///< --show-onboarding
    bool showsHistory = false;               ///< --show-history
    bool showsMeeting = false;               ///< --show-meeting
    bool previewsRecording = false;          ///< --preview-recording
    bool previewsCallMissing = false;        ///< --preview-call-missing, which changes the former
    bool showsDeleted = false;               ///< --show-deleted

    /// All but the files.
    static CommandLine parse(std::vector<std::string> arguments);

    /// The files among the arguments, once others have taken theirs out of the list.
    void takeFiles(const std::vector<std::string>& arguments);

    bool operator==(const CommandLine&) const = default;
};

} // namespace varnet
