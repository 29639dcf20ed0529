#include "Varnet/platform/TrayItem.h"

#include "MeetingCore/base/Assert.h"
#include "Varnet/platform/linux/StatusNotifierItem.h"
#include "Varnet/platform/linux/TrayMenu.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDebug>

namespace varnet {

namespace {

const auto watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto watcherPath = QStringLiteral("/StatusNotifierWatcher");
const auto itemPath = QStringLiteral("/StatusNotifierItem");

QDBusMessage callWatcher(const QString& interface, const QString& method, const QVariantList& arguments) {
    auto message = QDBusMessage::createMethodCall(watcherName, watcherPath, interface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    return message;
}

} // namespace

struct TrayItem::Exports {
    TrayContent content;
    StatusNotifierItem item;
    TrayMenu menu;

    Exports(TrayItem& owner, TrayContent first, QString drawings)
        : content(std::move(first)),
          item(content, std::move(drawings), [&owner](const QString& token) { Q_EMIT owner.activated(token); }),
          menu(content, [&owner, this](int row) { Q_EMIT owner.chosen(row, item.takeToken()); }) {}
};

TrayItem::TrayItem(TrayContent content, QString drawings, QDBusConnection connection, QObject* parent)
    : QObject(parent),
      m_connection(std::move(connection)),
      m_exports(std::make_unique<Exports>(*this, std::move(content), std::move(drawings))) {
    if (!m_connection.isConnected())
        return;
    const auto contents = QDBusConnection::ExportScriptableContents;
    if (!m_connection.registerObject(itemPath, &m_exports->item, contents) ||
        !m_connection.registerObject(QString::fromLatin1(TrayMenu::path), &m_exports->menu, contents)) {
        qWarning("The tray item could not be put on the session bus");
        return;
    }
    auto* watcher = new QDBusServiceWatcher(watcherName, m_connection, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                setPresent(false);
                if (!owner.isEmpty())
                    registerItem();
            });
    // From anybody: naming the sender would wait until the bus has told who that is.
    for (const auto* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        m_connection.connect(QString(), watcherPath, watcherName, QString::fromLatin1(signal), this,
                             SLOT(hostsChanged()));
    registerItem();
}

TrayItem::~TrayItem() {
    m_connection.unregisterObject(itemPath);
    m_connection.unregisterObject(QString::fromLatin1(TrayMenu::path));
}

void TrayItem::show(const TrayContent& content) {
    VARNET_ASSERT(content.rows.size() == m_exports->content.rows.size());
    const auto before = std::exchange(m_exports->content, content);
    m_exports->item.follow(before);
    m_exports->menu.follow(before);
}

void TrayItem::registerItem() {
    const auto call =
        callWatcher(watcherName, QStringLiteral("RegisterStatusNotifierItem"), {m_connection.baseService()});
    auto* answer = new QDBusPendingCallWatcher(m_connection.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (!answer->isError())
            askForHost();
        else if (answer->error().name() != QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner")) // no tray yet
            qWarning("The tray did not take the item: %s", qUtf8Printable(answer->error().message()));
    });
}

/// There may be a place for items that no panel shows.
void TrayItem::askForHost() {
    const auto call = callWatcher(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                  {watcherName, QStringLiteral("IsStatusNotifierHostRegistered")});
    auto* answer = new QDBusPendingCallWatcher(m_connection.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isValid())
            qWarning("The tray did not tell whether it is seen: %s", qUtf8Printable(reply.error().message()));
        setPresent(reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayItem::hostsChanged() {
    askForHost();
}

void TrayItem::setPresent(bool present) {
    if (present == m_present)
        return;
    m_present = present;
    Q_EMIT presentChanged();
}

} // namespace varnet
