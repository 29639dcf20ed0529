// Times the fingerprint of a transcript, which is taken of every meeting with a draft, against hashing and copying the
// same bytes. Prints a table and fails when the limit is missed.

#include "MeetingCore/base/Sha256.h"
#include "MeetingCore/notes/NoteGrounding.h"
#include "MeetingCore/records/MeetingJson.h"
#include "bench/Ratios.h"

#include <random>

namespace {

using namespace varnet;

/// Two hours of talk, the same in every run.
Meeting twoHours() {
    static constexpr std::string_view words[] = {"we",       "should", "the",    "quarter", "numbers", "and",
                                                 "décision", "before", "moving", "to",      "“done”",  "then",
                                                 "release",  "people", "I",      "think",   "yes",     "tomorrow"};
    std::mt19937 random(7);
    Meeting meeting;
    meeting.speakerNames.emplace()["Speaker 1"] = "Ana";
    unsigned hundredths = 0; // as recognisers count
    for (int index = 0; index < 700; ++index) {
        TranscriptTurn turn;
        turn.start = hundredths / 100.0;
        hundredths += 500 + static_cast<unsigned>(random() % 1'000);
        turn.end = hundredths / 100.0;
        turn.speaker = "Speaker " + std::to_string(1 + random() % 3);
        for (unsigned count = 1 + static_cast<unsigned>(random() % 50); count > 0; --count)
            turn.originalText.append(words[random() % std::size(words)]).append(" ");
        meeting.turns.push_back(std::move(turn));
    }
    return meeting;
}

} // namespace

int main() {
    const Meeting meeting = twoHours();
    const std::string bytes = encodeSources(NoteGrounding::sources(meeting));
    bench::heading("grounding");
    const auto [ours, theirs] = bench::compare([&] { return NoteGrounding::hash(NoteGrounding::sources(meeting)); },
                                               [&] {
                                                   const std::string copy = bytes;
                                                   bench::keep(copy);
                                                   return sha256(bytes);
                                               },
                                               1'001);
    bench::row("sources and hash of two hours", "SHA-256 and a copy of the same bytes", ours / theirs,
               bench::atMost(3, 2));
    bench::note("(kilobytes)", 1e-3 * static_cast<double>(bytes.size()), "KB");
    bench::note("(microseconds)", 1e6 * ours, "us");
    return bench::missed ? 1 : 0;
}
