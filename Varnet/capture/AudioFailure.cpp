#include "Varnet/capture/AudioFailure.h"

#include "Varnet/platform/AppInfo.h"

#include <utility>

namespace varnet {

namespace {

std::string sentence(AudioFailure::Kind kind) {
    switch (kind) {
    case AudioFailure::Kind::permission:
        return "Microphone access is needed to record. Enable " + AppInfo::name() +
               " in System Settings → Privacy & Security → Microphone.";
    case AudioFailure::Kind::format:
        return "The selected audio device has no usable input format.";
    case AudioFailure::Kind::conversion:
        break;
    }
    return "Audio could not be converted to 16 kHz PCM. The original file was not changed.";
}

} // namespace

AudioFailure::AudioFailure(Kind kind, std::string reason)
    : Failure(sentence(kind)), m_kind(kind), m_reason(std::move(reason)) {}

std::exception_ptr startFailure(const CaptureUnavailable& reason) {
    switch (reason.reason()) {
    case CaptureUnavailable::Reason::accessDenied:
        return std::make_exception_ptr(AudioFailure(AudioFailure::Kind::permission));
    case CaptureUnavailable::Reason::noMicrophone:
        return std::make_exception_ptr(AudioFailure(AudioFailure::Kind::format));
    case CaptureUnavailable::Reason::noOutput:
        return std::make_exception_ptr(SpeechFailure("No display is available for system audio capture."));
    case CaptureUnavailable::Reason::noServer:
        return std::make_exception_ptr(SpeechFailure(
            "The sound server PipeWire is not running, so nothing can be recorded. Start it and try again."));
    case CaptureUnavailable::Reason::streamFailed:
        break;
    }
    return std::make_exception_ptr(reason);
}

} // namespace varnet
