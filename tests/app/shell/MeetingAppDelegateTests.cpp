#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/models/ErrorBanner.h"
#include "Varnet/shell/MeetingAppDelegate.h"
#include "tests/support/StoreFixture.h"

namespace varnet::test {
namespace {

class Quit : public StoreFixture {
protected:
    Quit() {
        QObject::connect(&delegate, &MeetingAppDelegate::terminated, &delegate, [this] { ++terminations; });
        QObject::connect(&delegate, &MeetingAppDelegate::quitCancelled, &delegate, [this] { ++cancellations; });
        delegate.adopt(&store(), nullptr);
    }

    MeetingAppDelegate delegate;
    int terminations = 0;
    int cancellations = 0;
};

} // namespace

TEST_F(Quit, StopsARecordingFirst) {
    await(store().startRecording());
    sound.deliver(CaptureSource::microphone, 4000);
    sound.deliver(CaptureSource::system, 4000);
    delegate.quit();
    delegate.quit();
    EXPECT_EQ(terminations, 0) << "the recording has not been closed yet";
    EXPECT_TRUE(eventually([this] { return terminations > 0; }));
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(onDisk().status, "Audio saved · live transcript");
}

TEST_F(Quit, AsksOnceWhenChangesAreNotSaved) {
    const Uuid meeting = store().create("Planning").id;
    std::optional<FileInTheWay> noStorage(root);
    store().setTitle("Budget", meeting);
    const ErrorBanner banner(store());
    EXPECT_TRUE(banner.saveMessage().startsWith("Changes to “Budget” have not been saved"));
    delegate.quit();
    EXPECT_TRUE(delegate.askingToSave());
    delegate.keepOpen();
    EXPECT_FALSE(delegate.askingToSave());
    EXPECT_EQ(cancellations, 1);

    delegate.quit();
    delegate.retrySavingAndQuit();
    EXPECT_FALSE(delegate.askingToSave()) << "a second failure asks no second time";
    EXPECT_EQ(cancellations, 2);
    EXPECT_EQ(terminations, 0);
    EXPECT_EQ(store().meeting(meeting)->title, "Budget");

    delegate.quit();
    noStorage.reset();
    await(store().startRecording());
    delegate.retrySavingAndQuit();
    EXPECT_EQ(terminations, 0) << "a recording that began meanwhile is closed first";
    EXPECT_TRUE(eventually([this] { return terminations > 0; }));
    EXPECT_FALSE(store().recording());
    EXPECT_EQ(onDisk(meeting).title, "Budget");
    EXPECT_EQ(banner.saveMessage(), "");
}

} // namespace varnet::test
