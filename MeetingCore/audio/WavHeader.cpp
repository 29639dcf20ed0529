#include "MeetingCore/audio/WavHeader.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <string_view>

namespace varnet {

namespace {

/// Far more than any file has before its audio.
constexpr int maximumChunks = 1000;

template <std::size_t N>
using Bytes = std::array<char, N>;

template <std::size_t N>
std::optional<Bytes<N>> bytesAt(std::ifstream& file, std::uint64_t offset) {
    Bytes<N> bytes{};
    file.seekg(static_cast<std::streamoff>(offset));
    return file.read(bytes.data(), N) ? std::optional(bytes) : std::nullopt;
}

template <std::size_t N>
std::uint32_t number(const Bytes<N>& bytes, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i]);
    return value;
}

template <std::size_t N>
std::string_view name(const Bytes<N>& bytes, std::size_t offset) {
    return {bytes.data() + offset, 4};
}

bool isUncompressed(std::uint32_t formatTag) {
    constexpr std::uint32_t integers = 1, floats = 3, extensible = 0xFFFE;
    return formatTag == integers || formatTag == floats || formatTag == extensible;
}

} // namespace

std::optional<WavHeader> WavHeader::read(const std::filesystem::path& path) {
    std::error_code error;
    const std::uint64_t fileSize = std::filesystem::file_size(path, error);
    if (error) // also what is no regular file, such as a pipe, whose opening would wait
        return {};
    std::ifstream file(path, std::ios::binary);
    const auto riff = bytesAt<12>(file, 0);
    if (!riff || name(*riff, 0) != "RIFF" || name(*riff, 8) != "WAVE")
        return {};

    WavHeader header;
    std::uint64_t offset = 12;
    for (int chunksLeft = maximumChunks; chunksLeft > 0; --chunksLeft) {
        const auto chunk = bytesAt<8>(file, offset);
        if (!chunk)
            return {};
        const std::uint64_t size = number(*chunk, 4, 4), content = offset + chunk->size();
        if (name(*chunk, 0) == "fmt ") {
            const auto format = bytesAt<16>(file, content);
            if (!format || size < format->size() || !isUncompressed(number(*format, 0, 2)))
                return {};
            header.sampleRate = number(*format, 4, 4);
            header.bytesPerFrame = number(*format, 12, 2);
        } else if (name(*chunk, 0) == "data") {
            if (header.bytesPerFrame == 0)
                return {};
            header.dataOffset = content;
            header.dataBytes = std::min(size, fileSize - std::min(content, fileSize));
            return header;
        }
        offset = content + size + size % 2;
    }
    return {};
}

} // namespace varnet
