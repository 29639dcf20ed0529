#include "Varnet/models/ErrorBanner.h"
#include "tests/support/StoreFixture.h"

#include <gtest/gtest.h>

namespace varnet::test {

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
