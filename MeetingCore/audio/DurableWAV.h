#pragma once

#include "MeetingCore/base/FileDescriptor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

namespace varnet {

/// A growing WAV file (mono, 16-bit little-endian PCM, 16,000 frames a second) that plays after a crash at any moment.
///
/// It is created whole with an empty header. Audio is appended unbuffered; about once a second the header is rewritten
/// and the file flushed to stable storage. `repair` brings back what lies behind the last header after a crash.
/// No lock: one object is used from one serial context. All failures are FileFailure.
class DurableWAV {
public:
    static constexpr std::uint64_t headerSize = 44;
    static constexpr std::uint64_t checkpointInterval = 32'000;      ///< data bytes, one second
    static constexpr std::uint64_t maximumDataBytes = 4'294'967'259; ///< keeps the RIFF size field in 32 bits

    /// Creates the file, or replaces an existing one by an empty one, with mode 0600.
    explicit DurableWAV(const std::filesystem::path& path);

    /// Does the work of `close` if that has not happened, swallowing failures.
    ~DurableWAV();

    DurableWAV(const DurableWAV&) = delete;
    DurableWAV& operator=(const DurableWAV&) = delete;

    /// Appends converted samples. Throws fileWriteOutOfSpace, writing nothing, when closed, for an odd length, or past
    /// the largest size. After a failed write the byte count stays as it was.
    void append(std::span<const std::byte> data);

    /// Writes the exact header, flushes and closes. May be called again; after a failure it can be repeated.
    void close();

    /// Audio bytes appended so far.
    std::uint64_t bytes() const { return m_bytes; }

    /// The whole header of such a file with this much audio.
    static std::array<std::byte, headerSize> header(std::uint64_t dataBytes);

    /// 16-bit samples of `samples`: times 32767, limited to 16 bits, truncated toward zero; non-finite values give 0.
    static std::vector<std::byte> pcm(std::span<const float> samples);

    /// Makes a file that `close` never reached what `close` would have left, from its real size. Throws
    /// fileReadCorruptFile, changing nothing, for a file that this class did not write. Nothing may have it open.
    static void repair(const std::filesystem::path& path);

private:
    void updateHeader();

    FileDescriptor m_file;
    std::uint64_t m_bytes = 0;
    std::uint64_t m_checkpoint = 0;
};

} // namespace varnet
