#pragma once

#include "Varnet/models/TrayState.h"

#include <QObject>

namespace varnet {

class RecordingClock;
class TrayItem;
class VarnetApp;

/// The program's item in the tray: shows the state, and passes on what is chosen there. Main thread; both objects must
/// outlive it.
class Tray : public QObject {
    Q_OBJECT

public:
    Tray(VarnetApp& app, const RecordingClock& clock, QObject* parent = nullptr);

    /// A tray shows the item.
    bool present() const;

Q_SIGNALS:
    void presentChanged();

private:
    void choose(int row, const QString& token);

    VarnetApp& m_app;
    TrayState m_state;
    TrayItem* m_item;
};

} // namespace varnet
