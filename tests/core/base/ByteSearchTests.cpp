#include "MeetingCore/base/ByteSearch.h"

#include <gtest/gtest.h>

#include <string>

namespace varnet {
namespace {

TEST(ByteSearch, FindsAPartOfEveryLengthAtEveryPlace) {
    for (std::size_t length = 1; length <= 40; ++length) {
        const std::string part = length == 1 ? "b" : "b" + std::string(length - 2, 'a') + "c";
        for (std::size_t before = 0; before <= 70; ++before)
            for (const std::size_t after : {0, 1, 31, 64}) {
                const std::string text = std::string(before, 'a') + part + std::string(after, 'b');
                EXPECT_EQ(findBytes(text, part), before) << "length " << length;
                EXPECT_EQ(findBytes(text.substr(0, before + length - 1), part), std::string::npos);
            }
    }
}

TEST(ByteSearch, LooksFurtherWhereOnlyTheEndsOfThePartMatch) {
    EXPECT_EQ(findBytes("axxd abxd abcd" + std::string(40, ' '), "abcd"), 10U);
    EXPECT_EQ(findBytes(std::string(100, 'a') + "ba", "aba"), 99U);
    EXPECT_EQ(findBytes("anything", ""), 0U);
    EXPECT_EQ(findBytes("", "a"), std::string::npos);
}

} // namespace
} // namespace varnet
