#pragma once

#include "MeetingCore/base/FileReader.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace varnet {

/// What the header of a WAV file tells about its audio.
struct WavHeader {
    std::uint32_t sampleRate = 0;    ///< frames a second
    std::uint32_t bytesPerFrame = 0; ///< at least 1
    std::uint64_t dataOffset = 0;    ///< where the audio begins in the file
    std::uint64_t dataBytes = 0;     ///< as the header says, but no more than the file holds
    bool isMono16Bit = false;        ///< one channel of 16-bit integers, as recordings are
    std::uint64_t missingBytes = 0;  ///< which the header tells of besides; 0 where its size stands for "unknown"

    std::uint64_t frameCount() const { return dataBytes / bytesPerFrame; }

    /// Whether it is a recording with a rate that sound has; what says otherwise is damaged.
    bool isPlayable() const { return isMono16Bit && sampleRate >= 1'000 && sampleRate <= 384'000; }

    /// Walks the file's chunks; absent for what cannot be read or is no WAV file of uncompressed samples. Any thread.
    static std::optional<WavHeader> read(const std::filesystem::path& path);
    /// The same of a file that is open; throws FileFailure where that cannot be read.
    static std::optional<WavHeader> read(const FileReader& file);

    bool operator==(const WavHeader&) const = default;
};

} // namespace varnet
