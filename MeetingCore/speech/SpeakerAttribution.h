#pragma once

#include "MeetingCore/records/Meeting.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace varnet {

/// How loud a turn is on both tracks of a recording: root mean square of its samples, 0 to 1.
struct TurnLevels {
    std::string speaker; ///< the turn's label, such as "Speaker 0"
    float microphone = 0;
    float call = 0; ///< on the track of the others

    bool operator==(const TurnLevels&) const = default;
};

/// Finds out which of the numbered speakers is the local user: the one whose voice is loud on the microphone's track
/// and absent from that of the call. In doubt it names nobody. Pure computation and reading of files; any thread.
namespace SpeakerAttribution {

using SpeakerNames = std::map<std::string, std::string>; ///< speaker label to name

inline constexpr float dominance = 3;    ///< a turn is the microphone's when it is louder than the call times this
inline constexpr float quiet = 0.003f;   ///< a turn whose louder track is below this is not judged
inline constexpr double agreement = 0.7; ///< share of a speaker's judged turns that must be the microphone's
inline constexpr std::int64_t minimumTurns = 3; ///< fewest judged turns of a speaker who may be the local one

/// The levels of the turns of at least half a second, measured on "microphone.wav" and "system.wav" of a meeting's
/// folder. Absent when either cannot be used, and soon after `stop` was requested. A turn beyond the audio, and one
/// that cannot be read, has level 0. The times must be finite; otherwise the program ends. Memory does not grow with
/// the length of a turn.
std::optional<std::vector<TurnLevels>> turnLevels(std::span<const TranscriptTurn> turns,
                                                  const std::filesystem::path& folder,
                                                  const std::stop_token& stop = {});

/// The label of the one speaker whose turns are the microphone's; absent when none or several qualify.
std::optional<std::string> localSpeaker(std::span<const TurnLevels> turns);

/// `existing` with the names that can be told: `youName` for the local speaker and, if there is exactly one other
/// attendee and one other speaker, that attendee's. A name that is there already stays, and none is given twice.
SpeakerNames names(std::span<const TurnLevels> turns, const SpeakerNames& existing, const std::string& youName,
                   std::span<const std::string> otherAttendees);

} // namespace SpeakerAttribution

} // namespace varnet
