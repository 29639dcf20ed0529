#pragma once

#include <string_view>

/// The vocabulary of Meeting::status. These texts are a storage format: they are compared exactly, by prefix and by
/// substring.
namespace varnet::MeetingStatus {

inline constexpr std::string_view ready = "Ready";
inline constexpr std::string_view scheduled = "Scheduled · ready to record";
inline constexpr std::string_view cancelled = "Cancelled · calendar event";
inline constexpr std::string_view importedFromGranola = "Imported · Granola source";
inline constexpr std::string_view preparingMicrophone = "Preparing microphone";
inline constexpr std::string_view recordingLive = "Recording · live transcript";
inline constexpr std::string_view recordingOffline = "Recording · transcription offline";
inline constexpr std::string_view didNotStart = "Recording did not start";
inline constexpr std::string_view finishingTranscript = "Finishing transcript";
inline constexpr std::string_view savedWithTranscript = "Audio saved · live transcript";
inline constexpr std::string_view savedRetryTranscription = "Audio saved · retry transcription";
inline constexpr std::string_view captureIncomplete = "Capture incomplete · check saved audio";
inline constexpr std::string_view interrupted = "Interrupted · check saved audio and retry";
inline constexpr std::string_view preparingAudio = "Preparing audio";
inline constexpr std::string_view transcribing = "Transcribing and assigning speakers";
inline constexpr std::string_view transcribed = "Transcribed";
inline constexpr std::string_view transcriptionNeedsAttention = "Transcription needs attention";
inline constexpr std::string_view importNeedsAttention = "Import needs attention";
inline constexpr std::string_view transcriptRestored = "Transcript restored";

} // namespace varnet::MeetingStatus
