#include "Varnet/shell/CommandLine.h"

#include <gtest/gtest.h>

namespace varnet::test {

TEST(CommandLines, AreReadByTheirRules) {
    const std::tuple<const char*, std::vector<std::string>, CommandLine> cases[] = {
        {"flag at the end", {"varnet", "--storage-root"}, {}},
        {"the first one decides", {"varnet", "--storage-root", "/a", "--storage-root", "/b"}, {.storageRoot = "/a"}},
        {"a value may look like a flag", {"varnet", "--storage-root", "--x"}, {.storageRoot = "--x"}},
        {"previews count only in an export",
         {"varnet", "--show-meeting", "--preview-recording", "--appearance", "dark"},
         {}},
        {"export",
         {"varnet", "--export-ui", "a.png", "--show-meeting", "--appearance", "dark"},
         {.exportsWindow = true, .appearance = "dark", .showsMeeting = true}},
        {"files are what is neither a flag nor its value",
         {"varnet", "a.m4a", "--storage-root", "/a", "--unknown", "file:///b%20c.wav", "--appearance", "dark"},
         {.storageRoot = "/a", .files = {"a.m4a", "file:///b%20c.wav"}}},
        {"behind two dashes are only files",
         {"varnet", "--storage-root", "--", "a", "--", "--export-ui", "--", "-b", "--storage-root", "c"},
         {.storageRoot = "--", .files = {"a", "--export-ui", "--", "-b", "--storage-root", "c"}}},
        {"an export imports nothing", {"varnet", "--export-ui", "a.png", "b.wav"}, {.exportsWindow = true}},
        {"call missing",
         {"varnet", "--preview-call-missing", "--preview-recording", "--export-ui", "a.png"},
         {.exportsWindow = true, .previewsRecording = true, .previewsCallMissing = true}},
    };
    for (const auto& [name, arguments, expected] : cases) {
        auto line = CommandLine::parse(arguments);
        line.takeFiles(arguments);
        EXPECT_EQ(line, expected) << name;
    }
}

} // namespace varnet::test
