#pragma once

#include "MeetingCore/base/FileReader.h"

#include <cstdint>
#include <optional>
#include <string>

namespace varnet {

/// One chunk of a RIFF file, such as WAV is made of.
struct RiffChunk {
    std::string name;         ///< four bytes
    std::uint64_t offset = 0; ///< of its content in the file
    std::uint32_t size = 0;   ///< of its content in bytes as the header says; the file may end before
};

/// Walks the chunks of a RIFF file in their order, from behind its own header. Reading may throw FileFailure.
class RiffChunks {
public:
    explicit RiffChunks(const FileReader& file) : m_file(file) {}

    /// Absent when the file ends before another chunk's head, and after more chunks than any file has.
    std::optional<RiffChunk> next();

private:
    const FileReader& m_file;
    std::uint64_t m_offset = 12;
    int m_left = 1000;
};

} // namespace varnet
