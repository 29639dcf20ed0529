#pragma once

#include <QObject>
#include <QTimer>

namespace varnet {

class MeetingStore;

/// The running time of the recording as text, one change a second. Main thread; the store must outlive it.
class RecordingClock : public QObject {
    Q_OBJECT
public:
    explicit RecordingClock(const MeetingStore& store, QObject* parent = nullptr);

    /// Such as "1:05"; empty without a recording.
    const QString& text() const { return m_text; }

Q_SIGNALS:
    void changed();

private:
    void update();

    const MeetingStore& m_store;
    QTimer m_timer;
    QString m_text;
};

} // namespace varnet
