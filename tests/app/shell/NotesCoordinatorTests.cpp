#include "Varnet/models/Text.h"
#include "Varnet/models/WorkStatus.h"
#include "Varnet/shell/AppCommands.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/store/MeetingStore.h"
#include "tests/support/EngineFixture.h"
#include "tests/support/TestServer.h"

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// The commands with an engine that is a script, in whose place a server answers the store.
struct NotesCoordinatorTest : Engines {
    NotesCoordinatorTest() {
        server.setScript([this](const TestServer::Request& request, QTcpSocket& socket) {
            if (request.method == "GET")
                socket.write(TestServer::response(answersHealth ? 200 : 503, ""));
            else if (++asked == 1)
                socket.write(TestServer::response(
                    200, R"({"choices":[{"finish_reason":"stop","message":{"content":"{\"items\":[]}"}}]})"));
        });
        const MeetingRepository repository(folder / "meetings");
        for (const char* title : {"Other", "Weekly"}) {
            Meeting meeting = Meeting::make(title);
            meeting.turns.push_back({.end = 5, .speaker = "Ana", .originalText = "Hello.", .editedText = {}});
            repository.save(meeting);
        }
        StoreParts parts;
        parts.notesURL = server.url({});
        store = std::make_unique<MeetingStore>(folder / "meetings", parts);
        write(root / ".runtime/notes/Qwen3.5-4B-Q4_K_M.gguf", "model");
        engines = make();
        commands = std::make_unique<AppCommands>(*store, *engines, router);
    }
    ~NotesCoordinatorTest() override {
        commands.reset();
        store.reset();
        engines.reset();
        settle();
    }

    bool idle() {
        return eventually([this] { return !commands->notes().meeting(); });
    }

    TestServer server;
    bool answersHealth = false;
    int asked = 0;
    AppRouter router;
    std::unique_ptr<MeetingStore> store;
    std::unique_ptr<EngineSupervisor> engines;
    std::unique_ptr<AppCommands> commands;
};

TEST_F(NotesCoordinatorTest, TwoClicksGiveOneEngineAndOneRunThatKeepsItFromIdling) {
    install(developmentNotes, "touch notes.up; exec sleep 1000");
    const WorkStatus work(*store, *commands);
    std::vector<std::string> words;
    QObject::connect(commands.get(), &AppCommands::aboutToAct, [&] { words.emplace_back("edits are handed in"); });
    QObject::connect(&work, &WorkStatus::changed, [&] { words.push_back(toUtf8(work.progress())); });
    const auto written = store->selectedID();
    answersHealth = true;
    commands->writeNotes();
    commands->writeNotes();
    EXPECT_TRUE(commands->writingNotes());
    EXPECT_EQ(toUtf8(work.text()), "Writing notes for “" + store->selected()->title + "”");
    store->setSelectedID(store->meetings().back().id);
    EXPECT_FALSE(commands->writingNotes() || commands->writeNotesEnabled());

    ASSERT_TRUE(eventually([this] { return asked == 2; }));
    EXPECT_EQ(store->notesMeetingID(), written);
    EXPECT_THAT(words, ElementsAre("edits are handed in", "Starting the notes engine…", "edits are handed in",
                                   "Starting local notes model…", "Generating part 1 of 2", "Generating part 2 of 2"));
    EXPECT_THAT(world->delays, ElementsAre(600s, 600s, 600s, 600s)) << "the start, the run and its requests";

    answersHealth = false;
    commands->cancelWork();
    ASSERT_TRUE(idle());
    EXPECT_EQ(starts(), 1U);
    EXPECT_TRUE(eventually([this] { return !store->notesRuntimeReady(); })) << "nobody waits for the next poll";
    world->delaysPass = true;
    engines->scheduleNotesIdleStop();
    EXPECT_TRUE(eventually([this] { return !lastRuns(); }));
}

TEST_F(NotesCoordinatorTest, AStartOfTheEngineEndsAsItShould) {
    const struct {
        const char* name;
        const char* script;
        std::function<void()> act;
        std::size_t starts;
        const char* error; ///< absent: none
    } rows[] = {
        {"it dies", "exit 3", [] {}, 1, "The notes model didn't start. Check Settings › Engines."},
        {"cancelled before it runs", "exec sleep 1000", [this] { commands->cancelWork(); }, 0, nullptr},
        {"cancelled", "exec sleep 1000",
         [this] {
             ASSERT_TRUE(eventually([this] { return starts() == 1; }));
             commands->cancelWork();
             EXPECT_EQ(engines->notes(), EngineState::stopped());
         },
         1, nullptr},
        {"the meeting goes", "touch notes.up; exec sleep 1000",
         [this] { store->deleteMeetings({*store->selectedID()}); }, 1, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::filesystem::remove(root / "starts");
        install(developmentNotes, row.script);
        commands->writeNotes();
        row.act();
        ASSERT_TRUE(idle());
        EXPECT_EQ(store->error(), row.error ? std::optional<std::string>(row.error) : std::nullopt);
        EXPECT_EQ(starts(), row.starts);
        EXPECT_TRUE(commands->writeNotesEnabled());
        store->setError({});
    }
    EXPECT_EQ(asked, 0);
}

} // namespace
} // namespace varnet::test
