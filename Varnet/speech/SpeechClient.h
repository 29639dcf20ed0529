#pragma once

#include "MeetingCore/speech/SpeechResponse.h"
#include "Varnet/async/Task.h"

#include <QUrl>

#include <filesystem>
#include <stop_token>

namespace varnet {

/// Has the local speech engine transcribe saved audio, with speakers. Holds no state.
namespace SpeechClient {

/// Sends a 16 kHz mono 16-bit WAV file to the engine at `baseURL` as it is and waits for the answer, at most 30 minutes
/// after the last byte moved. The file is streamed, whatever its size. Throws FileFailure when it cannot be read, with
/// nothing sent; SpeechFailure with the engine's own words for any status but 200; Failure when the exchange fails;
/// JsonFailure for an answer that is none; Cancelled after `stop`. The file is never changed. Main thread.
Task<SpeechResponse> transcribe(std::filesystem::path file, QUrl baseURL, std::stop_token stop = {});

} // namespace SpeechClient

} // namespace varnet
