#include "Varnet/shell/CommandLine.h"

#include <gtest/gtest.h>

namespace varnet::test {

TEST(CommandLines, AreReadByTheirRules) {
    const std::tuple<const char*, std::vector<std::string>, CommandLine> cases[] = {
        {"flag at the end", {"varnet", "--storage-root"}, {}},
        {"previews count only in an export",
         {"varnet", "--show-meeting", "--preview-recording", "--appearance", "dark"},
         {}},
        {"files are what is neither a flag nor its value",
         {"varnet", "a.m4a", "--storage-root", "/a", "--unknown", "file:///b%20c.wav", "--appearance", "dark"},
         {.storageRoot = "/a", .files = {"a.m4a", "file:///b%20c.wav"}}},
        {"behind two dashes are only files",
         {"varnet", "--storage-root", "--", "a", "--", "--export-ui", "--", "-b", "--storage-root", "c"},
         {.storageRoot = "--", .files = {"a", "--export-ui", "--", "-b", "--storage-root", "c"}}},
        {"an export imports nothing", {"varnet", "--export-ui", "a.png", "b.wav"}, {.exportsWindow = true}},
    };
    for (const auto& [name, arguments, expected] : cases) {
        auto line = CommandLine::parse(arguments);
        line.takeFiles(arguments);
        EXPECT_EQ(line, expected) << name;
    }
}

} // namespace varnet::test
