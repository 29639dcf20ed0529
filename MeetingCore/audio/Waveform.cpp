#include "MeetingCore/audio/Waveform.h"

#include "MeetingCore/audio/ProcessorClones.h"
#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/FileReader.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace varnet {

namespace {

/// A megabyte: systems copy large pieces faster, and it is in the processor's cache still when it is looked at.
constexpr std::size_t chunkSamples = 512 * 1024;

VARNET_PROCESSOR_CLONES int largestMagnitude(const std::int16_t* samples, std::size_t count) {
    std::int16_t low = 0, high = 0;
    for (std::size_t i = 0; i < count; ++i) {
        low = std::min(low, samples[i]);
        high = std::max(high, samples[i]);
    }
    return std::max(-static_cast<int>(low), static_cast<int>(high));
}

} // namespace

std::optional<Waveform> Waveform::read(const std::filesystem::path& wav, const std::stop_token& stop) try {
    const FileReader file(wav);
    const auto header = WavHeader::read(file);
    if (!header || !header->isMono16Bit)
        return {};
    const std::uint64_t frameCount = header->frameCount();
    const auto columnEnd = [&](std::size_t column) { return (column + 1) * frameCount / columnCount; };
    std::vector<std::int16_t> chunk(chunkSamples);
    std::vector<int> magnitudes(columnCount);
    std::size_t column = 0;
    for (std::uint64_t frame = 0; frame < frameCount;) {
        const auto part = std::span(chunk).first(std::min<std::uint64_t>(chunk.size(), frameCount - frame));
        if (stop.stop_requested() ||
            file.read(std::as_writable_bytes(part), header->dataOffset + frame * 2) < part.size_bytes())
            return {};
        for (std::size_t done = 0; done < part.size();) {
            while (columnEnd(column) <= frame + done)
                ++column;
            const auto count = std::min<std::uint64_t>(part.size() - done, columnEnd(column) - (frame + done));
            magnitudes[column] = std::max(magnitudes[column], largestMagnitude(part.data() + done, count));
            done += count;
        }
        frame += part.size();
    }
    Waveform waveform;
    waveform.peaks.reserve(columnCount);
    for (const int magnitude : magnitudes)
        waveform.peaks.push_back(static_cast<float>(magnitude) / 32'768);
    return waveform;
} catch (const FileFailure&) {
    return {};
}

} // namespace varnet
