#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>

namespace varnet {

/// Brings the first audio stream of any media file to a new 16 kHz mono 16-bit WAV file with mode 0600, which has
/// reached the disk when this returns.
///
/// Blocks for as long as it takes; any thread but the main one. `onProgress` is told the share that is done, 0 to 1 and
/// never less than before, about ten times a second on the same thread. Only `source` itself is ever opened: no address
/// and no other file that it names. It is not changed.
///
/// Throws FileFailure when a file cannot be read or written, AudioFailure::conversion for what is no audio or ends in
/// the middle of it (its `reason` is for the log), and Cancelled soon after `stop` was requested. Until a first frame
/// is decoded no target is made; from then on a failure leaves a part of it behind. A valid file without audio frames
/// gives a target without any. What is taken as damaged, and what is skipped, stands at AudioFileReader.
void convertFile(const std::filesystem::path& source, const std::filesystem::path& target,
                 const std::function<void(double)>& onProgress = {}, const std::stop_token& stop = {});

} // namespace varnet
