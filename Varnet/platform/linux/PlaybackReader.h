#pragma once

#include "MeetingCore/audio/WavHeader.h"
#include "MeetingCore/base/FileReader.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace soundtouch {
class SoundTouch;
}

namespace varnet {

/// The sound of a mono 16-bit WAV file from a place on, at a speed without another pitch. One thread.
class PlaybackReader {
public:
    /// Starts at the frame nearest to `position` (seconds). A sound that does not start with its file fades in within
    /// `fadeSeconds`. Throws FileFailure, and Failure for a file of another kind.
    PlaybackReader(const std::filesystem::path& wav, double position, double rate);
    ~PlaybackReader();
    PlaybackReader(const PlaybackReader&) = delete;
    PlaybackReader& operator=(const PlaybackReader&) = delete;

    static constexpr double fadeSeconds = 0.005;

    std::uint32_t sampleRate() const { return m_header.sampleRate; }

    /// The next samples; how many, fewer than there is room for only at the end. At a rate of 1 a sample is its value
    /// in the file over 32,768. Throws FileFailure, and Failure for a file that has become shorter.
    std::size_t read(std::span<float> samples);

private:
    std::size_t readFile(std::span<float> samples);
    std::size_t readStretched(std::span<float> samples);

    FileReader m_file;
    WavHeader m_header;
    std::uint64_t m_frame = 0; ///< of the file, to be read next
    std::size_t m_faded = 0, m_fadeFrames = 0;
    std::unique_ptr<soundtouch::SoundTouch> m_stretcher; ///< absent at the usual speed
    bool m_flushed = false;
};

} // namespace varnet
