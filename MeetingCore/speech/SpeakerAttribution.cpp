#include "MeetingCore/speech/SpeakerAttribution.h"

#include "MeetingCore/audio/ProcessorClones.h"
#include "MeetingCore/audio/RiffChunks.h"
#include "MeetingCore/base/Assert.h"
#include "MeetingCore/base/Failures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <memory>
#include <set>

namespace varnet::SpeakerAttribution {

namespace {

constexpr double sampleRate = 16000;
constexpr double shortestTurn = 0.5; // seconds
constexpr std::uint64_t sampleBytes = 2;
constexpr std::size_t portionSamples = 32 * 1024;

static_assert(std::endian::native == std::endian::little, "samples are read as the file has them");

/// Exact for any count that a file can hold. By pairs, which processors multiply and add in one step.
VARNET_PROCESSOR_CLONES
std::uint64_t sumOfSquares(const std::int16_t* samples, std::size_t count) {
    const auto square = [](std::int16_t sample) { return static_cast<std::uint32_t>(sample * sample); };
    std::uint64_t sum = count % 2 == 0 ? 0 : square(samples[count - 1]);
    for (std::size_t i = 0; i + 1 < count; i += 2)
        sum += square(samples[i]) + square(samples[i + 1]);
    return sum;
}

/// One of the recording's tracks: 16-bit samples behind a header of any length.
class Track {
public:
    /// Absent when the file cannot be read or has no audio chunk.
    static std::unique_ptr<Track> open(const std::filesystem::path& path);

    /// Root mean square of the samples between two times; 0 where there are none or they cannot be read.
    float level(double from, double to, const std::stop_token& stop) const;

private:
    explicit Track(const std::filesystem::path& path) : m_file(path) {}
    std::uint64_t sampleAt(double seconds) const;

    FileReader m_file;
    std::uint64_t m_offset = 0;
    std::uint64_t m_samples = 0; ///< as the header says: what lies behind it was not yet safe when it was written
};

std::unique_ptr<Track> Track::open(const std::filesystem::path& path) {
    try {
        std::unique_ptr<Track> track(new Track(path));
        RiffChunks chunks(track->m_file);
        while (const auto chunk = chunks.next()) {
            if (chunk->name != "data")
                continue;
            track->m_offset = chunk->offset;
            track->m_samples = chunk->size / sampleBytes;
            return track;
        }
    } catch (const FileFailure&) {
    }
    return nullptr;
}

std::uint64_t Track::sampleAt(double seconds) const {
    VARNET_ASSERT(std::isfinite(seconds));
    return static_cast<std::uint64_t>(std::clamp(seconds * sampleRate, 0.0, static_cast<double>(m_samples)));
}

float Track::level(double from, double to, const std::stop_token& stop) const {
    const std::uint64_t end = sampleAt(to);
    std::uint64_t position = sampleAt(from);
    std::uint64_t sum = 0, count = 0;
    std::array<std::int16_t, portionSamples> samples;
    try {
        while (position < end && !stop.stop_requested()) {
            const auto wanted = std::span(samples).first(std::min<std::uint64_t>(end - position, portionSamples));
            const std::size_t got =
                m_file.read(std::as_writable_bytes(wanted), m_offset + position * sampleBytes) / sampleBytes;
            sum += sumOfSquares(samples.data(), got);
            count += got;
            position = got == wanted.size() ? position + got : end; // the file may end before
        }
    } catch (const FileFailure&) {
        return 0;
    }
    constexpr double fullScale = 32768.0 * 32768.0;
    return count == 0
               ? 0
               : static_cast<float>(std::sqrt(static_cast<double>(sum) / fullScale / static_cast<double>(count)));
}

bool isTaken(const SpeakerNames& names, const std::string& name) {
    return std::ranges::any_of(names, [&](const auto& entry) { return entry.second == name; });
}

} // namespace

std::optional<std::vector<TurnLevels>> turnLevels(std::span<const TranscriptTurn> turns,
                                                  const std::filesystem::path& folder, const std::stop_token& stop) {
    const auto microphone = Track::open(folder / "microphone.wav");
    const auto call = microphone ? Track::open(folder / "system.wav") : nullptr;
    if (!call)
        return {};
    std::vector<TurnLevels> levels;
    for (const TranscriptTurn& turn : turns)
        if (!(turn.end - turn.start < shortestTurn))
            levels.push_back(
                {turn.speaker, microphone->level(turn.start, turn.end, stop), call->level(turn.start, turn.end, stop)});
    return stop.stop_requested() ? std::nullopt : std::optional(std::move(levels));
}

std::optional<std::string> localSpeaker(std::span<const TurnLevels> turns) {
    struct Tally {
        std::int64_t microphone = 0;
        std::int64_t judged = 0;
    };
    std::map<std::string, Tally> tallies;
    for (const TurnLevels& turn : turns) {
        if (std::max(turn.microphone, turn.call) < quiet)
            continue;
        Tally& tally = tallies[turn.speaker];
        ++tally.judged;
        if (turn.microphone > turn.call * dominance)
            ++tally.microphone;
    }
    std::optional<std::string> local;
    for (const auto& [speaker, tally] : tallies) {
        const double share = static_cast<double>(tally.microphone) / static_cast<double>(tally.judged);
        if (tally.judged < minimumTurns || share < agreement)
            continue;
        if (local)
            return {}; // one voice on two tracks: the call leaks into the microphone
        local = speaker;
    }
    return local;
}

SpeakerNames names(std::span<const TurnLevels> turns, const SpeakerNames& existing, const std::string& youName,
                   std::span<const std::string> otherAttendees) {
    const auto local = localSpeaker(turns);
    if (!local)
        return existing;
    SpeakerNames result = existing;
    const auto give = [&result](const std::string& speaker, const std::string& name) {
        if (!isTaken(result, name))
            result.emplace(speaker, name);
    };
    give(*local, youName);
    std::set<std::string> others;
    for (const TurnLevels& turn : turns)
        if (turn.speaker != *local)
            others.insert(turn.speaker);
    if (otherAttendees.size() == 1 && others.size() == 1)
        give(*others.begin(), otherAttendees.front());
    return result;
}

} // namespace varnet::SpeakerAttribution
