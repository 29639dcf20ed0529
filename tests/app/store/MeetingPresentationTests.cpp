#include "Varnet/store/MeetingPresentation.h"

#include <gtest/gtest.h>

#include <cmath>

namespace varnet {
TEST(MeetingPresentation, ClockRoundsAndShowsHoursOnlyFromOneHourOn) {
    const std::pair<double, const char*> rows[] = {{-3, "0:00"},      {0.5, "0:01"},       {59.4, "0:59"},
                                                   {3599.4, "59:59"}, {3599.5, "1:00:00"}, {360000, "100:00:00"}};
    for (const auto& [seconds, text] : rows)
        EXPECT_EQ(MeetingPresentation::clock(seconds), text) << seconds;
    EXPECT_DEATH(MeetingPresentation::clock(std::nan("")), "broken invariant");
}

} // namespace varnet
