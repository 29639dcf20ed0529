#include "Varnet/shell/StorageLock.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace varnet::test {

TEST(StorageLocks, OneProcessHoldsALibraryUnderAllItsPaths) {
    const TemporaryFolder folder;
    const auto root = folder / "Varnet" / "meetings";
    {
        const StorageLock first(root);
        EXPECT_TRUE(first.held());
        EXPECT_EQ(StorageLock(root).holder(), getpid());
        EXPECT_FALSE(std::filesystem::exists(root)) << "the library itself is not made";
        std::filesystem::create_directories(root);
        std::filesystem::create_directory_symlink(root, folder / "link");
        for (const auto& same : {root, folder / "link", folder / "Varnet/meetings/", folder / "x/../Varnet/meetings"})
            EXPECT_FALSE(StorageLock(same).held()) << same;
        EXPECT_TRUE(StorageLock(folder / "Varnet" / "others").held()) << "another library is another lock";
    }
    EXPECT_TRUE(StorageLock(root).held());
}

} // namespace varnet::test
