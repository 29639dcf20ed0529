#include "Varnet/models/RecordingClock.h"

#include "MeetingCore/base/Date.h"
#include "Varnet/models/Text.h"
#include "Varnet/store/MeetingPresentation.h"
#include "Varnet/store/MeetingStore.h"

#include <cmath>

namespace varnet {

RecordingClock::RecordingClock(const MeetingStore& store, QObject* parent) : QObject(parent), m_store(store) {
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RecordingClock::update);
    connect(&store, &MeetingStore::recordingStartedAtChanged, this, &RecordingClock::update);
    update();
}

void RecordingClock::update() {
    QString text;
    if (const auto& started = m_store.recordingStartedAt()) {
        const double elapsed = std::max(0.0, Date::now().secondsSinceReference - started->secondsSinceReference);
        const double whole = std::floor(elapsed);
        text = toQString(MeetingPresentation::clock(whole));
        m_timer.start(static_cast<int>(std::ceil((whole + 1 - elapsed) * 1000)));
    } else {
        m_timer.stop();
    }
    if (text == m_text)
        return;
    m_text = text;
    Q_EMIT changed();
}

} // namespace varnet
