#include "Varnet/models/AudioPlayback.h"
#include "tests/support/Await.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/WavFile.h"

#include <gmock/gmock.h>

namespace varnet::test {
namespace {

using testing::ElementsAre;

/// What was asked of the sound server.
struct FakeOutput final : AudioOutput {
    struct Server {
        std::vector<std::string> calls; ///< since they were looked at last
        double position = 0;            ///< as it is heard
        Callbacks callbacks;
    };

    explicit FakeOutput(Server& of) : server(of) {}
    void play(const std::filesystem::path& wav, double position, double rate) override {
        char text[80];
        std::snprintf(text, sizeof text, "play %s from %g at %g", wav.filename().c_str(), position, rate);
        server.calls.emplace_back(text);
        server.position = position;
    }
    void pause() override { server.calls.emplace_back("pause"); }
    double position() const override { return server.position; }

    Server& server;
};

struct Player : StoreFixture {
    const ScopedVariable cache{"XDG_CACHE_HOME", (folder / "cache").c_str()};
    FakeOutput::Server server;
    Uuid first, second;
    std::unique_ptr<AudioPlayback> playback;

    Player() {
        second = make("Second", 20);
        first = make("First", 100);
        openStore();
        store().setSelectedID(first);
        playback = std::make_unique<AudioPlayback>(store(), [this](AudioOutput::Callbacks callbacks) {
            server.callbacks = std::move(callbacks);
            return std::make_unique<FakeOutput>(server);
        });
    }
    ~Player() override { playback.reset(); }

    /// A meeting of `seconds` with a turn each ten seconds, of which the last is shorter.
    Uuid make(const char* title, int seconds) {
        auto meeting = Meeting::make(title);
        meeting.audioFilename = "meeting.wav";
        for (int start = 10; start < seconds; start += 10)
            meeting.turns.push_back({Uuid::random(), double(start), start + 5.0, "Speaker 1", "Words", {}});
        repository.save(meeting);
        writeRecording(repository.directory(meeting.id) / "meeting.wav",
                       std::vector<std::int16_t>(static_cast<std::size_t>(seconds) * 16'000, 16'384));
        return meeting.id;
    }

    std::vector<std::string> calls() { return std::exchange(server.calls, {}); }
};

TEST_F(Player, PlaysFromWhatIsHeardToTheEndOrAFailure) {
    playback->seek(65.4);
    playback->setRate(1.5);
    playback->setRate(3);
    EXPECT_THAT(calls(), ElementsAre());
    playback->toggle();
    EXPECT_THAT(calls(), ElementsAre("play meeting.wav from 65.4 at 1.5"));
    server.position = 70;
    ASSERT_TRUE(eventually([&] { return playback->position() == 70; }));
    playback->skip(-10);
    server.position = 61;
    playback->setRate(1);
    playback->seek(1'000);
    EXPECT_THAT(calls(), ElementsAre("play meeting.wav from 60 at 1.5", "play meeting.wav from 61 at 1",
                                     "play meeting.wav from 100 at 1"));
    server.callbacks.onEnded();
    EXPECT_FALSE(playback->playing());
    playback->play();
    server.position = 3;
    playback->toggle();
    EXPECT_THAT(calls(), ElementsAre("play meeting.wav from 0 at 1", "pause"));
    playback->play();
    server.position = 12;
    server.callbacks.onFailed(std::make_exception_ptr(Failure("No sound server.")));
    EXPECT_FALSE(playback->playing());
    EXPECT_EQ(playback->problem(), "No sound server.");
    EXPECT_EQ(playback->position(), 12);
}

TEST_F(Player, MarksTheTurnThatIsHeard) {
    for (const auto& [position, row] :
         std::vector<std::pair<double, int>>{{9.9, -1}, {10, 0}, {19.9, 0}, {20, 1}, {94.9, 8}, {95, -1}}) {
        playback->seek(position);
        EXPECT_EQ(playback->playingTurn(), row) << position;
    }
}

TEST_F(Player, StopsForARecordingUntilItsFilesAreClosed) {
    playback->play();
    sound.startsPass.reset();
    auto start = store().startRecording();
    ASSERT_TRUE(eventually([&] { return !sound.captures.empty(); }));
    EXPECT_THAT(calls(), ElementsAre("play meeting.wav from 0 at 1", "pause"));
    const auto refuse = [&](const char* when) {
        store().setSelectedID(first);
        playback->toggle();
        playback->playTurn(QString::fromStdString(store().selected()->turns[0].id.text()));
        EXPECT_THAT(calls(), ElementsAre()) << when;
        EXPECT_FALSE(playback->enabled()) << when;
    };
    refuse("while it starts");
    sound.startsPass.set();
    await(std::move(start));
    refuse("while it runs");
    store().setSelectedID(store().recordingID());
    EXPECT_FALSE(playback->present()) << "the recording's own file";
    sound.deliver(CaptureSource::microphone, 16'000);
    await(store().stopRecording());
    EXPECT_TRUE(playback->enabled() && playback->present());
}

TEST_F(Player, BelongsToTheMeetingOnDisplay) {
    playback->play();
    server.position = 30;
    store().setNotes("typed", first);
    EXPECT_TRUE(playback->playing()) << "a change that leaves the audio alone";
    store().setSelectedID(second);
    EXPECT_FALSE(playback->playing());
    EXPECT_EQ(playback->position(), 0);
    ASSERT_TRUE(eventually([&] { return playback->peaks().size() == 2'000; }));
    EXPECT_EQ(playback->peaks().front(), 0.5);
    store().setSelectedID({});
    EXPECT_FALSE(playback->present());

    for (const std::uint32_t rate : {0U, 999U, 384'001U, 0xFFFF'FFFFU}) {
        store().setSelectedID(second);
        writeRecording(repository.directory(first) / "meeting.wav", std::vector<std::int16_t>(100), rate);
        store().setSelectedID(first);
        EXPECT_FALSE(playback->present()) << rate;
    }
    calls();
    playback->toggle();
    playback->seek(3);
    EXPECT_THAT(calls(), ElementsAre());
}

} // namespace
} // namespace varnet::test
