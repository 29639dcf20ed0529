#pragma once

#include "Varnet/async/TaskScope.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace varnet {

class AppRouter;
class EngineSupervisor;
class MeetingStore;

/// The commands of the application, with the words and the rule by which each can be used. Buttons, shortcuts, menus
/// and the bus all come here. Main thread; the three objects must outlive it.
class AppCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its commands")
    Q_PROPERTY(QString recordTitle READ recordTitle NOTIFY recordChanged)
    Q_PROPERTY(bool recordEnabled READ recordEnabled NOTIFY recordChanged)
    Q_PROPERTY(bool stops READ stops NOTIFY recordChanged)

public:
    AppCommands(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent = nullptr);

    QString recordTitle() const; ///< "New Recording" or "Stop Recording"
    bool recordEnabled() const;  ///< a running recording can always be stopped
    bool stops() const;          ///< the record command would stop a recording

    Q_INVOKABLE void toggleRecording();
    Q_INVOKABLE void showLibrary();
    /// Opens the page of the selected meeting, if one is selected.
    Q_INVOKABLE void openSelected();

Q_SIGNALS:
    void recordChanged();

private:
    MeetingStore& m_store;
    EngineSupervisor& m_engines;
    AppRouter& m_router;
    TaskScope m_tasks{"Commands"};
};

} // namespace varnet
