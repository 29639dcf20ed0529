#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/Text.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/RecordingCoordinator.h"
#include "tests/support/Await.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

class AppCommandsTest : public StoreFixture {
protected:
    /// Of engines that were started elsewhere: the notes engine is refused while the machine is a recording's.
    static EngineParts engineParts(const std::filesystem::path& folder) {
        EngineParts parts;
        parts.healthy = [](const std::string&) -> Task<bool> { co_return true; };
        parts.settingsFile = folder / "Varnet.conf";
        return parts;
    }

    EngineSupervisor engines{false, {}, folder / "key", engineParts(folder.path())};
    AppRouter router;
    AppCommands commands{store(), engines, router};
};

TEST_F(AppCommandsTest, ADeleteTakesInWhatIsBeingEditedAndLeavesItsPage) {
    const Uuid id = store().create("A").id;
    QObject::connect(&commands, &AppCommands::aboutToAct, &commands, [&] { store().setNotes("typed", id); });
    commands.openSelected();
    commands.deleteSelected();
    EXPECT_EQ(store().deletedMeetings().at(0).meeting.notes, "typed");
    EXPECT_TRUE(router.showingLibrary());
}

TEST_F(AppCommandsTest, ARecordingHasTheMachineAndAFailedStartGivesItBack) {
    sound.callFailure = sound.microphoneFailure = std::make_exception_ptr(Failure("no sound"));
    await(RecordingCoordinator::toggle(&store(), &engines, &router));
    EXPECT_EQ(store().error(), "no sound");
    EXPECT_TRUE(router.showingLibrary());
    EXPECT_TRUE(await(engines.startNotes()));
    sound.callFailure = sound.microphoneFailure = nullptr;
    await(RecordingCoordinator::toggle(&store(), &engines, &router));
    EXPECT_TRUE(router.showingMeeting());
    EXPECT_FALSE(commands.deleteEnabled());
    EXPECT_FALSE(await(engines.startNotes()));
}

TEST_F(AppCommandsTest, TranscribingAgainIsAskedFirstAndNeedsAudioAndAnIdleStore) {
    const Uuid other = store().create("Without audio").id;
    commands.askToTranscribeAgain();
    EXPECT_EQ(router.retrying(), "");
    auto meeting = Meeting::make("With audio");
    meeting.source = MeetingSource();
    meeting.audioFilename = "imported.wav";
    ASSERT_TRUE(store().saveImported(meeting));
    writeFileAtomically(repository.directory(meeting.id) / "imported.wav", "RIFF");
    ASSERT_TRUE(commands.transcribeAgainEnabled());

    const std::vector<std::pair<const char*, std::function<void()>>> ends{
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
    EXPECT_FALSE(commands.transcribeAgainEnabled());
    ASSERT_TRUE(eventually([&] { return !store().busy(); }));
    EXPECT_EQ(repository.history(meeting.id).entries.at(0).meeting.notes, "typed");
}

} // namespace
} // namespace varnet::test
