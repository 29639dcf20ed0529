#pragma once

#include "MeetingCore/audio/CallAudioMonitor.h"
#include "Varnet/platform/Clock.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>

namespace varnet {

/// The meters of a recording: they jump up at once and fall by a quarter with each report, so that they do not flicker;
/// and the warning that the call has not been heard. Main thread, but for `report`.
class CaptureLevels : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<std::int64_t()>; ///< nanoseconds

    explicit CaptureLevels(QObject* parent = nullptr, Clock clock = monotonicNanoseconds);

    float microphone() const { return m_microphone; }

    /// Absent when no call is captured.
    std::optional<float> call() const { return m_call; }

    /// The user has been heard, but the call has stayed silent for 30 seconds.
    bool callMissing() const { return m_callMissing; }

    /// The values are those of a picture: no recording belongs to them.
    bool previewing() const { return m_previewing; }

    /// A recording begins.
    void reset(bool capturingCall);

    /// Applies the levels of a block on the main thread. Any thread, while this object lives.
    void report(float microphone, std::optional<float> call);

    void apply(float microphone, std::optional<float> call);

    /// Sets the three values as they are, for pictures of the window.
    void preview(float microphone, float call, bool callMissing);

Q_SIGNALS:
    void changed();
    void callMissingChanged();
    void previewingChanged();

private:
    void setCallMissing(bool missing);

    const Clock m_clock;
    float m_microphone = 0;
    std::optional<float> m_call;
    bool m_callMissing = false;
    bool m_previewing = false;
    CallAudioMonitor m_monitor;
    std::int64_t m_started;
};

} // namespace varnet
