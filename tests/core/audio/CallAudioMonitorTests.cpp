#include "MeetingCore/audio/CallAudioMonitor.h"

#include <gtest/gtest.h>

namespace varnet {
namespace {

TEST(CallAudioMonitor, RaisesTheAlarmAfterThirtySilentSecondsSinceTheUsersFirstWord) {
    CallAudioMonitor monitor(30);
    const struct {
        float microphone, call;
        double time;
        bool alarm;
    } rows[] = {
        {0.0099F, 0, 0, false},                        // too quiet to be speech
        {0, 0.5F, 5, false},      {0, 0, 1000, false}, // nobody has spoken yet
        {0.01F, 0, 1020, false},  {0, 0, 1049.9, false},
        {0, 0.0019F, 1050, true}, {0, 0.002F, 1060, false}, // sound from the call clears it at once
        {1, 0, 1089.9, false},    {0, 0, 1090, true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(monitor.observe(row.microphone, row.call, row.time), row.alarm) << row.time;
}

} // namespace
} // namespace varnet
