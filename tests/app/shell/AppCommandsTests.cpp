#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Text.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "tests/support/Await.h"
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

TEST_F(AppCommandsTest, TranscribingAgainIsAskedFirstAndNeedsAudioAndAnIdleStore) {
    const Uuid other = store().create("Without audio").id;
    EXPECT_FALSE(commands.transcribeAgainEnabled());
    commands.askToTranscribeAgain();
    EXPECT_EQ(router.retrying(), "");
    auto meeting = Meeting::make("With audio");
    meeting.source = MeetingSource();
    meeting.audioFilename = "imported.wav";
    ASSERT_TRUE(store().saveImported(meeting));
    writeFileAtomically(repository.directory(meeting.id) / "imported.wav", "RIFF");
    ASSERT_TRUE(commands.transcribeAgainEnabled());

    const std::vector<std::pair<const char*, std::function<void()>>> ends{
        {"dismissed", [&] { commands.dismissTranscribeAgain(); }},
        {"another page", [&] { commands.showDeleted(); }},
        {"another meeting", [&] { store().setSelectedID(other); }},
        {"deleted", [&] { store().deleteMeetings({meeting.id}); }},
    };
    for (const auto& [how, end] : ends) {
        store().setSelectedID(meeting.id);
        commands.askToTranscribeAgain();
        EXPECT_EQ(router.retrying(), toQString(meeting.id.text())) << how;
        end();
        EXPECT_EQ(router.retrying(), "") << how;
    }

    store().restoreMeetings({meeting.id});
    store().setSelectedID(meeting.id);
    commands.askToTranscribeAgain();
    QObject::connect(&commands, &AppCommands::aboutToAct, &commands, [&] { store().setNotes("typed", meeting.id); });
    commands.transcribeAgain();
    EXPECT_EQ(router.retrying(), "");
    EXPECT_TRUE(store().busy());
    EXPECT_FALSE(commands.transcribeAgainEnabled());
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(repository.history(meeting.id).entries.at(0).meeting.notes, "typed");
    EXPECT_TRUE(commands.transcribeAgainEnabled());
}

} // namespace
} // namespace varnet::test
