// What the application adds to the time of the model that drafts notes, and whether its memory stays as it is while it
// goes through a long transcript. The model is the strict server of the tests. Takes a minute and a half.

#include "Varnet/notes/NotesClient.h"
#include "bench/Ratios.h"
#include "tests/support/NotesServer.h"

#include <QCoreApplication>

#include <fstream>
#include <numeric>
#include <thread>

namespace {

using namespace varnet;

/// Four hours of talk, with 350 bytes in each turn: 12 of them make a request.
Meeting fourHours(int turnCount) {
    static constexpr std::string_view words[] = {"we",     "should", "the",   "quarter", "numbers", "and",
                                                 "before", "moving", "to",    "then",    "release", "people",
                                                 "I",      "will",   "think", "yes",     "decide"};
    constexpr std::size_t textBytes = 350;
    Meeting meeting;
    for (int index = 0; index < turnCount; ++index) {
        TranscriptTurn turn;
        turn.start = index * 14'400.0 / turnCount;
        turn.end = turn.start + 9;
        turn.speaker = "Speaker " + std::to_string(1 + index % 3);
        turn.originalText = "Point " + std::to_string(index);
        for (std::size_t word = static_cast<std::size_t>(index); turn.originalText.size() < textBytes; word += 5)
            turn.originalText.append(" ").append(words[word % std::size(words)]);
        turn.originalText.resize(textBytes);
        meeting.turns.push_back(std::move(turn));
    }
    return meeting;
}

GeneratedNotes draft(const test::NotesServer& server, Meeting meeting, const NotesClient::Progress& progress) {
    NotesClient client;
    client.baseURL = server.url();
    client.keyFile = server.keyFile();
    return QCoro::waitFor(client.generate(std::move(meeting), progress));
}

/// The most that the process has had in memory, in kilobytes.
double peakMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:" && status >> word)
            return std::stod(word);
    return 0;
}

void compareTime() {
    constexpr std::size_t requestCount = 40;
    test::NotesServer server;
    server.behave(R"({"mode": "slow", "seconds": 2})");
    const double begun = bench::wallSeconds();
    const GeneratedNotes notes = draft(server, fourHours(240), {});
    const double whole = bench::wallSeconds() - begun;
    while (server.timings().size() < requestCount && bench::wallSeconds() < begun + whole + 5)
        std::this_thread::sleep_for(std::chrono::milliseconds(1)); // the last line comes after the answer
    const std::vector<double> timings = server.timings();
    const double theirs = std::accumulate(timings.begin(), timings.end(), 0.0);
    const double added = 100 * (whole - theirs) / theirs;
    const bool sound = timings.size() == requestCount && server.log().empty() && !notes.items.empty();
    bench::row("notes of four hours, 40 requests", "the model's own time (added)", added, "%", sound && added < 1,
               "< 1 %");
    bench::note("(seconds)", whole, "s");
}

void compareMemory() {
    test::NotesServer server;
    double early = 0;
    const GeneratedNotes notes = draft(server, fourHours(600), [&early](int step, int) {
        if (step == 3)
            early = peakMemory();
    });
    const double late = peakMemory();
    bench::row("the same, 100 requests: peak memory", "that after two requests", late / early,
               bench::atMost(1.1, 1.05));
    bench::note("(megabytes)", late / 1024, "MB");
    bench::note("(points that stand)", static_cast<double>(notes.items.size()), "");
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    bench::heading("notes");
    compareMemory();
    compareTime();
    return bench::missed ? 1 : 0;
}
