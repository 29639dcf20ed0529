#include "MeetingCore/speech/SpeakerAttribution.h"
#include "MeetingCore/speech/SpeechResponse.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavFile.h"

#include <gtest/gtest.h>

namespace varnet::test {
namespace {

using namespace SpeakerAttribution;
using Levels = std::vector<TurnLevels>;

/// A track with one value for each second.
void record(const std::filesystem::path& track, const std::vector<std::int16_t>& seconds) {
    std::vector<std::int16_t> samples;
    for (const std::int16_t value : seconds)
        samples.insert(samples.end(), 16'000, value);
    writeRecording(track, samples);
}

TranscriptTurn turn(double start, double end) {
    return {.start = start, .end = end, .speaker = "S", .originalText = {}, .editedText = {}};
}

TEST(SpeakerAttribution, MeasuresTurnsOnBothTracks) {
    const TemporaryFolder folder;
    const auto levels = [&](const std::vector<TranscriptTurn>& turns) { return turnLevels(turns, folder.path()); };
    record(folder / "microphone.wav", {16384, 16384, 16384, 16384, 8192, 8192});
    EXPECT_FALSE(levels({})) << "without the other track";
    record(folder / "system.wav", {0, -32768, 0, 0, 8192});
    const struct {
        const char* name;
        TranscriptTurn turn;
        Levels levels;
    } rows[] = {
        {"several portions", turn(0, 6), {{"S", 0.4330127F, 0.46097723F}}},
        {"half a second", turn(0.75, 1.25), {{"S", 0.5F, 0.70710677F}}},
        {"less", turn(0.75, 1.24), {}},
        {"before the start", turn(-3, 1), {{"S", 0.5F, 0.0F}}},
        {"beyond the end", turn(4.5, 900), {{"S", 0.25F, 0.25F}}},
        {"wholly beyond the end", turn(1e9, 1e300), {{"S", 0.0F, 0.0F}}},
        {"beyond the end of one", turn(5, 6), {{"S", 0.25F, 0.0F}}},
    };
    for (const auto& [name, measured, expected] : rows)
        EXPECT_EQ(levels({measured}), expected) << name;
    writeFileAtomically(folder / "system.wav", "RIFF");
    EXPECT_FALSE(levels({turn(0, 1)})) << "without audio";
}

/// For each speaker the turns that are judged, and how many of them are the microphone's.
Levels said(const std::vector<std::tuple<std::string, int, int>>& speakers) {
    Levels levels;
    for (const auto& [speaker, judged, microphone] : speakers)
        for (int i = 0; i < judged; ++i)
            levels.push_back({speaker, 0.31F, i < microphone ? 0.1F : 0.2F});
    return levels;
}

TEST(SpeakerAttribution, TheLocalSpeakerIsTheOneWhoIsSurelyAtTheMicrophone) {
    const Levels twoTurns = said({{"A", 2, 2}});
    const auto with = [&](float microphone, float call) {
        Levels levels = twoTurns;
        levels.push_back({"A", microphone, call});
        return levels;
    };
    const struct {
        const char* name;
        Levels levels;
        std::optional<std::string> local;
    } rows[] = {
        {"too few turns", twoTurns, {}},
        {"the third is loud enough", with(0.003F, 0), "A"},
        {"the third is too quiet", with(0.00299F, 0.00299F), {}},
        {"seven of ten", said({{"A", 7, 7}, {"A", 3, 0}}), "A"},
        {"six of ten", said({{"A", 10, 6}}), {}},
        {"three times is not more", {{"A", 0.3F, 0.1F}, {"A", 0.3F, 0.1F}, {"A", 0.3F, 0.1F}}, {}},
        {"two qualify", said({{"A", 5, 5}, {"B", 5, 4}}), {}},
    };
    for (const auto& [name, levels, local] : rows)
        EXPECT_EQ(localSpeaker(levels), local) << name;
}

TEST(SpeakerAttribution, NamesNobodyTwiceAndKeepsWhatIsThere) {
    const Levels two = said({{"A", 5, 4}, {"B", 6, 0}});
    const Levels three = said({{"A", 5, 4}, {"B", 6, 0}, {"C", 1, 0}});
    const struct {
        const char* name;
        Levels levels;
        SpeakerNames existing;
        std::vector<std::string> attendees;
        SpeakerNames names;
    } rows[] = {
        {"both are known", two, {}, {"Guest"}, {{"A", "You"}, {"B", "Guest"}}},
        {"too few turns", said({{"A", 2, 2}, {"B", 6, 0}}), {{"B", "Bo"}}, {"Guest"}, {{"B", "Bo"}}},
        {"a third voice", three, {}, {"Guest"}, {{"A", "You"}}},
        {"a name is there", two, {{"A", "Chair"}}, {"Guest"}, {{"A", "Chair"}, {"B", "Guest"}}},
        {"You is someone else", two, {{"C", "You"}}, {"Guest"}, {{"B", "Guest"}, {"C", "You"}}},
        {"the attendee is someone else", two, {{"C", "Guest"}}, {"Guest"}, {{"A", "You"}, {"C", "Guest"}}},
        {"the attendee is called You", two, {}, {"You"}, {{"A", "You"}}},
    };
    for (const auto& [name, levels, existing, attendees, expected] : rows)
        EXPECT_EQ(names(levels, existing, "You", attendees), expected) << name;
}

} // namespace
} // namespace varnet::test
