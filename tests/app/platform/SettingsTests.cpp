#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/platform/Settings.h"
#include "Varnet/store/CaptureMode.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace varnet;

namespace {

struct SettingsFile : ::testing::Test {
    test::TemporaryFolder folder;
    std::filesystem::path file = folder / "Varnet.conf";
};

} // namespace

TEST_F(SettingsFile, ValuesAreInTheFileAtOnceUnderTheirOwnKeys) {
    Settings settings(file);
    settings.setText("CaptureMode", "Microphone + system");
    settings.setFlag("OnboardingDone", true);
    settings.setNumber("OnboardingStep", 3);
    EXPECT_EQ(readFile(file), "[General]\nCaptureMode=Microphone + system\nOnboardingDone=true\nOnboardingStep=3\n");
    settings.remove("CaptureMode");
    EXPECT_EQ(Settings(file).text("CaptureMode"), std::nullopt);
    for (const char* text : {"/home/änn/a, b;c", "", "@x", " \"quoted\" \n", "100%\\"}) {
        settings.setText("RuntimeRoot", text);
        EXPECT_EQ(Settings(file).text("RuntimeRoot"), text);
    }
}

TEST_F(SettingsFile, FilesEditedByHandAreRead) {
    std::ofstream(file) << "[General]\nRuntimeRoot=/opt/a, b\nMeetingReminders=0\nOnboardingDone=perhaps\n"
                           "OnboardingStep=two\n";
    Settings settings(file);
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt/a, b");
    EXPECT_EQ(settings.flag("MeetingReminders"), false);
    EXPECT_EQ(settings.flag("OnboardingDone"), std::nullopt);
    EXPECT_EQ(settings.number("OnboardingStep"), std::nullopt);
}

TEST_F(SettingsFile, SystemWideValuesShowWhereTheUserHasNone) {
    const test::ScopedVariable home("XDG_CONFIG_HOME", (folder / "home").string());
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, QString::fromStdString(folder / "etc"));
    QSettings(QSettings::NativeFormat, QSettings::SystemScope, "Varnet", "Varnet").setValue("RuntimeRoot", "/opt");
    Settings settings;
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt");
    settings.setText("RuntimeRoot", "/mine");
    EXPECT_EQ(settings.text("RuntimeRoot"), "/mine");
    settings.remove("RuntimeRoot");
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt");
    EXPECT_TRUE(std::filesystem::exists(folder / "home/Varnet/Varnet.conf"));
}

TEST_F(SettingsFile, TheCaptureModeIsWrittenAsRawValueAndReadInEitherForm) {
    Settings settings(file);
    CaptureModePreference::save(settings, CaptureMode::meeting);
    EXPECT_EQ(settings.text("CaptureMode"), "Microphone + system");
    const std::pair<const char*, std::optional<CaptureMode>> rows[] = {
        {"Microphone only", CaptureMode::microphone}, {"meeting", CaptureMode::meeting}, {"Meeting", std::nullopt}};
    for (const auto& [text, mode] : rows) {
        settings.setText("CaptureMode", text);
        EXPECT_EQ(CaptureModePreference::load(settings), mode) << text;
    }
}
