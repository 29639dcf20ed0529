#include "Varnet/engines/EngineLayout.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace varnet;
namespace fs = std::filesystem;

TEST(EngineLayouts, ResolveInTheirOrder) {
    const test::TemporaryFolder folder;
    Settings settings(folder / "settings.conf");
    test::ScopedVariable runtime("VARNET_RUNTIME", std::nullopt);
    fs::create_directories(folder / "with/engine/arm64");
    fs::create_directories(folder / "without");
    const EngineLayout bundled{folder / "with", true};
    const struct {
        const char* name;
        std::optional<std::string> variable;
        const char *stored, *resources;
        std::optional<EngineLayout> expected;
    } rows[] = {
        {"variable before stored", "/variable", "/stored", "with", EngineLayout{"/variable", false}},
        {"stored before resources", {}, "/stored", "with", EngineLayout{"/stored", false}},
        {"empty variable hides stored", "", "/stored", "with", bundled},
        {"resources without engine", {}, "", "without", std::nullopt},
    };
    for (const auto& row : rows) {
        runtime.set(row.variable);
        settings.setText("RuntimeRoot", row.stored);
        EXPECT_EQ(EngineLayout::resolve(settings, folder / row.resources), row.expected) << row.name;
    }
}
