#include "MeetingCore/notes/NoteGrounding.h"
#include "Varnet/notes/NotesClient.h"
#include "tests/support/Await.h"
#include "tests/support/NotesServer.h"
#include "tests/support/TestServer.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace varnet::test {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using Kind = NoteItem::Kind;

constexpr const char* refused = "The local notes model is unavailable or rejected the request. Start "
                                "scripts/start-notes.sh and try again. The previous draft was kept.";
constexpr const char* incomplete = "The model did not finish its structured response. The previous draft was kept.";
constexpr const char* notLocal = "Notes generation currently requires a local loopback model server.";

Meeting spoken(std::vector<std::pair<std::string, std::string>> turns) {
    Meeting meeting;
    for (auto& [speaker, text] : turns)
        meeting.turns.push_back({.end = 5, .speaker = speaker, .originalText = text, .editedText = {}});
    return meeting;
}

struct NotesClientTest : ::testing::Test {
    NotesServer server;
    std::vector<std::string> removed;
    std::vector<std::pair<int, int>> steps;
    Meeting meeting = spoken({{"Ana", "We ship on Friday, unless the tests fail."},
                              {"Ben", "I'll send the deck to Maria by Thursday."},
                              {"Ana", "Nobody has looked at the budget"},
                              {"Ben", "since the last review. We keep the old prices."}});

    NotesClient client() {
        NotesClient made;
        made.baseURL = server.url();
        made.keyFile = server.keyFile();
        return made;
    }

    Task<GeneratedNotes> generate(std::stop_token stop = {}) {
        return client().generate(
            meeting, [this](int step, int count) { steps.emplace_back(step, count); }, {},
            [this](const std::string& reason) { removed.push_back(reason); }, std::move(stop));
    }
};

TEST_F(NotesClientTest, WhatTheTranscriptDoesNotCarryGoesPointByPoint) {
    server.behave(R"({"mode": "answers", "answers": [{"items": [
        {"kind": "action", "text": "Send the deck", "owner": "Ben", "due": "by Thursday",
         "evidence": [{"source": "S2", "quote": "S2: \"I'll send the deck\""}, {"source": "S2", "quote": "by Thursday"}]},
        {"kind": "action", "text": "altered", "owner": null, "due": null,
         "evidence": [{"source": "S2", "quote": "I'll send a deck"}]},
        {"kind": "action", "text": "misattributed", "owner": "not specified", "due": null,
         "evidence": [{"source": "S4", "quote": "We ship on  Friday"}]},
        {"kind": "action", "text": "straddling", "owner": null, "due": null,
         "evidence": [{"source": "S3", "quote": "the budget since the last review."}]},
        {"kind": "action", "text": "assigned", "owner": "Ana", "due": null,
         "evidence": [{"source": "S2", "quote": "send the deck to Maria"}]},
        {"kind": "action", "text": "dated", "owner": null, "due": "tomorrow",
         "evidence": [{"source": "S2", "quote": "by Thursday"}]}]},
      {"items": [
        {"kind": "decision", "text": "Old prices stay", "owner": null, "due": null,
         "evidence": [{"source": "S4", "quote": "We keep the old prices."}]},
        {"kind": "summary", "text": "invented", "owner": null, "due": null,
         "evidence": [{"source": "S7", "quote": "The moon is made of cheese"}]}]}]})");
    const GeneratedNotes draft = await(generate());

    const std::vector<NoteItem> kept{
        {Kind::action, "Send the deck", "Ben", "by Thursday", {{"S2", "I'll send the deck"}, {"S2", "by Thursday"}}},
        {Kind::action, "misattributed", {}, {}, {{"S1", "We ship on Friday"}}},
        {Kind::action, "straddling", {}, {}, {{"S3", "the budget"}, {"S4", "since the last review."}}},
        {Kind::decision, "Old prices stay", {}, {}, {{"S4", "We keep the old prices."}}},
    };
    EXPECT_EQ(draft.items, kept);
    EXPECT_THAT(
        removed,
        ElementsAre("Generated notes failed the source check: quote does not match S2. The previous draft was kept.",
                    "The model assigned an unsupported owner or date: Ana. The previous draft was kept.",
                    "The model assigned an unsupported owner or date: tomorrow. The previous draft was kept.",
                    "Generated notes failed the source check: quote does not match S7. The previous draft was kept."));
    EXPECT_EQ(draft.droppedItems, 4);
    EXPECT_EQ(draft.chunks, 1);
    EXPECT_EQ(draft.model, "Qwen3.5-4B · Unsloth Q4_K_M · 00fe7986ff5f");
    EXPECT_EQ(draft.promptVersion, "grounded-notes-v7-repaired-quotes");
    EXPECT_EQ(draft.transcriptHash, NoteGrounding::hash(NoteGrounding::sources(meeting)));
    EXPECT_EQ(server.log(), "");
}

TEST_F(NotesClientTest, OneShortTurnIsAskedAboutTwiceActionsFirst) {
    meeting = spoken({{"Ana \"A\"", "Tab\there, \\ and\nline, \x01, caf\xc3\xa9 \xf0\x9f\x98\x80 and \xff."}});
    server.behave(R"({"mode": "answers", "answers": []})");
    const GeneratedNotes draft = await(generate());
    EXPECT_THAT(draft.items, IsEmpty());
    EXPECT_EQ(draft.droppedItems, 0);
    EXPECT_THAT(steps, ElementsAre(std::pair(1, 2), std::pair(2, 2)));
    EXPECT_EQ(server.log(), "");

    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2u);
    for (std::size_t index = 0; index < 2; ++index) {
        const QJsonArray messages = requests[index]["body"]["messages"].toArray();
        const char* told = index == 0 ? "ACTIONS ONLY" : "DECISIONS and SUMMARY ONLY";
        EXPECT_THAT(messages[0]["content"].toString().toStdString(), HasSubstr(told));
        EXPECT_EQ(messages[1]["content"].toString().toStdString(),
                  "Transcript sources (data only):\n"
                  R"([{"id":"S1","speaker":"Ana \"A\"","text":"Tab\there, \\ and\nline, \u0001, café 😀 and �."}])");
        EXPECT_EQ(requests[index]["headers"]["authorization"], QStringLiteral("the key is right"));
    }
}

TEST_F(NotesClientTest, PointsOfTheOtherPassAreLeftOutUncounted) {
    server.behave(R"({"mode": "answers", "unconstrained": true, "answers": [{"items": [
        {"kind": "summary", "text": "early", "evidence": [{"source": "S1", "quote": "We ship on Friday"}]},
        {"kind": "decision", "text": "unfounded", "evidence": []}]}, {"items": [
        {"kind": "action", "text": "late", "owner": "x", "evidence": [{"source": "S9", "quote": "x"}]}]}]})");
    const GeneratedNotes draft = await(generate());
    EXPECT_THAT(draft.items, IsEmpty());
    EXPECT_EQ(draft.droppedItems, 0);
    EXPECT_THAT(removed, IsEmpty());
}

TEST_F(NotesClientTest, NoDraftIsLeftWhenNothingStands) {
    server.behave(R"({"mode": "recipe", "recipes": ["invented", "misassigned"]})");
    EXPECT_EQ(failureText(generate()),
              "Generated notes failed the source check: quote does not match S1. The previous draft was kept.");
    EXPECT_EQ(removed.size(), 3u); // the second is for actions only
    meeting = spoken({{"Ana", " \n"}});
    EXPECT_EQ(failureText(generate()), "A timestamped transcript is needed before generating notes.");
    EXPECT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(server.log(), "");
}

TEST_F(NotesClientTest, AnyAnswerButAWholeOneEndsTheRunAtOnce) {
    TestServer elsewhere;
    const auto wrapped = [](const std::string& choice) {
        return R"({"mode": "garbage", "body": "{\"choices\": [)" + choice + R"(]}"})";
    };
    const auto answering = [](const std::string& content) {
        return R"({"mode": "answers", "unconstrained": true, "answers": [)" + content + "]}";
    };
    const std::string place = elsewhere.url(QStringLiteral("/")).toString().toStdString();
    const struct {
        const char* name;
        std::string behaviour;
        const char* failure;
    } rows[] = {
        {"cut off, though it can be read", R"({"mode": "length", "answers": []})", incomplete},
        {"no JSON", R"({"mode": "garbage", "body": "{\"choices\""})", incomplete},
        {"a list", R"({"mode": "garbage", "body": "[]"})", incomplete},
        {"no choices", R"({"mode": "garbage", "body": "{}"})", incomplete},
        {"empty choices", wrapped(""), incomplete},
        {"a choice that is no object", wrapped("3"), incomplete},
        {"no reason", wrapped(R"({\"message\": {\"content\": \"{\\\"items\\\":[]}\"}})"), incomplete},
        {"no message", wrapped(R"({\"finish_reason\": \"stop\"})"), incomplete},
        {"no text", wrapped(R"({\"finish_reason\": \"stop\", \"message\": {\"content\": null}})"), incomplete},
        {"an empty text", answering(R"("")"), incomplete},
        {"prose", answering(R"("Here are your notes.")"), incomplete},
        {"no items", answering("{}"), incomplete},
        {"an unknown kind", answering(R"({"items": [{"kind": "idea", "text": "x", "evidence": []}]})"), incomplete},
        {"no evidence", answering(R"({"items": [{"kind": "action", "text": "x"}]})"), incomplete},
        {"refused", R"({"mode": "status", "status": 401})", refused},
        {"broken", R"({"mode": "status", "status": 500})", refused},
        {"sent elsewhere", R"({"mode": "redirect", "location": ")" + place + "\"}", refused},
    };
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        server.behave(rows[index].behaviour);
        EXPECT_EQ(failureText(generate()), rows[index].failure) << rows[index].name;
        EXPECT_EQ(server.requests().size(), index + 1) << rows[index].name;
    }
    EXPECT_THAT(elsewhere.requests(), IsEmpty());

    server.behave(R"({"mode": "exit"})");
    EXPECT_THAT(failureText(generate()),
                StartsWith(server.url().toString().toStdString() + "/v1/chat/completions did not answer: "));
}

TEST_F(NotesClientTest, OnlyThisMachineIsAskedOverPlainHTTP) {
    NotesClient client = this->client();
    const auto failure = [&](const char* start) {
        client.baseURL = server.url(QString::fromUtf8(start));
        return failureText(client.generate(meeting));
    };
    for (const char* start :
         {"https://127.0.0.1", "http://127.0.0.2", "http://[::ffff:127.0.0.1]", "http://localhost.",
          "http://localhost.example.org", "http://127.0.0.1@192.168.1.2", "ftp://127.0.0.1", "//127.0.0.1"})
        EXPECT_EQ(failure(start), notLocal) << start;
    EXPECT_THAT(server.requests(), IsEmpty());

    EXPECT_EQ(failure("http://localhost"), "");
    EXPECT_EQ(failure("HTTP://127.0.0.1"), "");
    EXPECT_THAT(failure("http://[::1]"), HasSubstr("/v1/chat/completions did not answer: ")); // it listens elsewhere
    EXPECT_EQ(server.requests().size(), 4u);
}

TEST_F(NotesClientTest, CancellingEndsARequestAtOnceAndSendsNoOther) {
    server.behave(R"({"mode": "hang"})");
    std::stop_source hanging;
    Task<GeneratedNotes> task = generate(hanging.get_token());
    ASSERT_TRUE(eventually([&] { return server.requests().size() == 1; }));
    hanging.request_stop();
    EXPECT_THROW(await(std::move(task), 1s), Cancelled);
    EXPECT_TRUE(eventually([&] { return server.log() == "event: the client left request 1\n"; }));

    server.behave(R"({"mode": "answers", "answers": []})");
    std::stop_source between;
    const auto atSecond = [&](int step, int) { step == 2 && between.request_stop(); };
    EXPECT_THROW(await(client().generate(meeting, atSecond, {}, {}, between.get_token())), Cancelled);
    std::stop_source answered;
    const auto atAnswer = [&](std::string_view answer) {
        EXPECT_EQ(answer, R"({"items": []})");
        answered.request_stop();
    };
    EXPECT_THROW(await(client().generate(meeting, {}, atAnswer, {}, answered.get_token())), Cancelled);
    EXPECT_EQ(server.requests().size(), 3u);
}

TEST_F(NotesClientTest, TheKeyIsWhatTheFileHoldsOrNothing) {
    const std::filesystem::path file = server.keyFile().string() + ".other";
    NotesClient client = this->client();
    client.keyFile = file;
    const std::pair<std::string, bool> contents[] = {
        {"sesame-17", true}, {" \tsesame-17\r\n\n", true},       {"", false},
        {" \n", false},      {"sesame-17\r\nX-Other: 1", false}, {"\xff\xfe", false},
    };
    EXPECT_EQ(failureText(client.generate(meeting)), refused); // there is no file
    for (const auto& [content, usable] : contents) {
        std::ofstream(file) << content;
        EXPECT_EQ(failureText(client.generate(meeting)), usable ? "" : refused) << content;
    }
    for (const QJsonObject& request : server.requests())
        EXPECT_FALSE(request["headers"].toObject().contains("x-other"));
    std::istringstream log(server.log());
    for (std::string line; std::getline(log, line);)
        EXPECT_EQ(line, "complaint: the key is missing");
}

} // namespace
} // namespace varnet::test
