#include "Varnet/notes/NotesClient.h"
#include "tests/support/Await.h"
#include "tests/support/NotesServer.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace varnet::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* refused = "The local notes model is unavailable or rejected the request. Start "
                                "scripts/start-notes.sh and try again. The previous draft was kept.";
constexpr const char* incomplete = "The model did not finish its structured response. The previous draft was kept.";
constexpr const char* spoken = "Tab\there, \\ and\nline, \x01, caf\xc3\xa9 \xf0\x9f\x98\x80 and \xff.";
constexpr const char* notLocal = "Notes generation currently requires a local loopback model server.";

struct NotesClientTest : ::testing::Test {
    NotesServer server;
    Meeting meeting;

    NotesClientTest() {
        meeting.turns.push_back({.end = 5, .speaker = "Ana \"A\"", .originalText = spoken, .editedText = {}});
    }

    NotesClient client() {
        NotesClient made;
        made.baseURL = server.url();
        made.keyFile = server.keyFile();
        return made;
    }
};

TEST_F(NotesClientTest, EachPartIsAskedAboutTwiceActionsFirst) {
    server.behave(R"({"mode": "answers", "answers": []})");
    std::vector<std::pair<int, int>> steps;
    const GeneratedNotes draft =
        await(client().generate(meeting, [&](int step, int count) { steps.emplace_back(step, count); }));
    EXPECT_THAT(draft.items, IsEmpty());
    EXPECT_EQ(draft.droppedItems, 0);
    EXPECT_THAT(steps, ElementsAre(std::pair(1, 2), std::pair(2, 2)));

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

    meeting.turns[0].originalText = std::string(12'000, 'x');
    await(client().generate(meeting));
    EXPECT_EQ(server.requests().size(), 8u) << "three parts, each asked about twice";
    EXPECT_EQ(server.log(), "");
}

TEST_F(NotesClientTest, AnyAnswerButAWholeOneEndsTheRunAtOnce) {
    const auto wrapped = [](const std::string& choice) {
        return R"({"mode": "garbage", "body": "{\"choices\": [)" + choice + R"(]}"})";
    };
    const struct {
        const char* name;
        std::string behaviour;
        const char* failure;
    } rows[] = {
        {"cut off, though it can be read", R"({"mode": "length", "answers": []})", incomplete},
        {"no JSON", R"({"mode": "garbage", "body": "{\"choices\""})", incomplete},
        {"no choices", R"({"mode": "garbage", "body": "{}"})", incomplete},
        {"a choice that is no object", wrapped("3"), incomplete},
        {"no reason", wrapped(R"({\"message\": {\"content\": \"{\\\"items\\\":[]}\"}})"), incomplete},
        {"no text", wrapped(R"({\"finish_reason\": \"stop\", \"message\": {\"content\": null}})"), incomplete},
        {"prose", R"({"mode": "answers", "answers": ["Here are your notes."], "unconstrained": true})", incomplete},
        {"moved", R"({"mode": "status", "status": 307, "location": "/v1/elsewhere"})", refused},
        {"refused", R"({"mode": "status", "status": 401})", refused},
        {"broken", R"({"mode": "status", "status": 500})", refused},
    };
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        server.behave(rows[index].behaviour);
        EXPECT_EQ(failureText(client().generate(meeting)), rows[index].failure) << rows[index].name;
        EXPECT_EQ(server.requests().size(), index + 1) << rows[index].name;
    }
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
