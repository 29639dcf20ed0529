#include "tests/support/EngineFixture.h"

#include <regex>

using namespace varnet;
using namespace std::chrono_literals;
using test::await;
using test::Engines;
using test::EngineWorld;
using test::eventually;
using ::testing::ElementsAre;

namespace {

constexpr const char* serveNotes = "trap 'rm -f notes.up; exit' TERM; touch notes.up; while :; do sleep 0.01; done";

} // namespace

TEST_F(Engines, NotesStartOnDemandAndStopAfterTenIdleMinutes) {
    installDevelopmentNotes(serveNotes);
    const auto engines = make();
    EXPECT_TRUE(engines->notesAvailable());
    EXPECT_TRUE(await(engines->startNotes()));
    EXPECT_EQ(engines->notes(), EngineState::ready(false));
    EXPECT_TRUE(await(engines->startNotes())) << "it answers";
    engines->scheduleNotesIdleStop();
    EXPECT_THAT(world->delays, ElementsAre(600s, 600s, 600s)) << "each use begins the time anew";
    EXPECT_EQ(starts(), 1U);
    test::settle();
    EXPECT_TRUE(lastRuns());

    world->delaysPass = true;
    engines->scheduleNotesIdleStop();
    EXPECT_TRUE(eventually([&] { return engines->notes() == EngineState::stopped(); }));
    EXPECT_TRUE(eventually([&] { return !lastRuns(); }));
}

TEST_F(Engines, TheKeyOfTheNotesEngineIsPrivateAndKept) {
    installDevelopmentNotes(serveNotes);
    const auto engines = make();
    EXPECT_TRUE(await(engines->startNotes()));
    const std::string key = readFile(keyFile);
    EXPECT_TRUE(std::regex_match(key, std::regex("[A-Za-z0-9_-]{43}\n"))) << key;
    EXPECT_EQ(std::filesystem::status(keyFile).permissions(), std::filesystem::perms(0600));
    const std::string arguments = lines("arguments").back();
    for (const auto& part : {std::string("--host 127.0.0.1 --port 17864 --ctx-size 8192 --parallel 1"),
                             "--api-key-file " + keyFile.string()})
        EXPECT_THAT(arguments, ::testing::HasSubstr(part));
    const auto again = make();
    EXPECT_TRUE(await(again->startNotes()));
    EXPECT_EQ(readFile(keyFile), key);
}

TEST_F(Engines, ARecordingEndsOwnedNotesWithoutAWord) {
    installDevelopmentNotes(serveNotes);
    const auto engines = make();
    EXPECT_TRUE(await(engines->startNotes()));
    EXPECT_EQ(await(engines->prepareForRecording()), std::nullopt);
    EXPECT_EQ(engines->notes(), EngineState::stopped());
    EXPECT_TRUE(eventually([&] { return !lastRuns(); }));

    const std::size_t asked = world->asked.size();
    EXPECT_FALSE(await(engines->startNotes()));
    EXPECT_EQ(world->asked.size(), asked) << "refused before asking";
    EXPECT_EQ(engines->notes(), EngineState::stopped());
    engines->recordingEnded();
    EXPECT_TRUE(await(engines->startNotes()));
}

TEST_F(Engines, ARecordingBringsTheSpeechEngineUpAndSaysThatForeignNotesGoOn) {
    install(Engines::developmentSpeech, serve);
    const auto engines = make();
    EXPECT_EQ(await(engines->prepareForRecording()), std::nullopt);
    EXPECT_TRUE(eventually([&] { return engines->speech() == EngineState::ready(false); }));
    world->answering = {EngineWorld::notesURL};
    EXPECT_EQ(await(engines->prepareForRecording()),
              "The notes engine is running outside the app. Stopping it frees memory for live transcription.");
    EXPECT_FALSE(await(engines->startNotes()));
    engines->recordingEnded();
    EXPECT_TRUE(await(engines->startNotes()));
    EXPECT_EQ(engines->notes(), EngineState::ready(true));
    EXPECT_TRUE(world->delays.empty()) << "an adopted engine is not stopped when idle";
}

TEST_F(Engines, ARecordingCallsOffNotesThatAreStarting) {
    installDevelopmentNotes("exec sleep 1000");
    const auto engines = make();
    Task<bool> start = engines->startNotes();
    ASSERT_TRUE(eventually([&] { return engines->notes().isStarting() && starts() == 1; }));
    EXPECT_FALSE(await(engines->startNotes())) << "one start is enough";
    EXPECT_EQ(await(engines->prepareForRecording()), std::nullopt);
    EXPECT_FALSE(await(std::move(start)));
    EXPECT_EQ(engines->notes(), EngineState::stopped());
    EXPECT_TRUE(eventually([&] { return !lastRuns(); }));
}

TEST_F(Engines, NotesThatDieAreStoppedWithoutAMessage) {
    installDevelopmentNotes("touch notes.up; until [ -e crash ]; do sleep 0.01; done; rm notes.up; kill -SEGV $$");
    const auto engines = make();
    EXPECT_TRUE(await(engines->startNotes()));
    crash();
    EXPECT_TRUE(eventually([&] { return engines->notes() == EngineState::stopped(); }));
    EXPECT_THAT(world->delays, ElementsAre(600s)) << "no restart";

    installDevelopmentNotes("exit 1");
    EXPECT_FALSE(await(engines->startNotes()));
    EXPECT_EQ(engines->notes(), EngineState::failed("Notes engine stopped while starting. See its log in Settings."));
}

TEST_F(Engines, NotesTellWhyTheyCannotStart) {
    const EngineState noFiles = EngineState::missing("Notes engine files weren't found.");
    const auto without = make();
    EXPECT_FALSE(without->notesAvailable());
    EXPECT_FALSE(await(without->startNotes()));
    EXPECT_EQ(without->notes(), noFiles);

    install(Engines::bundledNotes, serveNotes);
    const auto withoutModel = make(true);
    EXPECT_EQ(withoutModel->notesModel().kind, NotesModelState::Kind::missing);
    EXPECT_TRUE(withoutModel->notesNeedDownload());
    EXPECT_TRUE(withoutModel->notesAvailable());
    EXPECT_FALSE(await(withoutModel->startNotes()));
    EXPECT_EQ(withoutModel->notes(), noFiles);
    EXPECT_EQ(make(true, true, false)->notesUnavailableReason(),
              "Notes need a Mac with an M1 chip or newer. This Mac can still record and transcribe.");

    const auto disabled = make(false, false);
    EXPECT_FALSE(await(disabled->startNotes()));
    world->answering = {EngineWorld::notesURL};
    EXPECT_TRUE(await(disabled->startNotes())) << "what answers can be used";
    EXPECT_EQ(starts(), 0U);
}

TEST(EngineSwitch, OnlyTheExactValueTurnsEnginesOff) {
    test::ScopedVariable off("VARNET_NO_ENGINES", "0");
    EXPECT_TRUE(EngineSupervisor::shouldRun());
    off.set("1");
    EXPECT_FALSE(EngineSupervisor::shouldRun());
}
