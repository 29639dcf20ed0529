#include "Varnet/platform/DesktopPreferences.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

#include <algorithm>
#include <array>

namespace varnet {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");

const auto appearance = QStringLiteral("org.freedesktop.appearance");
const auto gnome = QStringLiteral("org.gnome.desktop.interface");
const auto gnomeAccess = QStringLiteral("org.gnome.desktop.a11y.interface");
const auto kde = QStringLiteral("org.kde.kdeglobals.KDE");

/// Some portals wrap a value twice.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// The desktops whose programs read their font from GNOME's settings. On the others these are there too, untouched.
bool keepsFontInGnomeSettings(const QString& desktop) {
    constexpr std::array names{"GNOME", "Unity", "Budgie", "Pantheon", "Phosh", "sway"};
    const auto parts = desktop.split(u':', Qt::SkipEmptyParts);
    return std::ranges::any_of(names, [&](const char* name) { return parts.contains(QLatin1String(name)); });
}

/// "Cantarell Bold 11": a family, perhaps with a style, and points. Absent for anything else.
std::optional<QFont> namedFont(const QString& name) {
    const auto space = name.lastIndexOf(u' ');
    bool isNumber = false;
    const auto points = QStringView(name).mid(space + 1).toDouble(&isNumber);
    if (space <= 0 || !isNumber || points < 4 || points > 72)
        return {};
    QFont font(name.left(space));
    font.setPointSizeF(points);
    return font;
}

} // namespace

DesktopPreferences::Values DesktopPreferences::understood(const Settings& settings, const QString& desktop,
                                                          const QString& platform) {
    const auto value = [&](const QString& space, const char* key) {
        return unwrapped(settings.value(space).value(QLatin1String(key)));
    };
    Values values;
    const auto scheme = value(appearance, "color-scheme").toUInt();
    values.colorScheme = scheme == 1 ? ColorScheme::dark : scheme == 2 ? ColorScheme::light : ColorScheme::none;
    values.highContrast = value(appearance, "contrast").toUInt() == 1 || value(gnomeAccess, "high-contrast").toBool();
    const auto animations = value(gnome, "enable-animations");
    values.reducedMotion = value(appearance, "reduced-motion").toUInt() == 1 ||
                           (animations.isValid() && !animations.toBool()) ||
                           value(kde, "AnimationDurationFactor").toString() == QLatin1String("0");
    // On X11 the same factor is part of the resolution that the desktop announces, and the toolkit follows that.
    const auto scale = value(gnome, "text-scaling-factor").toDouble();
    if (scale > 0 && platform != QLatin1String("xcb"))
        values.textScale = std::clamp(scale, 0.5, 3.0);
    if (keepsFontInGnomeSettings(desktop))
        values.font = namedFont(value(gnome, "font-name").toString());
    return values;
}

DesktopPreferences::DesktopPreferences(QObject* parent) : QObject(parent) {
    qDBusRegisterMetaType<Settings>();
    qRegisterMetaType<QDBusVariant>(); // the slot is found by the names of its types
    auto bus = QDBusConnection::sessionBus();
    // With a name for the sender this would wait for the bus to say who that is.
    bus.connect({}, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(take(QString, QString, QDBusVariant)));
    auto message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    message << QStringList{appearance, gnome, gnomeAccess, kde};
    m_answer = bus.asyncCall(message);
    auto* watcher = new QDBusPendingCallWatcher(*m_answer, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        takeAnswer();
        watcher->deleteLater();
    });
}

void DesktopPreferences::takeAnswer() {
    if (!m_answer || !m_answer->isFinished())
        return;
    const QDBusPendingReply<Settings> reply = *m_answer;
    m_answer.reset();
    if (!reply.isValid()) // else this desktop has no such settings
        return;
    m_settings = reply.value();
    understand();
}

void DesktopPreferences::take(const QString& space, const QString& key, const QDBusVariant& value) {
    m_settings[space][key] = value.variant();
    understand();
}

void DesktopPreferences::understand() {
    const auto values =
        understood(m_settings, qEnvironmentVariable("XDG_CURRENT_DESKTOP"), QGuiApplication::platformName());
    if (values == m_values)
        return;
    m_values = values;
    Q_EMIT changed();
}

} // namespace varnet
