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
    EXPECT_EQ(EngineLine::of(EngineState::stopped()), line("Off", Theme::Tone::faint));
}

class Banner : public StoreFixture {};

TEST_F(Banner, SaysWhatIsNotSavedUntilARetryWorks) {
    const auto meeting = store().create("Planning");
    ErrorBanner banner(store());
    EXPECT_EQ(banner.saveMessage(), "");

    std::optional<FileInTheWay> noStorage(root);
    store().setTitle("Budget", meeting.id);
    EXPECT_TRUE(banner.saveMessage().startsWith("Changes to a meeting have not been saved"));
    banner.retrySaving();
    EXPECT_NE(banner.saveMessage(), "");

    noStorage.reset();
    banner.retrySaving();
    EXPECT_EQ(banner.saveMessage(), "");

    store().setError("Something happened.");
    EXPECT_EQ(banner.message(), "Something happened.");
    banner.dismiss();
    EXPECT_EQ(store().error(), std::nullopt);
}

} // namespace varnet::test
