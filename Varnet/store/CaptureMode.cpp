#include "Varnet/store/CaptureMode.h"

#include "Varnet/platform/Settings.h"

namespace varnet {

namespace {
constexpr std::string_view settingsKey = "CaptureMode";
} // namespace

std::string_view rawValue(CaptureMode mode) {
    return mode == CaptureMode::meeting ? "Microphone + system" : "Microphone only";
}

std::optional<CaptureMode> CaptureModePreference::load(const Settings& settings) {
    const auto text = settings.text(settingsKey);
    if (text == rawValue(CaptureMode::meeting) || text == "meeting")
        return CaptureMode::meeting;
    if (text == rawValue(CaptureMode::microphone) || text == "microphone")
        return CaptureMode::microphone;
    return {};
}

void CaptureModePreference::save(Settings& settings, CaptureMode mode) {
    settings.setText(settingsKey, std::string(rawValue(mode)));
}

} // namespace varnet
