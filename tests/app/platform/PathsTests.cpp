#include "Varnet/platform/Paths.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Paths, FollowTheEnvironmentAtEachCall) {
    struct Row {
        const char* variable;
        std::filesystem::path (*folder)();
        const char* given;
        const char* belowHome;
    };
    const Row rows[] = {
        {"XDG_DATA_HOME", Paths::applicationSupport, "/d", "/home/ann/.local/share"},
        {"XDG_CONFIG_HOME", Paths::configuration, "/d", "/home/ann/.config"},
        {"XDG_STATE_HOME", Paths::logs, "/d/Varnet/logs", "/home/ann/.local/state/Varnet/logs"},
        {"XDG_CACHE_HOME", Paths::caches, "/d/Varnet", "/home/ann/.cache/Varnet"},
    };
    const test::ScopedVariable home("HOME", "/home/ann");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.variable);
        test::ScopedVariable variable(row.variable, "/d");
        EXPECT_EQ(row.folder(), row.given);
        variable.set("relative/folder");
        EXPECT_EQ(row.folder(), row.belowHome);
        variable.set("");
        EXPECT_EQ(row.folder(), row.belowHome);
    }
}
