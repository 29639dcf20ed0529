#pragma once

#include "Varnet/models/EngineLine.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class EngineSupervisor;
class MeetingStore;
class RecordingClock;

/// What the sidebar shows beside its commands. Main thread; the three objects must outlive it.
class SidebarState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the window")
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY elapsedChanged FINAL)
    Q_PROPERTY(QString meetingCount READ meetingCount NOTIFY meetingCountChanged FINAL)
    Q_PROPERTY(QString deletedCount READ deletedCount NOTIFY deletedCountChanged FINAL)
    Q_PROPERTY(varnet::EngineLine speech READ speech NOTIFY speechChanged FINAL)
    Q_PROPERTY(varnet::EngineLine notes READ notes NOTIFY notesChanged FINAL)

public:
    SidebarState(const MeetingStore& store, const EngineSupervisor& engines, const RecordingClock& clock,
                 QObject* parent = nullptr);

    QString elapsed() const;      ///< the recording's running time; empty without one
    QString meetingCount() const; ///< in digits; empty for none
    QString deletedCount() const; ///< the same for the deleted ones
    EngineLine speech() const;
    EngineLine notes() const;

Q_SIGNALS:
    void elapsedChanged();
    void meetingCountChanged();
    void deletedCountChanged();
    void speechChanged();
    void notesChanged();

private:
    const MeetingStore& m_store;
    const EngineSupervisor& m_engines;
    const RecordingClock& m_clock;
};

} // namespace varnet
