#pragma once

#include <optional>
#include <string_view>

namespace varnet {

class Settings;

/// What a recording captures.
enum class CaptureMode {
    meeting,    ///< the microphone and the sound of the other people, as two tracks
    microphone, ///< the microphone alone
};

/// "Microphone + system" or "Microphone only".
std::string_view rawValue(CaptureMode mode);

/// The last choice of the user, under the settings key "CaptureMode".
namespace CaptureModePreference {

/// Understands the raw value and the bare name ("meeting", "microphone"); absent when unset or unknown.
std::optional<CaptureMode> load(const Settings& settings);

/// Writes the raw value.
void save(Settings& settings, CaptureMode mode);

} // namespace CaptureModePreference

} // namespace varnet
