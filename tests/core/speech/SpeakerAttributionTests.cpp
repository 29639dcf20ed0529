#include "MeetingCore/speech/SpeakerAttribution.h"
#include "MeetingCore/speech/SpeechResponse.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <limits>

namespace varnet::test {
namespace {

using namespace SpeakerAttribution;
using namespace std::string_literals;

using Levels = std::vector<TurnLevels>;

std::string bytes(std::uint32_t value) {
    return {reinterpret_cast<const char*>(&value), 4};
}

/// One sample for each second.
std::string track(const std::string& chunks, std::uint32_t declaredSeconds, const std::vector<std::int16_t>& seconds) {
    std::string wav = "RIFF\0\0\0\0WAVE"s + chunks + "data" + bytes(declaredSeconds * 32'000);
    for (const std::int16_t value : seconds)
        for (int i = 0; i < 16'000; ++i)
            wav.append(reinterpret_cast<const char*>(&value), 2);
    return wav;
}

TranscriptTurn turn(double start, double end) {
    return {.start = start, .end = end, .speaker = "S", .originalText = {}, .editedText = {}};
}

TEST(SpeakerAttribution, MeasuresTurnsOnBothTracks) {
    const TemporaryFolder folder;
    const auto levels = [&](const std::vector<TranscriptTurn>& turns) { return turnLevels(turns, folder.path()); };
    const std::string fmt = "fmt \x10\0\0\0\x01\0\x01\0\x80\x3E\0\0\x00\x7D\0\0\x02\0\x10\0"s;
    std::ofstream(folder / "microphone.wav", std::ios::binary)
        << track(fmt + "LIST\x03\0\0\0abc\0"s, 6, {16384, 16384, 16384, 16384, 8192, 8192});
    EXPECT_FALSE(levels({})) << "without the other track";
    // The last second was not yet declared when the recorder ended.
    std::ofstream(folder / "system.wav", std::ios::binary) << track(fmt, 5, {0, -32768, 0, 0, 8192, 32767});
    EXPECT_EQ(levels({}), Levels{});

    struct Row {
        const char* name;
        TranscriptTurn turn;
        Levels levels;
    };
    const Row rows[] = {
        {"a second", turn(1, 2), {{"S", 0.5F, 1.0F}}},
        {"several portions", turn(0, 6), {{"S", 0.4330127F, 0.46097723F}}},
        {"half a second", turn(0.75, 1.25), {{"S", 0.5F, 0.70710677F}}},
        {"less", turn(0.75, 1.24), {}},
        {"before the start", turn(-3, 1), {{"S", 0.5F, 0.0F}}},
        {"beyond the end", turn(4.5, 900), {{"S", 0.25F, 0.25F}}},
        {"wholly beyond the end", turn(1e9, 1e300), {{"S", 0.0F, 0.0F}}},
        {"beyond the declared end of one", turn(5, 6), {{"S", 0.25F, 0.0F}}},
    };
    for (const auto& [name, measured, expected] : rows)
        EXPECT_EQ(levels({measured}), expected) << name;
    EXPECT_DEATH(levels({turn(0, std::numeric_limits<double>::infinity())}), "broken invariant");

    std::ofstream(folder / "system.wav", std::ios::binary) << "RIFF\0\0\0\0WAVE"s + fmt;
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
    struct Row {
        const char* name;
        Levels levels;
        std::optional<std::string> local;
    };
    const Row rows[] = {
        {"nobody spoke", {}, {}},
        {"too few turns", twoTurns, {}},
        {"the third is loud enough", with(0.003F, 0), "A"},
        {"the third is too quiet", with(0.00299F, 0.00299F), {}},
        {"seven of ten", said({{"A", 7, 7}, {"A", 3, 0}}), "A"},
        {"six of ten", said({{"A", 10, 6}}), {}},
        {"three times is not more", {{"A", 0.3F, 0.1F}, {"A", 0.3F, 0.1F}, {"A", 0.3F, 0.1F}}, {}},
        {"two qualify", said({{"A", 5, 5}, {"B", 5, 4}}), {}},
        {"one of two", said({{"A", 5, 1}, {"B", 5, 4}}), "B"},
    };
    for (const auto& [name, levels, local] : rows)
        EXPECT_EQ(localSpeaker(levels), local) << name;
}

TEST(SpeakerAttribution, NamesNobodyTwiceAndKeepsWhatIsThere) {
    const Levels two = said({{"A", 5, 4}, {"B", 6, 0}});
    const Levels three = said({{"A", 5, 4}, {"B", 6, 0}, {"C", 1, 0}});
    struct Row {
        const char* name;
        Levels levels;
        SpeakerNames existing;
        std::vector<std::string> attendees;
        SpeakerNames names;
    };
    const Row rows[] = {
        {"both are known", two, {}, {"Guest"}, {{"A", "You"}, {"B", "Guest"}}},
        {"too few turns", said({{"A", 2, 2}, {"B", 6, 0}}), {{"B", "Bo"}}, {"Guest"}, {{"B", "Bo"}}},
        {"a third voice", three, {}, {"Guest"}, {{"A", "You"}}},
        {"two attendees", two, {}, {"Guest", "Host"}, {{"A", "You"}}},
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
