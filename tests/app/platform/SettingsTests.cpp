#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/platform/Settings.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(SettingsFile, ValuesAreInItAtOnceUnderTheirOwnKeys) {
    const test::TemporaryFolder folder;
    const auto file = folder / "Varnet.conf";
    Settings settings(file);
    settings.setText("CaptureMode", "Microphone + system");
    settings.setFlag("OnboardingDone", true);
    settings.setNumber("OnboardingStep", 3);
    EXPECT_EQ(readFile(file), "[General]\nCaptureMode=Microphone + system\nOnboardingDone=true\nOnboardingStep=3\n");
    settings.remove("CaptureMode");
    EXPECT_EQ(Settings(file).text("CaptureMode"), std::nullopt);
    settings.setText("RuntimeRoot", "/home/änn/a, b;c");
    EXPECT_EQ(Settings(file).text("RuntimeRoot"), "/home/änn/a, b;c");
}
