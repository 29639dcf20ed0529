#include "Varnet/async/Worker.h"
#include "Varnet/store/MeetingPresentation.h"
#include "tests/support/NotesServer.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/StoreFixture.h"

#include <gmock/gmock.h>

#include <fstream>
#include <semaphore>

namespace varnet::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr const char* cancelled = "Notes generation cancelled. The previous draft was kept.";
constexpr const char* sourceChanged = "Notes generation failed: The transcript changed during generation. Generate "
                                      "notes again using the updated transcript.";
constexpr const char* halfTrue = R"({"mode": "recipe", "recipes": ["true", "invented"]})";

class NotesFlow : public StoreFixture {
protected:
    NotesFlow() {
        std::filesystem::create_directories(folder / "Varnet");
        std::filesystem::copy_file(server.keyFile(), folder / "Varnet/notes-service.key");
        Meeting meeting = Meeting::make("Weekly");
        for (const char* text : {"I'll send the deck to Maria by Thursday.", "We ship on Friday."})
            meeting.turns.push_back({.end = 5, .speaker = "Speaker 1", .originalText = text, .editedText = {}});
        id = meeting.id;
        repository.save(meeting);
        notesURL = server.url();
        openStore();
    }

    /// Does it each time that the second request is about to be sent, as long as the scope lives.
    void atSecondPart(const std::function<void()>& act, QObject* scope) {
        QObject::connect(&store(), &MeetingStore::notesProgressChanged, scope, [this, act] {
            if (store().notesSteps().current == 2)
                act();
        });
    }
    void run(const std::string& behaviour) {
        server.behave(behaviour);
        store().generateNotes(id);
        ASSERT_TRUE(eventually([this] { return !store().busy(); }));
        EXPECT_EQ(store().notesTask(), std::nullopt);
        EXPECT_EQ(store().notesMeetingID(), std::nullopt);
        EXPECT_EQ(store().notesProgress(), "");
    }

    ScopedVariable data{"XDG_DATA_HOME", folder.path().string()};
    NotesServer server;
    Uuid id;
};

TEST_F(NotesFlow, ADraftIsStoredAndARewriteKeepsTheOldOneAsAVersion) {
    Meeting before = onDisk(id);
    atSecondPart(
        [&] {
            store().setNotes("typed", id);
            store().setTitle("Weekly call", id);
        },
        &store());
    run(halfTrue);
    Meeting drafted = onDisk(id);
    EXPECT_EQ(drafted.generatedNotes->items.size(), 2U);
    EXPECT_EQ(drafted.generatedNotes->droppedItems, 2);
    const std::string reason =
        "Generated notes failed the source check: quote does not match S1. The previous draft was kept.";
    EXPECT_THAT(store().removedPoints(*store().meeting(id)), ElementsAre(reason, reason));
    EXPECT_TRUE(repository.history(id).entries.empty());
    const auto first = drafted.generatedNotes;
    drafted.generatedNotes.reset();
    before.notes = "typed";
    before.title = "Weekly call";
    EXPECT_EQ(drafted, before) << "nothing has changed but what was edited meanwhile";

    run(R"({"mode": "answers", "answers": []})");
    EXPECT_TRUE(onDisk(id).generatedNotes->items.empty());
    EXPECT_TRUE(store().removedPoints(*store().meeting(id)).empty());
    const auto versions = repository.history(id).entries;
    ASSERT_EQ(versions.size(), 1U);
    EXPECT_EQ(versions[0].meeting.generatedNotes, first);
    EXPECT_EQ(store().error(), std::nullopt);
    EXPECT_EQ(server.log(), "");
}

TEST_F(NotesFlow, NothingElseBeginsDuringARunAndCancellingFreesTheStoreAtOnce) {
    const Uuid empty = store().create("No transcript").id;
    store().generateNotes(empty);
    EXPECT_FALSE(store().busy());

    server.behave(R"({"mode": "hang"})");
    store().setError("An earlier one");
    store().generateNotes(id);
    EXPECT_EQ(store().notesProgress(), "Starting local notes model…");
    EXPECT_EQ(store().error(), std::nullopt);
    ASSERT_TRUE(eventually([&] { return server.requests().size() == 1; }));
    EXPECT_EQ(MeetingPresentation::badge(*store().meeting(id), store()).text, "Writing notes");
    store().generateNotes(id);
    await(store().startRecording());
    await(store().importAudio(folder / "a.wav"));
    EXPECT_FALSE(store().recording());
    EXPECT_EQ(store().meetings().size(), 2U);
    EXPECT_THROW(store().restoreHistory({}, {}, {}), Failure);
    EXPECT_TRUE(store().deleteMeetings({id}).empty());
    EXPECT_EQ(store().error(), "Wait for the current transcription or notes to finish, then delete.");

    std::stop_source(*store().notesTask()).request_stop();
    settle();
    EXPECT_FALSE(store().busy());
    EXPECT_EQ(store().error(), cancelled);
    EXPECT_TRUE(eventually([&] { return server.log() == "event: the client left request 1\n"; }));
}

TEST_F(NotesFlow, CancellingWaitsForNoWorkerAndDropsWhatTheModelHasAnswered) {
    std::binary_semaphore rest(0);
    atSecondPart([&] { postToWorker([&rest] { rest.acquire(); }); }, &store());
    server.behave(halfTrue);
    store().generateNotes(id);
    ASSERT_TRUE(eventually([&] { return server.timings().size() == 2; }));
    settle();
    std::stop_source(*store().notesTask()).request_stop();
    settle();
    EXPECT_FALSE(store().busy());
    EXPECT_EQ(store().error(), cancelled);
    rest.release();
    finishBackgroundWork();
    settle();
    EXPECT_EQ(onDisk(id).generatedNotes, std::nullopt);
}

TEST_F(NotesFlow, WhateverComesInBetweenThePreviousDraftIsKept) {
    run(halfTrue);
    const auto previous = onDisk(id).generatedNotes;
    const Uuid turn = store().meeting(id)->turns[0].id;
    const struct {
        const char* name;
        std::function<void()> act; ///< when the second request is about to be sent
        const char* error;
    } rows[] = {
        {"a turn is edited", [&] { store().editTurn(turn, "I won't.", id); }, sourceChanged},
        {"a speaker is named", [&] { store().nameSpeaker("Speaker 1", "Ana", id); }, sourceChanged},
        {"cancelled", [&] { std::stop_source(*store().notesTask()).request_stop(); }, cancelled},
        {"refused", [&] { server.behave(R"({"mode": "status", "status": 500})"); },
         "Notes generation failed: The local notes model is unavailable or rejected the request."},
        {"no version", [&] { std::ofstream(repository.directory(id) / "history") << "no folder"; },
         "Notes generation failed: “"},
        {"killed", [&] { server.behave(R"({"mode": "exit"})"); }, "Notes generation failed: http://127.0.0.1:"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        QObject scope;
        atSecondPart(row.act, &scope);
        run(halfTrue);
        EXPECT_THAT(store().error().value_or(""), StartsWith(row.error));
        EXPECT_EQ(onDisk(id).generatedNotes, previous);
        EXPECT_EQ(store().removedPoints(*store().meeting(id)).size(), 2U);
    }
}

TEST_F(NotesFlow, AStoreThatGoesDuringARunLeavesTheMeetingAsItIs) {
    const Meeting before = onDisk(id);
    server.behave(R"({"mode": "hang"})");
    store().generateNotes(id);
    ASSERT_TRUE(eventually([&] { return server.requests().size() == 1; }));
    closeStore();
    EXPECT_TRUE(eventually([&] { return server.log() == "event: the client left request 1\n"; }));
    EXPECT_EQ(onDisk(id), before);
}

} // namespace
} // namespace varnet::test
