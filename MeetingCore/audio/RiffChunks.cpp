#include "MeetingCore/audio/RiffChunks.h"

#include <array>
#include <span>

namespace varnet {

std::optional<RiffChunk> RiffChunks::next() {
    std::array<unsigned char, 8> head{};
    if (m_left-- == 0 || m_file.read(std::as_writable_bytes(std::span(head)), m_offset) < head.size())
        return {};
    RiffChunk chunk{{head.begin(), head.begin() + 4}, m_offset + head.size(), 0};
    for (std::size_t i = head.size(); i-- > 4;)
        chunk.size = chunk.size << 8 | head[i];
    m_offset = chunk.offset + chunk.size + chunk.size % 2;
    return chunk;
}

} // namespace varnet
