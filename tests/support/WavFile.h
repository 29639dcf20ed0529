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

} // namespace varnet::test
