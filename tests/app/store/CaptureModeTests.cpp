#include "Varnet/platform/Settings.h"
#include "Varnet/store/CaptureMode.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace varnet {
namespace {

TEST(CaptureModePreference, IsWrittenAsRawValueAndReadInEitherForm) {
    const QTemporaryDir folder;
    Settings settings(std::filesystem::path(folder.path().toStdString()) / "Varnet.conf");
    EXPECT_EQ(CaptureModePreference::load(settings), std::nullopt);

    const std::vector<std::pair<const char*, std::optional<CaptureMode>>> rows{
        {"Microphone + system", CaptureMode::meeting},
        {"Microphone only", CaptureMode::microphone},
        {"meeting", CaptureMode::meeting},
        {"microphone", CaptureMode::microphone},
        {"Meeting", std::nullopt},
        {"", std::nullopt}};
    for (const auto& [text, mode] : rows) {
        settings.setText("CaptureMode", text);
        EXPECT_EQ(CaptureModePreference::load(settings), mode) << text;
    }

    CaptureModePreference::save(settings, CaptureMode::meeting);
    EXPECT_EQ(settings.text("CaptureMode"), "Microphone + system");
    CaptureModePreference::save(settings, CaptureMode::microphone);
    EXPECT_EQ(settings.text("CaptureMode"), "Microphone only");
}

} // namespace
} // namespace varnet
