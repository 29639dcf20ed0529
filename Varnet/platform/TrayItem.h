#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace varnet {

/// One entry of the tray item's menu.
struct TrayRow {
    QString text;
    bool enabled = true;
    bool visible = true;
    bool divider = false;

    bool operator==(const TrayRow&) const = default;
};

/// What the program shows of itself in the desktop's tray.
struct TrayContent {
    QString title;             ///< the program's name
    QString icon;              ///< a symbolic icon's name in the desktop's icon theme
    QString tooltip;           ///< one line
    std::vector<TrayRow> rows; ///< as many as at first, for the life of the item: a row that is not needed is hidden

    bool operator==(const TrayContent&) const = default;
};

/// The program's item in the tray of the desktop (StatusNotifierItem on the session bus, its menu as
/// com.canonical.dbusmenu). It appears wherever a tray comes up, now or later, and again after the tray was restarted;
/// a desktop without one has nothing to show and loses nothing. An icon that the icon theme lacks, as it does before
/// the program is installed, is sent as pictures that are readable on dark and light ground. Main thread.
class TrayItem : public QObject {
    Q_OBJECT

public:
    /// Exports the item and looks for a tray, without waiting for the answer. `drawings` is the folder, or the
    /// resource, with an SVG file of each icon's name.
    TrayItem(TrayContent content, QString drawings, QDBusConnection connection = QDBusConnection::sessionBus(),
             QObject* parent = nullptr);
    ~TrayItem() override;

    /// Tells the tray what differs, and nothing else: the menu is never built anew.
    void show(const TrayContent& content);

    /// A tray shows the item.
    bool present() const { return m_present; }

Q_SIGNALS:
    void presentChanged();
    /// The item was clicked. `token` lets a window come to the front (xdg-activation), where the desktop gave one.
    void activated(QString token);
    /// The row of that index was chosen.
    void chosen(int row, QString token);

private:
    struct Exports;

    void registerItem();
    void askForHost();
    void setPresent(bool present);

    QDBusConnection m_connection;
    std::unique_ptr<Exports> m_exports;
    bool m_present = false;

private Q_SLOTS:
    void hostsChanged();
};

} // namespace varnet
