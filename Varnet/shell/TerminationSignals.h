#pragma once

#include <QObject>

class QSocketNotifier;

namespace varnet {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread's event loop. One object at a time; its end restores
/// what was there. Main thread.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void requested();
};

} // namespace varnet
