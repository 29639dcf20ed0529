#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

class AppCommandsTest : public StoreFixture {
protected:
    EngineSupervisor engines{false, {}, folder / "key"};
    AppRouter router;
    AppCommands commands{store(), engines, router};
};

TEST_F(AppCommandsTest, ADeleteTakesInWhatIsBeingEditedAndLeavesItsPage) {
    const Uuid id = store().create("A").id;
    QObject::connect(&commands, &AppCommands::aboutToAct, &commands, [&] { store().setNotes("typed", id); });
    commands.showDeleted();
    EXPECT_FALSE(commands.deleteEnabled());
    commands.openSelected();
    EXPECT_TRUE(commands.deleteEnabled());
    commands.deleteSelected();
    EXPECT_EQ(store().deletedMeetings().at(0).meeting.notes, "typed");
    EXPECT_TRUE(router.showingLibrary());
    EXPECT_FALSE(commands.deleteEnabled());
    EXPECT_EQ(commands.undoText(), "Undo Delete Meeting");
}

} // namespace
} // namespace varnet::test
