#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <vector>

namespace varnet {

/// The shape of a recording in a fixed number of columns, to be drawn at any width.
struct Waveform {
    static constexpr std::size_t columnCount = 2000;

    std::vector<float> peaks; ///< the largest magnitude of each column, 0 to 1; `columnCount` of them

    /// Reads a mono 16-bit WAV file from its start to its end in bounded memory; a column of no samples is 0. Absent
    /// for what cannot be read or is of another kind, and soon after `stop`. Takes as long as reading the file; any
    /// thread.
    static std::optional<Waveform> read(const std::filesystem::path& wav, const std::stop_token& stop = {});

    bool operator==(const Waveform&) const = default;
};

} // namespace varnet
