#include "Varnet/platform/MotionPreference.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>
#include <array>

namespace varnet {

namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");
const auto interface = QStringLiteral("org.freedesktop.portal.Settings");

/// The settings in which desktops keep it, and what is said by the values that each of them has.
struct Setting {
    const char* space;
    const char* key;
    bool (*reduces)(const QVariant& value);
};
constexpr std::array settings{
    Setting{"org.gnome.desktop.interface", "enable-animations", [](const QVariant& value) { return !value.toBool(); }},
    Setting{"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
            [](const QVariant& value) { return value.toString() == QLatin1String("0"); }}};

/// Older portals wrap the value twice.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

MotionPreference::MotionPreference(QObject* parent) : QObject(parent) {
    auto bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(take(QString, QString, QDBusVariant)));
    for (const auto& setting : settings) {
        const auto space = QString::fromLatin1(setting.space), key = QString::fromLatin1(setting.key);
        auto message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
        message << space << key;
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, space, key, watcher] {
            const QDBusPendingReply<QDBusVariant> reply = *watcher;
            if (reply.isValid()) // else this desktop has no such setting
                take(space, key, reply.value());
            watcher->deleteLater();
        });
    }
}

bool MotionPreference::reduced() const {
    return std::ranges::any_of(m_reduced, [](const auto& setting) { return setting.second; });
}

void MotionPreference::take(const QString& space, const QString& key, const QDBusVariant& value) {
    const bool before = reduced();
    for (const auto& setting : settings)
        if (space == QLatin1String(setting.space) && key == QLatin1String(setting.key))
            m_reduced[space] = setting.reduces(unwrapped(value.variant()));
    if (reduced() != before)
        Q_EMIT changed();
}

} // namespace varnet
