#pragma once

#include "Varnet/platform/TrayItem.h"

#include <QDBusArgument>
#include <QDBusContext>
#include <QDBusVariant>
#include <QList>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace varnet {

/// One entry as com.canonical.dbusmenu has it. The menu itself is 0, its rows count from 1.
struct MenuEntry {
    int id = 0;
    QVariantMap properties;
};
using MenuEntries = QList<MenuEntry>;

struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QVariantList children; ///< layouts
};

struct LostProperties {
    int id = 0;
    QStringList names;
};
using AllLostProperties = QList<LostProperties>;

struct MenuEvent {
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint time = 0;
};
using MenuEvents = QList<MenuEvent>;

/// The menu of the tray item: the object of the interface com.canonical.dbusmenu. Its layout never changes. Main
/// thread.
class TrayMenu : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version FINAL)
    Q_PROPERTY(QString TextDirection READ textDirection FINAL)
    Q_PROPERTY(QString Status READ status FINAL)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath FINAL)

public:
    static constexpr auto path = "/MenuBar";

    TrayMenu(const TrayContent& content, std::function<void(int row)> chosen);

    /// The content is another one than before: tells the tray which rows.
    void follow(const TrayContent& before);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                varnet::MenuLayout& layout);
    Q_SCRIPTABLE varnet::MenuEntries GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& eventId, const QDBusVariant& data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const varnet::MenuEvents& events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    // The bus knows lists by what they are lists of.
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const QList<varnet::MenuEntry>& updated,
                                             const QList<varnet::LostProperties>& removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

private:
    bool has(int id) const;
    QVariantMap properties(int id, const QStringList& names) const;
    bool take(int id, const QString& event);
    void refuse(int id);

    const TrayContent& m_content;
    const std::function<void(int)> m_chosen;
};

} // namespace varnet

Q_DECLARE_METATYPE(varnet::MenuEntry)
Q_DECLARE_METATYPE(varnet::MenuLayout)
Q_DECLARE_METATYPE(varnet::LostProperties)
Q_DECLARE_METATYPE(varnet::MenuEvent)
