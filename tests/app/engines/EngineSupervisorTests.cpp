#include "tests/support/EngineFixture.h"

#include <regex>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const EngineState diedInStart = EngineState::failed("Speech engine stopped while starting. See its log in Settings.");
const EngineState diedLater = EngineState::failed("The speech engine stopped unexpectedly.");

} // namespace

TEST_F(Engines, TheSpeechEngineIsStartedOnceLoggedAndEndedWithTheApplication) {
    install(Engines::developmentSpeech, "sleep 0.05; " + std::string(serve));
    const auto engines = make();
    std::vector<EngineState> states;
    QObject::connect(engines.get(), &EngineSupervisor::speechChanged, [&] { states.push_back(engines->speech()); });
    Task<> first = engines->startSpeech();
    Task<> second = engines->startSpeech(); // both ask for health before either launches
    await(std::move(first));
    await(std::move(second));
    EXPECT_EQ(starts(), 1U);
    EXPECT_THAT(states, ElementsAre(EngineState::starting(), EngineState::ready(false)));
    EXPECT_EQ(readFile(folder / "state/Varnet/logs/speech.log"), "hello\n");
    EXPECT_THAT(lines("arguments"), ElementsAre("serve --config config/speech.yaml"));
    engines->shutdown();
    EXPECT_FALSE(lastRuns());
    EXPECT_EQ(engines->speech(), EngineState::ready(false)) << "a planned end is no crash";
}

TEST_F(Engines, WithoutFilesModelsOrPermissionNothingStarts) {
    const auto engines = make();
    await(engines->startSpeech());
    EXPECT_EQ(engines->speech(), EngineState::missing("Engine files weren't found. Choose the folder in Settings."));

    install(Engines::developmentSpeech, serve);
    const auto disabled = make(false, false);
    await(disabled->startSpeech());
    EXPECT_EQ(disabled->speech(), EngineState::stopped());
    install(Engines::bundledSpeech, serve);
    const auto withoutModels = make(true);
    await(withoutModels->startSpeech());
    EXPECT_EQ(withoutModels->models().kind, ModelState::Kind::missing);
    EXPECT_EQ(starts(), 0U);
}

TEST_F(Engines, AFailedStartSaysWhatHappened) {
    const std::pair<const char*, const char*> rows[] = {
        {"#!/missing/interpreter", "Speech engine could not start: "},
        {"exit 3", diedInStart.text.c_str()},
        {"exec sleep 1000", "Speech engine did not become ready in time."},
    };
    for (const auto& [script, text] : rows) {
        install(Engines::developmentSpeech, script);
        world->time = 0s;
        const auto engines = make();
        await(engines->startSpeech());
        EXPECT_EQ(engines->speech().kind, EngineState::Kind::failed);
        EXPECT_THAT(engines->speech().text, HasSubstr(text));
    }
    EXPECT_EQ(world->time, 120s) << "of pauses of half a second";
    EXPECT_TRUE(eventually([&] { return !lastRuns(); }));
}

TEST_F(Engines, AfterCrashesItRestartsThreeTimesUntilItIsHealthyAgain) {
    install(Engines::developmentSpeech, serve);
    const auto engines = make();
    await(engines->startSpeech());

    crash();
    ASSERT_TRUE(eventually([&] { return engines->speech() == diedLater; }));
    EXPECT_THAT(world->delays, ElementsAre(2s));
    EXPECT_EQ(starts(), 1U) << "the delay is not over";
    EXPECT_TRUE(engines->restartPending());

    install(Engines::developmentSpeech, "kill -SEGV $$");
    world->delaysPass = true;
    await(engines->startSpeech()); // crashes as well and is counted
    ASSERT_TRUE(eventually([&] { return starts() == 4 && engines->speech() == diedInStart; }));
    settle();
    EXPECT_THAT(world->delays, ElementsAre(2s, 4s, 6s));
    EXPECT_EQ(starts(), 4U) << "a fourth crash stays";

    install(Engines::developmentSpeech, serve);
    await(engines->startSpeech());
    EXPECT_EQ(engines->speech(), EngineState::ready(false));
    crash();
    ASSERT_TRUE(eventually([&] { return starts() == 6 && engines->speech().isReady(); }));
    EXPECT_THAT(world->delays, ElementsAre(2s, 4s, 6s, 2s)) << "being healthy begins the count anew";
}

TEST_F(Engines, ACrashDuringARecordingWaitsForItsEnd) {
    install(Engines::developmentSpeech, serve);
    const auto engines = make();
    EXPECT_EQ(await(engines->prepareForRecording()), std::nullopt);
    ASSERT_TRUE(eventually([&] { return engines->speech().isReady(); })) << "the recording brings it up";
    crash();
    ASSERT_TRUE(eventually([&] { return engines->speech() == diedLater; }));
    EXPECT_EQ(starts(), 1U);
    engines->recordingEnded();
    ASSERT_TRUE(eventually([&] { return engines->speech() == EngineState::ready(false); }));
    EXPECT_TRUE(world->delays.empty());
}

TEST_F(Engines, NothingStartsAfterShutdown) {
    install(Engines::developmentSpeech, serve);
    auto engines = make();
    await(engines->startSpeech());
    crash();
    ASSERT_TRUE(eventually([&] { return engines->speech() == diedLater; }));
    engines->shutdown(); // calls off the restart
    await(engines->startSpeech());
    EXPECT_EQ(starts(), 1U);

    engines = make();
    Task<> start = engines->startSpeech();
    ASSERT_TRUE(eventually([&] { return starts() == 2; }));
    engines.reset(); // in the middle of the start
    await(std::move(start));
    EXPECT_FALSE(lastRuns());
}

TEST_F(Engines, ACrashOfTheFastModeFallsBackOnceAndForThisBuild) {
    for (const char* model : {"nemotron-speech-streaming-en-0.6b", "Nemotron-3-Diarization"})
        write(folder / "data/Varnet/models/nvidia" / model / "main/weights.verified", "");
    install(Engines::bundledSpeech, "exit 1");
    const auto engines = make(true);
    await(engines->startSpeech());
    EXPECT_EQ(engines->speech(), diedInStart);
    EXPECT_FALSE(engines->transcriptsSlow()) << "an exit is no crash";

    install(Engines::bundledSpeech, "[ \"$4\" = --device ] || kill -SEGV $$; touch speech.up; exec sleep 1000");
    await(engines->startSpeech());
    EXPECT_EQ(engines->speech(), EngineState::ready(false));
    EXPECT_TRUE(engines->transcriptsSlow());
    const std::string plain = "serve --config " + (root / "config/speech.yaml").string();
    EXPECT_THAT(lines("arguments"), ElementsAre(plain, plain, plain + " --device cpu"));
    EXPECT_EQ(Settings(settingsFile).text("SpeechEngineProcessorOnlyVersion"), EngineLayout::appVersion());
}

TEST_F(Engines, FollowsWhatAnswersAndKeepsABusyChild) {
    install(Engines::developmentSpeech, serve);
    world->answering = {EngineWorld::speechURL, EngineWorld::notesURL};
    const auto engines = make();
    await(engines->startSpeech());
    EXPECT_EQ(starts(), 0U);
    await(engines->refresh());
    EXPECT_EQ(engines->speech(), EngineState::ready(true));
    EXPECT_EQ(engines->notes(), EngineState::ready(true));
    world->answering.clear();
    await(engines->refresh());
    EXPECT_EQ(engines->speech(), EngineState::stopped());
    await(engines->startSpeech());
    std::filesystem::remove(root / "speech.up"); // it runs, but is too busy to answer
    await(engines->refresh());
    EXPECT_EQ(engines->speech(), EngineState::ready(false));
}

TEST_F(Engines, NotesStartOnDemandWithAKeptPrivateKeyAndEndForARecordingOrWhenIdle) {
    install(developmentNotes, "trap 'rm -f notes.up; exit' TERM; touch notes.up; while :; do sleep 0.01; done");
    write(root / ".runtime/notes/Qwen3.5-4B-Q4_K_M.gguf", "model");
    const auto engines = make();
    EXPECT_TRUE(await(engines->startNotes()));
    EXPECT_EQ(engines->notes(), EngineState::ready(false));
    const std::string key = readFile(keyFile);
    EXPECT_TRUE(std::regex_match(key, std::regex("[A-Za-z0-9_-]{43}\n"))) << key;
    EXPECT_EQ(std::filesystem::status(keyFile).permissions(), std::filesystem::perms(0600));
    EXPECT_THAT(lines("arguments").back(), HasSubstr("--host 127.0.0.1 --port 17864"));
    EXPECT_THAT(lines("arguments").back(), HasSubstr("--api-key-file " + keyFile.string()));

    EXPECT_EQ(await(engines->prepareForRecording()), std::nullopt);
    EXPECT_EQ(engines->notes(), EngineState::stopped());
    EXPECT_TRUE(eventually([&] { return !lastRuns(); }));
    EXPECT_FALSE(await(engines->startNotes()));
    engines->recordingEnded();
    EXPECT_TRUE(await(engines->startNotes()));
    EXPECT_EQ(readFile(keyFile), key);
    world->delaysPass = true;
    engines->scheduleNotesIdleStop();
    EXPECT_THAT(world->delays, ElementsAre(600s, 600s, 600s)) << "each use begins the time anew";
    EXPECT_TRUE(eventually([&] { return engines->notes() == EngineState::stopped() && !lastRuns(); }));
}

} // namespace varnet::test
