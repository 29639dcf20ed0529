#pragma once

#include "MeetingCore/base/Failures.h"
#include "Varnet/platform/AudioCapture.h"

#include <exception>
#include <string>

namespace varnet {

/// Why audio cannot be recorded or converted.
class AudioFailure : public Failure {
public:
    enum class Kind {
        permission, ///< the program may not use the microphone
        format,     ///< the input device gives no usable audio
        conversion, ///< the audio cannot be brought to 16 kHz
    };

    explicit AudioFailure(Kind kind, std::string reason = {});
    Kind kind() const { return m_kind; }
    /// What led to it, in words for the log; may be empty.
    const std::string& reason() const { return m_reason; }

private:
    Kind m_kind;
    std::string m_reason;
};

/// What a recorder's `start` fails with when the platform's capture could not start.
std::exception_ptr startFailure(const CaptureUnavailable& reason);

} // namespace varnet
