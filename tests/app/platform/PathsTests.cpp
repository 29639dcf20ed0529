#include "Varnet/platform/Paths.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

using namespace varnet;

TEST(Paths, FollowTheEnvironmentAtEachCall) {
    const struct {
        const char* variable;
        std::filesystem::path (*folder)();
        const char* given;
        const char* belowHome;
    } rows[] = {
        {"XDG_DATA_HOME", Paths::applicationSupport, "/d", "/home/ann/.local/share"},
        {"XDG_CONFIG_HOME", Paths::configuration, "/d", "/home/ann/.config"},
        {"XDG_STATE_HOME", Paths::logs, "/d/Varnet/logs", "/home/ann/.local/state/Varnet/logs"},
        {"XDG_CACHE_HOME", Paths::caches, "/d/Varnet", "/home/ann/.cache/Varnet"},
    };
    const test::ScopedVariable home("HOME", "/home/ann");
    for (const auto& row : rows)
        for (const char* value : {"/d", "relative/folder", ""}) {
            const test::ScopedVariable variable(row.variable, value);
            EXPECT_EQ(row.folder(), *value == '/' ? row.given : row.belowHome) << row.variable;
        }
}
