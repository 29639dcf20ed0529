#include "Varnet/engines/EngineState.h"
#include "Varnet/models/EngineLine.h"
#include "Varnet/models/ErrorBanner.h"
#include "Varnet/models/Theme.h"
#include "tests/support/StoreFixture.h"

#include <gtest/gtest.h>

namespace varnet::test {

TEST(EngineLines, EveryStateHasItsWordsAndColour) {
    const auto line = [](const char* words, Theme::Tone tone, const char* detail = "") {
        return EngineLine{words, static_cast<int>(tone), detail};
    };
    EXPECT_EQ(EngineLine::of(EngineState::ready(true)), line("Ready", Theme::Tone::ok));
    EXPECT_EQ(EngineLine::of(EngineState::missing("No files.")),
              line("Not installed", Theme::Tone::amber, "No files."));
    EXPECT_EQ(EngineLine::of(EngineState::failed("It crashed.")),
              line("Didn't start", Theme::Tone::rec, "It crashed."));
    EXPECT_EQ(EngineLine::of(EngineState::unknown()), line("Checking", Theme::Tone::faint));
    EXPECT_EQ(EngineLine::of(EngineState::starting()), line("Starting", Theme::Tone::amber));
    EXPECT_EQ(EngineLine::of(EngineState::stopped()), line("Off", Theme::Tone::faint));
}

class Banner : public StoreFixture {};

TEST_F(Banner, SaysWhatIsNotSavedUntilARetryWorks) {
    const auto meeting = store().create("Planning");
    ErrorBanner banner(store());
    EXPECT_EQ(banner.saveMessage(), "");

    std::filesystem::rename(root, folder / "away");
    {
        QFile(QString::fromStdString(root)).open(QIODevice::WriteOnly);
    } // a file where the library was
    store().setTitle("Budget", meeting.id);
    EXPECT_TRUE(banner.saveMessage().startsWith("Changes to a meeting have not been saved"));
    banner.retrySaving();
    EXPECT_NE(banner.saveMessage(), "");

    std::filesystem::remove(root);
    std::filesystem::rename(folder / "away", root);
    banner.retrySaving();
    EXPECT_EQ(banner.saveMessage(), "");
    EXPECT_EQ(onDisk(meeting.id).title, "Budget");

    store().setError("Something happened.");
    EXPECT_EQ(banner.message(), "Something happened.");
    banner.dismiss();
    EXPECT_EQ(store().error(), std::nullopt);
}

} // namespace varnet::test
