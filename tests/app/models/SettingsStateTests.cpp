#include "Varnet/models/Onboarding.h"
#include "Varnet/models/SettingsState.h"
#include "tests/support/EngineFixture.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

class SettingsStates : public StoreFixture {
protected:
    static Task<bool> silent(std::string) { co_return false; }

    std::unique_ptr<EngineSupervisor> bundledEngines(bool accelerated) {
        EngineParts parts;
        parts.healthy = silent;
        parts.machine = {accelerated, "x86_64"};
        parts.settingsFile = file;
        return std::make_unique<EngineSupervisor>(false, EngineLayout{other / "root", true}, other / "key", parts);
    }

    TemporaryFolder other;
    std::filesystem::path file = other / "settings.conf";
    ScopedVariable configuration{"XDG_CONFIG_HOME", other.path().string()};
    Settings settings{file};
    Onboarding onboarding{settings};
    std::unique_ptr<EngineSupervisor> engines = bundledEngines(true);
    SettingsState state{store(), *engines, settings, onboarding};
};

} // namespace

TEST_F(SettingsStates, CaptureIsChosenForTheNextStartsButNotForARunningRecording) {
    EXPECT_EQ(state.captureMode(), 0);
    state.chooseCaptureMode(1);
    EXPECT_EQ(store().captureMode(), CaptureMode::microphone);
    EXPECT_EQ(CaptureModePreference::load(Settings(file)), CaptureMode::microphone);
    await(store().startRecording());
    ASSERT_TRUE(state.recording());
    state.chooseCaptureMode(0);
    EXPECT_EQ(state.captureMode(), 1);
    EXPECT_EQ(CaptureModePreference::load(Settings(file)), CaptureMode::microphone);
}

TEST_F(SettingsStates, WhatCannotBeDoneIsSaidAndChangesNothing) {
    std::ofstream(other / "autostart") << "in the way of the folder";
    state.setStartsAtLogin(true);
    EXPECT_FALSE(state.startsAtLogin());
    EXPECT_NE(state.problem(), "");

    const auto before = engines->runtimeRoot();
    state.chooseRuntimeRoot(QUrl("smb://server/engines"));
    EXPECT_EQ(state.problem(), "The engines can only be in a folder of this computer.");
    EXPECT_EQ(engines->runtimeRoot(), before);
    state.chooseRuntimeRoot(QUrl::fromLocalFile("/opt/engines"));
    EXPECT_EQ(state.problem(), "");
    EXPECT_EQ(state.runtimeRoot(), "/opt/engines");
    EXPECT_EQ(settings.text("RuntimeRoot"), "/opt/engines");

    std::filesystem::remove_all(store().storageRoot());
    state.showMeetings();
    EXPECT_TRUE(eventually([&] { return state.problem().contains("could not be found"); }));
}

TEST_F(SettingsStates, OnlyACrashOfTheFastModeCanBeTriedAgain) {
    EXPECT_FALSE(state.slow());
    settings.setText("SpeechEngineProcessorOnlyVersion", EngineLayout::appVersion());
    EXPECT_TRUE(state.slow() && state.fastModeCrashed());
    state.tryFastMode();
    EXPECT_FALSE(state.slow());

    const auto weak = bundledEngines(false);
    const SettingsState there(store(), *weak, settings, onboarding);
    EXPECT_TRUE(there.slow());
    EXPECT_FALSE(there.fastModeCrashed());
}

} // namespace varnet::test
