#include "MeetingCore/audio/WavHeader.h"

#include "MeetingCore/audio/RiffChunks.h"
#include "MeetingCore/base/Failures.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace varnet {

namespace {

/// Who writes into a pipe cannot know the length, and puts about the largest number that fits.
constexpr std::uint64_t streamedSize = 0x7FFF'0000;

template <std::size_t N>
using Bytes = std::array<char, N>;

template <std::size_t N>
std::optional<Bytes<N>> bytesAt(const FileReader& file, std::uint64_t offset) {
    Bytes<N> bytes{};
    return file.read(std::as_writable_bytes(std::span(bytes)), offset) == N ? std::optional(bytes) : std::nullopt;
}

template <std::size_t N>
std::uint32_t number(const Bytes<N>& bytes, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return value;
}

constexpr std::uint32_t integers = 1, floats = 3, extensible = 0xFFFE;

bool isUncompressed(std::uint32_t formatTag) {
    return formatTag == integers || formatTag == floats || formatTag == extensible;
}

} // namespace

std::optional<WavHeader> WavHeader::read(const FileReader& file) {
    const auto riff = bytesAt<12>(file, 0);
    if (!riff || std::string_view(riff->data(), 4) != "RIFF" || std::string_view(riff->data() + 8, 4) != "WAVE")
        return {};
    WavHeader header;
    RiffChunks chunks(file);
    while (const auto chunk = chunks.next()) {
        if (chunk->name == "fmt ") {
            const auto format = bytesAt<16>(file, chunk->offset);
            if (!format || chunk->size < format->size() || !isUncompressed(number(*format, 0, 2)))
                return {};
            header.sampleRate = number(*format, 4, 4);
            header.bytesPerFrame = number(*format, 12, 2);
            header.isMono16Bit = number(*format, 0, 2) == integers && number(*format, 2, 2) == 1 &&
                                 number(*format, 14, 2) == 16 && header.bytesPerFrame == 2;
        } else if (chunk->name == "data") {
            if (header.bytesPerFrame == 0)
                return {};
            header.dataOffset = chunk->offset;
            header.dataBytes = std::min<std::uint64_t>(chunk->size, file.size() - std::min(chunk->offset, file.size()));
            header.missingBytes = chunk->size < streamedSize ? chunk->size - header.dataBytes : 0;
            return header;
        }
    }
    return {};
}

std::optional<WavHeader> WavHeader::read(const std::filesystem::path& path) {
    try {
        return read(FileReader(path));
    } catch (const FileFailure&) {
        return {};
    }
}

} // namespace varnet
