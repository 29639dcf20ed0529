#include "Varnet/platform/linux/TrayMenu.h"

#include <QDBusError>
#include <QDBusMetaType>
#include <QGuiApplication>

namespace varnet {

namespace {

constexpr uint revision = 1;

template <class... Fields>
QDBusArgument& write(QDBusArgument& argument, const Fields&... fields) {
    argument.beginStructure();
    (argument << ... << fields);
    argument.endStructure();
    return argument;
}

template <class... Fields>
const QDBusArgument& read(const QDBusArgument& argument, Fields&... fields) {
    argument.beginStructure();
    (argument >> ... >> fields);
    argument.endStructure();
    return argument;
}

} // namespace

static QDBusArgument& operator<<(QDBusArgument& argument, const MenuEntry& entry) {
    return write(argument, entry.id, entry.properties);
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEntry& entry) {
    return read(argument, entry.id, entry.properties);
}

static QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout) {
    return write(argument, layout.id, layout.properties, layout.children);
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout) {
    return read(argument, layout.id, layout.properties, layout.children);
}

static QDBusArgument& operator<<(QDBusArgument& argument, const LostProperties& lost) {
    return write(argument, lost.id, lost.names);
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, LostProperties& lost) {
    return read(argument, lost.id, lost.names);
}

static QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    return write(argument, event.id, event.kind, event.data, event.time);
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    return read(argument, event.id, event.kind, event.data, event.time);
}

namespace {

QVariantMap rowProperties(const TrayRow& row) {
    // A single underscore would mark the next letter as the row's key.
    return {{QStringLiteral("type"), row.divider ? QStringLiteral("separator") : QStringLiteral("standard")},
            {QStringLiteral("label"), QString(row.text).replace(u'_', QStringLiteral("__"))},
            {QStringLiteral("enabled"), row.enabled},
            {QStringLiteral("visible"), row.visible}};
}

} // namespace

TrayMenu::TrayMenu(const TrayContent& content, std::function<void(int row)> chosen)
    : m_content(content), m_chosen(std::move(chosen)) {
    qDBusRegisterMetaType<MenuEntry>();
    qDBusRegisterMetaType<MenuEntries>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<LostProperties>();
    qDBusRegisterMetaType<AllLostProperties>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<MenuEvents>();
}

void TrayMenu::follow(const TrayContent& before) {
    MenuEntries changed;
    for (std::size_t row = 0; row < m_content.rows.size(); ++row)
        if (m_content.rows[row] != before.rows[row])
            changed << MenuEntry{static_cast<int>(row) + 1, rowProperties(m_content.rows[row])};
    if (!changed.isEmpty())
        Q_EMIT ItemsPropertiesUpdated(changed, {});
}

QString TrayMenu::textDirection() const {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

bool TrayMenu::has(int id) const {
    return id >= 0 && static_cast<std::size_t>(id) <= m_content.rows.size();
}

/// No names mean all of them.
QVariantMap TrayMenu::properties(int id, const QStringList& names) const {
    auto all = id == 0 ? QVariantMap{{QStringLiteral("children-display"), QStringLiteral("submenu")}}
                       : rowProperties(m_content.rows[static_cast<std::size_t>(id) - 1]);
    if (!names.isEmpty())
        erase_if(all, [&](const QVariantMap::iterator& property) { return !names.contains(property.key()); });
    return all;
}

uint TrayMenu::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames, MenuLayout& layout) {
    if (!has(parentId)) {
        refuse(parentId);
        return revision;
    }
    layout = {parentId, properties(parentId, propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0)
        for (int id = 1; has(id); ++id)
            layout.children << QVariant::fromValue(MenuLayout{id, properties(id, propertyNames), {}});
    return revision;
}

MenuEntries TrayMenu::GetGroupProperties(const QList<int>& ids, const QStringList& propertyNames) {
    MenuEntries entries;
    if (ids.isEmpty())
        for (int id = 0; has(id); ++id)
            entries << MenuEntry{id, properties(id, propertyNames)};
    for (const int id : ids)
        if (has(id))
            entries << MenuEntry{id, properties(id, propertyNames)};
    return entries;
}

QDBusVariant TrayMenu::GetProperty(int id, const QString& name) {
    const auto value = has(id) ? properties(id, {name}).value(name) : QVariant();
    if (value.isValid())
        return QDBusVariant(value);
    refuse(id);
    return {};
}

void TrayMenu::Event(int id, const QString& eventId, const QDBusVariant&, uint) {
    if (!take(id, eventId))
        refuse(id);
}

QList<int> TrayMenu::EventGroup(const MenuEvents& events) {
    QList<int> unknown;
    for (const auto& event : events)
        if (!take(event.id, event.kind))
            unknown << event.id;
    return unknown;
}

/// The tray has every change already.
bool TrayMenu::AboutToShow(int id) {
    if (!has(id))
        refuse(id);
    return false;
}

QList<int> TrayMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids)
        if (!has(id))
            idErrors << id;
    return {};
}

/// False for a row that is not there. A row that cannot be used now is left alone.
bool TrayMenu::take(int id, const QString& event) {
    if (!has(id))
        return false;
    if (id == 0 || event != QLatin1String("clicked"))
        return true;
    const auto& row = m_content.rows[static_cast<std::size_t>(id) - 1];
    if (row.enabled && row.visible && !row.divider)
        m_chosen(id - 1);
    return true;
}

void TrayMenu::refuse(int id) {
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("The menu has no such entry or property: %1").arg(id));
}

} // namespace varnet
