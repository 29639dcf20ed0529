#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QList>
#include <QObject>
#include <QUrl>
#include <QVariantMap>

#include <sys/types.h>

#include <functional>
#include <optional>

namespace varnet {

/// What others may ask of the program over the session bus.
struct BusActions {
    std::function<void(QString token)> show;      ///< with the leave to come to the front; empty where none was given
    std::function<void(QList<QUrl>)> importFiles; ///< addresses of files on this computer
    std::function<void()> newRecording;           ///< does nothing while one runs
    std::function<void()> toggleRecording;
    std::function<void()> quit;
};

/// The program on the session bus: the name org.varnet.Varnet, and at /org/varnet/Varnet the interface
/// org.freedesktop.Application with the actions "show", "new-recording", which shows the window too, "toggle-recording"
/// and "quit". Main thread.
class ApplicationBus : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationBus(BusActions actions, QDBusConnection connection = QDBusConnection::sessionBus());
    ~ApplicationBus() override;

    enum class Registration { registered, nameTaken, noBus };

    /// Exports the object, then takes the name: who sees the name finds the object.
    Registration registerName();

    /// Leaves the bus, so that a new start does not take this process, which is quitting, for a running one.
    void unregisterName();

    /// The process that owns the name; absent when none does or there is no bus.
    static std::optional<pid_t> owner(const QDBusConnection& connection = QDBusConnection::sessionBus());

    /// What the owner of the name says to a request.
    struct Answer {
        bool came = false; ///< in time
        QString refusal;   ///< what it did not do, as a sentence; empty for nothing
    };

    /// Asks the owner of the name to bring its window up and to import these files. Waits up to 25 seconds.
    static Answer askOwner(const QList<QUrl>& files = {},
                           const QDBusConnection& connection = QDBusConnection::sessionBus());

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& name, const QVariantList& parameter,
                                     const QVariantMap& platformData);

private:
    void show(const QVariantMap& platformData);

    BusActions m_actions;
    QDBusConnection m_connection;
    bool m_registered = false;
};

} // namespace varnet
