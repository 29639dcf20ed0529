#include "Varnet/platform/Paths.h"

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
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", "/home/ann");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.variable);
        const QByteArray saved = qgetenv(row.variable);
        qputenv(row.variable, "/d");
        EXPECT_EQ(row.folder(), row.given);
        qputenv(row.variable, "relative/folder");
        EXPECT_EQ(row.folder(), row.belowHome);
        qputenv(row.variable, "");
        EXPECT_EQ(row.folder(), row.belowHome);
        if (saved.isEmpty())
            qunsetenv(row.variable);
        else
            qputenv(row.variable, saved);
    }
    qputenv("HOME", home);
}

TEST(Paths, BuildTreeHasNoResources) {
    EXPECT_EQ(Paths::resources(), std::nullopt);
}
