#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Text.h"
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

TEST_F(AppCommandsTest, TheOfferedUndoTakesBackItsDeleteWhateverCameAfterIt) {
    const Uuid b = store().create("B").id, a = store().create("A").id;
    store().setLibrarySelection({a, b});
    commands.deleteSelected();
    commands.restoreDeleted({toQString(a.text()), QStringLiteral("no id")});
    EXPECT_TRUE(store().pendingUndo());
    commands.undoDelete();
    EXPECT_EQ(store().meetings().size(), 2U);
    EXPECT_EQ(store().pendingUndo(), std::nullopt);

    for (int step = 0; step < 2; ++step) // the restores, of which each was one more step
        commands.undo();
    EXPECT_EQ(store().meetings().size(), 0U);
    commands.undoDelete();
    EXPECT_EQ(store().meetings().size(), 1U);
    EXPECT_EQ(store().error(), std::nullopt);
}

} // namespace
} // namespace varnet::test
