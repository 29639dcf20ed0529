// Times the reading and writing of meetings against plain reading of the same bytes and another JSON library, on a
// library that it makes itself: 500 meetings of two hours, about 107 MB. Prints a table and fails when a limit is
// missed. What two threads do is measured in CPU time, which other programs disturb least.

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Uuid.h"
#include "MeetingCore/records/MeetingEncoder.h"
#include "MeetingCore/records/MeetingJson.h"
#include "MeetingCore/records/MeetingRepository.h"
#include "bench/Ratios.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numeric>
#include <random>
#include <thread>

namespace {

using namespace varnet;
using namespace varnet::bench;
namespace fs = std::filesystem;

constexpr int libraryMeetings = 500;
constexpr std::size_t threads = 2;

/// A transcript of so many turns of so many words, the same in every run.
Meeting transcript(unsigned seed, int turnCount, int wordsPerTurn) {
    static constexpr std::string_view words[] = {"we",     "should", "the",    "quarter", "numbers", "and",
                                                 "budget", "before", "moving", "to",      "done",    "then",
                                                 "people", "I",      "think",  "yes",     "tomorrow"};
    std::mt19937 random(seed);
    Meeting meeting = Meeting::make("Weekly planning " + std::to_string(seed));
    meeting.createdAt = {700'000'000.0 + 3'600.25 * seed};
    meeting.status = "Transcribed";
    meeting.audioFilename = "meeting.wav";
    meeting.speakerNames = {{"Speaker 1", "Ana"}, {"Speaker 2", "Ben"}};
    meeting.attendees = {"Ana", "Ben", "Chloé"};
    int hundredths = 0;
    for (int index = 0; index < turnCount; ++index) {
        TranscriptTurn turn;
        turn.start = hundredths / 100.0;
        turn.end = (hundredths += 300 + static_cast<int>(random() % 1'000)) / 100.0; // as recognisers count
        turn.speaker = "Speaker " + std::to_string(1 + random() % 3);
        for (int word = 0; word < wordsPerTurn; ++word)
            turn.originalText.append(words[random() % std::size(words)]).append(" ");
        turn.originalText += index % 4 == 0 ? "“Chloé’s décision.”" : "all right?";
        if (index % 40 == 0)
            turn.editedText = turn.originalText + ".";
        meeting.turns.push_back(std::move(turn));
    }
    return meeting;
}

/// Gives each record to one of the threads that the repository would use.
template <class Work>
void forEachRecord(const std::vector<fs::path>& records, Work work) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> workers;
    for (std::size_t thread = 0; thread < threads; ++thread)
        workers.emplace_back([&] {
            std::string buffer;
            for (std::size_t index = next++; index < records.size(); index = next++)
                work(index, buffer);
        });
}

void readAndSum(const std::vector<fs::path>& records) {
    std::atomic<std::uint64_t> sum = 0;
    forEachRecord(records, [&](std::size_t index, std::string& bytes) {
        readFile(records[index], bytes, std::size_t{1} << 30);
        sum += std::accumulate(bytes.begin(), bytes.end(), std::uint64_t{0},
                               [](std::uint64_t total, char byte) { return total + static_cast<unsigned char>(byte); });
    });
    keep(sum);
}

nlohmann::json domOf(const fs::path& record) {
    std::ifstream stream(record);
    return nlohmann::json::parse(stream);
}

Meeting meetingOf(nlohmann::json document) {
    const auto text = [](nlohmann::json& object, const char* key) {
        return std::move(object.at(key).get_ref<std::string&>());
    };
    Meeting meeting{.id = Uuid::parse(text(document, "id")).value(),
                    .title = text(document, "title"),
                    .createdAt = {document.at("createdAt").get<double>()},
                    .turns = {},
                    .notes = text(document, "notes"),
                    .audioFilename = text(document, "audioFilename"),
                    .status = text(document, "status"),
                    .speakerNames = document.at("speakerNames").get<std::map<std::string, std::string>>(),
                    .source = {},
                    .importedContent = {},
                    .generatedNotes = {},
                    .attendees = document.at("attendees").get<std::vector<std::string>>()};
    for (nlohmann::json& turn : document.at("turns")) {
        meeting.turns.push_back({.id = Uuid::parse(text(turn, "id")).value(),
                                 .start = turn.at("start").get<double>(),
                                 .end = turn.at("end").get<double>(),
                                 .speaker = text(turn, "speaker"),
                                 .originalText = text(turn, "originalText"),
                                 .editedText = {}});
        if (turn.contains("editedText"))
            meeting.turns.back().editedText = text(turn, "editedText");
    }
    return meeting;
}

void benchLoading() {
    const test::TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    std::vector<fs::path> records;
    std::uintmax_t bytes = 0;
    for (int index = 0; index < libraryMeetings; ++index) {
        const Meeting meeting = transcript(static_cast<unsigned>(index), 700, 21);
        repository.save(meeting);
        records.push_back(repository.directory(meeting.id) / "meeting.json");
        bytes += fs::file_size(records.back());
    }

    const auto load = [&] { return repository.loadRecovering(); };
    if (load().meetings.size() != libraryMeetings)
        std::abort();
    const auto [loading, reading] = compareMedians(load, [&] { readAndSum(records); }, 21, cpuSeconds);
    row("load the library, CPU time", "reading and summing its bytes", loading / reading, atMost(6.5, 4.2));
    note("(megabytes)", 1e-6 * static_cast<double>(bytes), "MB");
    note("(milliseconds of two threads)", 1e3 * loading, "ms");

    const auto loadWithDoms = [&] {
        std::vector<Meeting> meetings(records.size());
        forEachRecord(records,
                      [&](std::size_t index, std::string&) { meetings[index] = meetingOf(domOf(records[index])); });
        std::ranges::sort(meetings, std::greater(), &Meeting::createdAt);
        return meetings;
    };
    if (loadWithDoms() != load().meetings)
        std::abort();
    const auto [again, others] = compareMedians(load, loadWithDoms, 7, cpuSeconds);
    row("load the library, CPU speed", "nlohmann-json's DOM, into the same records", others / again, atLeast(8, 12));
    const auto parseOnly = [&] {
        forEachRecord(records, [&](std::size_t index, std::string&) { bench::keep(domOf(records[index])); });
    };
    const auto [third, parsing] = compareMedians(load, parseOnly, 7, cpuSeconds);
    note("(against its DOMs alone)", parsing / third, "x");
}

std::string encodeWithDom(const Meeting& meeting) {
    nlohmann::json turns = nlohmann::json::array();
    for (const TranscriptTurn& turn : meeting.turns) {
        nlohmann::json object{{"end", turn.end},
                              {"id", turn.id.text()},
                              {"originalText", turn.originalText},
                              {"speaker", turn.speaker},
                              {"start", turn.start}};
        if (turn.editedText)
            object["editedText"] = *turn.editedText;
        turns.push_back(std::move(object));
    }
    const nlohmann::json document{{"attendees", *meeting.attendees},
                                  {"audioFilename", *meeting.audioFilename},
                                  {"createdAt", meeting.createdAt.secondsSinceReference},
                                  {"id", meeting.id.text()},
                                  {"notes", meeting.notes},
                                  {"speakerNames", *meeting.speakerNames},
                                  {"status", meeting.status},
                                  {"title", meeting.title},
                                  {"turns", std::move(turns)}};
    return document.dump(2);
}

void benchEncoding(const Meeting& meeting) {
    if (decodeMeeting(encodeWithDom(meeting)) != meeting)
        std::abort();
    const auto [ours, theirs] =
        compareMedians([&] { return encodeMeeting(meeting); }, [&] { return encodeWithDom(meeting); }, 101);
    row("encode a record, speed", "nlohmann-json, build and dump", theirs / ours, atLeast(5, 6.5));
    note("(kilobytes)", 1e-3 * static_cast<double>(encodeMeeting(meeting).size()), "KB");
}

/// Saves the meeting after each of its turns, as while it is recorded.
template <class Save>
void grow(const Meeting& whole, Save save) {
    Meeting meeting = whole;
    meeting.turns.clear();
    for (const TranscriptTurn& turn : whole.turns) {
        meeting.turns.push_back(turn);
        save(meeting);
    }
}

void benchGrowing(const Meeting& meeting) {
    const test::TemporaryFolder folder;
    const MeetingRepository repository(folder.path());
    const auto ours = [&] {
        MeetingEncoder encoder;
        grow(meeting, [&](const Meeting& grown) { repository.save(grown, encoder); });
    };
    const auto theirs = [&] {
        const fs::path record = repository.directory(meeting.id) / "meeting.json";
        grow(meeting, [&](const Meeting& grown) { writeFileAtomically(record, encodeWithDom(grown)); });
    };
    const auto [own, other] = compareMedians(ours, theirs, 3, cpuSeconds);
    row("1,500 growing saves, CPU time", "nlohmann-json, the same saves", own / other, atMost(0.25, 0.12));
    note("(milliseconds for each)", 1e3 * own / static_cast<double>(meeting.turns.size()), "ms");
}

} // namespace

int main() {
    heading("library");
    const Meeting fourHours = transcript(1, 1'500, 28);
    benchEncoding(fourHours);
    benchGrowing(fourHours);
    benchLoading();
    return missed ? 1 : 0;
}
