#include "Varnet/shell/Tray.h"

#include "Varnet/shell/VarnetApp.h"

namespace varnet {

Tray::Tray(VarnetApp& app, const RecordingClock& clock, QObject* parent)
    : QObject(parent),
      m_app(app),
      m_state(app.store(), app.engines(), clock, app.commands()),
      m_item(new TrayItem(m_state.content(), QStringLiteral(":/qt/qml/Varnet/screens/icons"),
                          QDBusConnection::sessionBus(), this)) {
    connect(&m_state, &TrayState::changed, m_item, [this] { m_item->show(m_state.content()); });
    connect(m_item, &TrayItem::presentChanged, this, &Tray::presentChanged);
    connect(m_item, &TrayItem::activated, &app.commands(), &AppCommands::showWindow);
    connect(m_item, &TrayItem::chosen, this, &Tray::choose);
}

bool Tray::present() const {
    return m_item->present();
}

void Tray::choose(int row, const QString& token) {
    switch (row) {
    case TrayState::record:
        m_app.commands().toggleRecording();
        break;
    case TrayState::open:
        m_app.commands().showWindow(token);
        break;
    case TrayState::settings:
        m_app.commands().showSettings(token);
        break;
    case TrayState::quit:
        m_app.delegate().quit();
        break;
    default:
        break;
    }
}

} // namespace varnet
