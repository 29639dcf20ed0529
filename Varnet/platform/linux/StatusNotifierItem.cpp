#include "Varnet/platform/linux/StatusNotifierItem.h"

#include "Varnet/platform/AppInfo.h"
#include "Varnet/platform/linux/TrayMenu.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QImage>
#include <QPainter>
#include <QStandardPaths>
#include <QSvgRenderer>

namespace varnet {

static QDBusArgument& operator<<(QDBusArgument& argument, const TrayPicture& picture) {
    argument.beginStructure();
    argument << picture.width << picture.height << picture.bytes;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, TrayPicture& picture) {
    argument.beginStructure();
    argument >> picture.width >> picture.height >> picture.bytes;
    argument.endStructure();
    return argument;
}

static QDBusArgument& operator<<(QDBusArgument& argument, const TrayToolTip& tip) {
    argument.beginStructure();
    argument << tip.icon << tip.pictures << tip.title << tip.text;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, TrayToolTip& tip) {
    argument.beginStructure();
    argument >> tip.icon >> tip.pictures >> tip.title >> tip.text;
    argument.endStructure();
    return argument;
}

namespace {

/// What trays ask for, at one and at two dots a point.
constexpr int sizes[] = {16, 22, 24, 32, 44, 48};

TrayPicture draw(QSvgRenderer& drawing, int size) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    TrayPicture picture{size, size, {}};
    picture.bytes.reserve(size * size * 4);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            for (const QRgb pixel = image.pixel(x, y); const int shift : {24, 16, 8, 0})
                picture.bytes.append(static_cast<char>(pixel >> shift));
    return picture;
}

/// Only what every icon theme falls back to is looked at: nobody else has icons of these names.
bool installed(const QString& icon) {
    return !QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                   QStringLiteral("icons/hicolor/symbolic/apps/%1.svg").arg(icon))
                .isEmpty();
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const TrayContent& content, QString drawings,
                                       std::function<void(QString token)> activated)
    : m_content(content), m_drawings(std::move(drawings)), m_activated(std::move(activated)) {
    qDBusRegisterMetaType<TrayPicture>();
    qDBusRegisterMetaType<TrayPictures>();
    qDBusRegisterMetaType<TrayToolTip>();
    choosePictures();
}

void StatusNotifierItem::follow(const TrayContent& before) {
    if (m_content.icon != before.icon) {
        choosePictures();
        Q_EMIT NewIcon();
    }
    if (m_content.tooltip != before.tooltip)
        Q_EMIT NewToolTip();
}

/// By its name the desktop draws an icon in the ink of its panel. Some desktops prefer pictures where they get both.
void StatusNotifierItem::choosePictures() {
    m_pictures.clear();
    m_iconName = installed(m_content.icon) ? m_content.icon : QString();
    if (!m_iconName.isEmpty())
        return;
    QSvgRenderer drawing(QStringLiteral("%1/%2.svg").arg(m_drawings, m_content.icon));
    for (const int size : sizes)
        m_pictures << draw(drawing, size);
}

QString StatusNotifierItem::id() const {
    return QString::fromStdString(AppInfo::identifier());
}

QDBusObjectPath StatusNotifierItem::menu() const {
    return QDBusObjectPath(TrayMenu::path);
}

void StatusNotifierItem::Activate(int, int) {
    m_activated(takeToken());
}

void StatusNotifierItem::SecondaryActivate(int, int) {
    m_activated(takeToken());
}

void StatusNotifierItem::ContextMenu(int, int) {} // the tray draws the menu

void StatusNotifierItem::Scroll(int, const QString&) {}

void StatusNotifierItem::ProvideXdgActivationToken(const QString& token) {
    m_token = token;
}

} // namespace varnet
