#include "Varnet/capture/CaptureLevels.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/RecordingClock.h"
#include "Varnet/models/TrayState.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "tests/support/StoreFixture.h"

#include <QGuiApplication>

namespace varnet::test {
namespace {

/// The rows that are there, as lines; what cannot be chosen is in brackets.
std::string menu(const TrayState& tray) {
    QStringList lines;
    for (const auto& row : tray.content().rows)
        if (row.visible)
            lines << (row.divider ? "-" : row.enabled ? row.text : '[' + row.text + ']');
    return lines.join('\n').toStdString();
}

} // namespace

TEST_F(StoreFixture, TheTrayItemFollowsTheRecording) {
    QGuiApplication::setApplicationDisplayName("Zelvik");
    EngineSupervisor engines{false, {}, folder / "key"};
    AppRouter router;
    const AppCommands commands{store(), engines, router};
    const RecordingClock clock(store());
    const TrayState tray(store(), engines, clock, commands);
    const std::string rest = "-\nOpen Zelvik\n-\n[Speech engine: Checking]\n[Notes engine: Checking]\n-\nSettings\n"
                             "Quit Zelvik";
    EXPECT_EQ(menu(tray), "New Recording\n" + rest);
    EXPECT_EQ(tray.content().tooltip, "Not recording");

    await(store().startRecording());
    store().setTitle("Plan\nfor " + std::string(60, 'x'), *store().recordingID());
    EXPECT_EQ(menu(tray), "Stop Recording · 0:00\n[Plan for " + std::string(50, 'x') + "…]\n" + rest);
    EXPECT_EQ(tray.content().icon, "org.varnet.Varnet-recording-symbolic");
    store().levels().preview(0.1F, 0, true);
    EXPECT_EQ(tray.content().rows[TrayState::callMissing].text, "Not hearing the call. Open Zelvik for details.");
    EXPECT_TRUE(tray.content().rows[TrayState::callMissing].visible);
    EXPECT_EQ(tray.content().icon, "org.varnet.Varnet-call-missing-symbolic");
    EXPECT_EQ(tray.content().tooltip, "Recording, not hearing the call · 0:00");

    await(store().stopRecording());
    EXPECT_EQ(menu(tray), "New Recording\n" + rest);
    EXPECT_EQ(tray.content().icon, "org.varnet.Varnet-tray-symbolic");
}

} // namespace varnet::test
