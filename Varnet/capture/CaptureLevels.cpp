#include "Varnet/capture/CaptureLevels.h"

#include <algorithm>

namespace varnet {

namespace {

constexpr double silenceSeconds = 30;
constexpr float fall = 0.75F;

} // namespace

CaptureLevels::CaptureLevels(QObject* parent, Clock clock)
    : QObject(parent), m_clock(std::move(clock)), m_monitor(silenceSeconds), m_started(m_clock()) {}

void CaptureLevels::reset(bool capturingCall) {
    m_microphone = 0;
    m_call = capturingCall ? std::optional(0.0F) : std::nullopt;
    m_monitor = CallAudioMonitor(silenceSeconds);
    m_started = m_clock();
    setCallMissing(false);
    Q_EMIT changed();
}

void CaptureLevels::report(float microphone, std::optional<float> call) {
    QMetaObject::invokeMethod(this, [this, microphone, call] { apply(microphone, call); }, Qt::QueuedConnection);
}

void CaptureLevels::apply(float microphone, std::optional<float> call) {
    m_microphone = std::max(microphone, fall * m_microphone);
    if (call) {
        m_call = std::max(*call, fall * m_call.value_or(0));
        setCallMissing(m_monitor.observe(microphone, *call, static_cast<double>(m_clock() - m_started) * 1e-9));
    }
    Q_EMIT changed();
}

void CaptureLevels::preview(float microphone, float call, bool callMissing) {
    m_microphone = microphone;
    m_call = call;
    m_previewing = true;
    Q_EMIT previewingChanged();
    setCallMissing(callMissing);
    Q_EMIT changed();
}

void CaptureLevels::setCallMissing(bool missing) {
    if (missing == m_callMissing)
        return;
    m_callMissing = missing;
    Q_EMIT callMissingChanged();
}

} // namespace varnet
