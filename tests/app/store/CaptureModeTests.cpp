#include "Varnet/platform/Settings.h"
#include "Varnet/store/CaptureMode.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

TEST(CaptureModePreference, IsWrittenAsRawValueAndReadInEitherForm) {
    const test::TemporaryFolder folder;
    Settings settings(folder / "Varnet.conf");
    EXPECT_EQ(CaptureModePreference::load(settings), std::nullopt);

    const std::pair<const char*, std::optional<CaptureMode>> rows[] = {{"Microphone + system", CaptureMode::meeting},
                                                                       {"Microphone only", CaptureMode::microphone},
                                                                       {"microphone", CaptureMode::microphone},
                                                                       {"Meeting", std::nullopt}};
    for (const auto& [text, mode] : rows) {
        settings.setText("CaptureMode", text);
        EXPECT_EQ(CaptureModePreference::load(settings), mode) << text;
    }
    CaptureModePreference::save(settings, CaptureMode::meeting);
    EXPECT_EQ(settings.text("CaptureMode"), "Microphone + system");
}

} // namespace
} // namespace varnet
