#include "Varnet/models/ErrorBanner.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {

using Banner = StoreFixture;

TEST_F(Banner, SaysWhatIsNotSavedUntilARetryWorks) {
    const auto meeting = store().create("Planning");
    ErrorBanner banner(store());
    std::optional<FileInTheWay> noStorage(root);
    store().setTitle("Budget", meeting.id);
    EXPECT_TRUE(banner.saveMessage().startsWith("Changes to a meeting have not been saved"));
    noStorage.reset();
    banner.retrySaving();
    EXPECT_EQ(banner.saveMessage(), "");
}

} // namespace varnet::test
