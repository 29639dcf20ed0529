#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/shell/RecordingCoordinator.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

/// Beside a notes engine that was started elsewhere, which shows whether the supervisor believes in a recording: only
/// then it refuses that engine.
class RecordingCoordinatorTest : public StoreFixture {
protected:
    static EngineParts engineParts(const std::filesystem::path& folder) {
        EngineParts parts;
        parts.healthy = [](const std::string&) -> Task<bool> { co_return true; };
        parts.settingsFile = folder / "Varnet.conf";
        return parts;
    }

    Task<> toggle() { return RecordingCoordinator::toggle(&store(), &engines, &router); }
    bool enginesKnowOfARecording() { return !await(engines.startNotes()); }

    EngineSupervisor engines{false, {}, folder / "key", engineParts(folder.path())};
    AppRouter router;
};

TEST_F(RecordingCoordinatorTest, ARecordingHasTheMachineAndAFailedStartGivesItBack) {
    sound.callFailure = sound.microphoneFailure = std::make_exception_ptr(Failure("no sound"));
    await(toggle());
    EXPECT_FALSE(store().recording());
    EXPECT_EQ(store().error(), "no sound");
    EXPECT_EQ(router.page(), AppRouter::Page::library);
    EXPECT_FALSE(enginesKnowOfARecording());

    sound.callFailure = sound.microphoneFailure = nullptr;
    await(toggle());
    EXPECT_TRUE(store().recording());
    EXPECT_EQ(router.page(), AppRouter::Page::meeting);
    EXPECT_TRUE(enginesKnowOfARecording());
}

} // namespace
} // namespace varnet::test
