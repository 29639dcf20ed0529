#include "Varnet/platform/Settings.h"
#include "tests/support/ScopedVariable.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace varnet;

namespace {

struct SettingsFile : ::testing::Test {
    QTemporaryDir folder;
    std::filesystem::path file = std::filesystem::path(folder.path().toStdString()) / "a/Varnet.conf";

    void write(const QByteArray& text) {
        std::filesystem::create_directories(file.parent_path());
        QFile out(QString::fromStdString(file.string()));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(text);
    }

    QByteArray written() {
        QFile in(QString::fromStdString(file.string()));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
};

} // namespace

TEST_F(SettingsFile, ValuesAreInTheFileAtOnceUnderTheirOwnKeys) {
    Settings settings(file);
    settings.setText("CaptureMode", "Microphone + system");
    settings.setFlag("OnboardingDone", true);
    settings.setNumber("OnboardingStep", 3);
    EXPECT_EQ(written(), "[General]\nCaptureMode=Microphone + system\nOnboardingDone=true\nOnboardingStep=3\n");
    settings.remove("CaptureMode");
    EXPECT_EQ(written(), "[General]\nOnboardingDone=true\nOnboardingStep=3\n");
    EXPECT_EQ(Settings(file).text("CaptureMode"), std::nullopt);
}

TEST_F(SettingsFile, TextsComeBackAsTheyWere) {
    for (const char* text : {"/home/änn/a, b;c", "", "@x", " \"quoted\" \n", "100%\\"}) {
        Settings(file).setText("RuntimeRoot", text);
        EXPECT_EQ(Settings(file).text("RuntimeRoot"), text);
    }
}

TEST_F(SettingsFile, FilesEditedByHandAreRead) {
    write("[General]\nRuntimeRoot=/opt/a, b\nMeetingReminders=0\nOnboardingDone=perhaps\nOnboardingStep=two\n");
    Settings settings(file);
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt/a, b");
    EXPECT_EQ(settings.flag("MeetingReminders"), false);
    EXPECT_EQ(settings.flag("OnboardingDone"), std::nullopt);
    EXPECT_EQ(settings.number("OnboardingStep"), std::nullopt);
}

TEST_F(SettingsFile, SystemWideValuesShowWhereTheUserHasNone) {
    const test::ScopedVariable home("XDG_CONFIG_HOME", folder.filePath("home").toStdString());
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, folder.filePath("etc"));
    QSettings(QSettings::NativeFormat, QSettings::SystemScope, "Varnet", "Varnet").setValue("RuntimeRoot", "/opt");
    Settings settings;
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt");
    settings.setText("RuntimeRoot", "/mine");
    EXPECT_EQ(settings.text("RuntimeRoot"), "/mine");
    settings.remove("RuntimeRoot");
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt");
    EXPECT_TRUE(QFile::exists(folder.filePath("home/Varnet/Varnet.conf")));
}
