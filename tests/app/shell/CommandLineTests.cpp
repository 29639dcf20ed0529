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
        {"an export imports nothing",
         {"varnet", "--export-ui", "a.png", "b.wav"},
         {.exportsWindow = true, .exportPath = "a.png"}},
        {"an export without a picture",
         {"varnet", "--show-history", "--show-deleted", "--show-onboarding", "--export-ui"},
         {.exportsWindow = true, .showsOnboarding = true, .showsHistory = true, .showsDeleted = true}},
        {"scale and meeting of an export",
         {"varnet", "--export-ui", "a", "--export-scale", "1.5", "--select-meeting",
          "00000000-0000-0000-0000-000000000000"},
         {.exportsWindow = true, .exportPath = "a", .exportScale = 1.5, .selectMeeting = Uuid()}},
        {"neither a scale nor a meeting",
         {"varnet", "--export-ui", "a", "--export-scale", "2x", "--select-meeting", "1"},
         {.exportsWindow = true, .exportPath = "a"}},
        {"a scale below one",
         {"varnet", "--export-ui", "a", "--export-scale", "0.99"},
         {.exportsWindow = true, .exportPath = "a"}},
    };
    for (const auto& [name, arguments, expected] : cases) {
        auto line = CommandLine::parse(arguments);
        line.takeFiles(arguments);
        EXPECT_EQ(line, expected) << name;
    }
}

} // namespace varnet::test
