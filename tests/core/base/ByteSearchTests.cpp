#include "MeetingCore/base/ByteSearch.h"

#include <gtest/gtest.h>

namespace varnet {
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

} // namespace varnet
