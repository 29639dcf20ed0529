#pragma once

#include "MeetingCore/audio/Waveform.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stop_token>

namespace varnet {

/// Waveforms kept on the disk: one small file for each recording, which holds for one state of it (size and time of its
/// last change). Slow, so for the worker; any number of threads and processes.
namespace WaveformCache {

/// How many recordings' waveforms are kept; the oldest beyond them are removed.
inline constexpr std::size_t maximumCount = 500;

/// The folder of the program's one cache, below Paths::caches().
std::filesystem::path folder();

/// The waveform of a recording from `folder`, else made from the recording and kept there in place of that of an
/// earlier state. A cache file that is no waveform is made anew; a cache that cannot be written is done without. Absent
/// as with Waveform::read.
std::optional<Waveform> waveform(const std::filesystem::path& wav, const std::filesystem::path& folder,
                                 const std::stop_token& stop = {});

} // namespace WaveformCache

} // namespace varnet
