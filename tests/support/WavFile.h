#pragma once

#include "MeetingCore/base/AtomicFile.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace varnet::test {

/// How many bytes of audio the header of a recording declares.
inline std::uint32_t declaredBytes(const std::filesystem::path& file) {
    std::uint32_t size = 0;
    std::memcpy(&size, readFile(file).substr(40, 4).data(), 4);
    return size;
}

/// The samples of a closed recording: its header declares all of it.
inline std::vector<std::int16_t> wavSamples(const std::filesystem::path& file) {
    const std::string audio = readFile(file).substr(44);
    if (declaredBytes(file) != audio.size())
        throw std::runtime_error(file.string() + " was not closed");
    std::vector<std::int16_t> samples(audio.size() / 2);
    if (!audio.empty())
        std::memcpy(samples.data(), audio.data(), audio.size());
    return samples;
}

/// Writes a closed mono recording.
inline void writeRecording(const std::filesystem::path& file, const std::vector<std::int16_t>& samples,
                           std::uint32_t sampleRate = 16'000) {
    std::string bytes("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\0\0\0\0\0\0\0\0\2\0\x10\0data\0\0\0\0", 44);
    const auto put = [&](std::size_t offset, std::size_t value) {
        const auto number = static_cast<std::uint32_t>(value);
        std::memcpy(bytes.data() + offset, &number, 4);
    };
    const std::size_t size = samples.size() * 2;
    put(4, size + 36);
    put(24, sampleRate);
    put(28, sampleRate * 2);
    put(40, size);
    bytes.append(reinterpret_cast<const char*>(samples.data()), size);
    writeFileAtomically(file, bytes);
}

} // namespace varnet::test
