#pragma once

#include "Varnet/platform/TrayItem.h"

#include <QDBusObjectPath>
#include <QList>
#include <QMetaType>

#include <functional>

namespace varnet {

/// A picture as the tray takes it: ARGB, four bytes a pixel in network order.
struct TrayPicture {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using TrayPictures = QList<TrayPicture>;

struct TrayToolTip {
    QString icon;
    TrayPictures pictures;
    QString title;
    QString text;
};

/// The object of the interface org.kde.StatusNotifierItem. Main thread.
class StatusNotifierItem : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category FINAL)
    Q_PROPERTY(QString Id READ id FINAL)
    Q_PROPERTY(QString Title READ title FINAL)
    Q_PROPERTY(QString Status READ status FINAL)
    Q_PROPERTY(int WindowId READ windowId FINAL)
    Q_PROPERTY(QString IconName READ iconName FINAL)
    Q_PROPERTY(varnet::TrayPictures IconPixmap READ pictures FINAL)
    Q_PROPERTY(QString OverlayIconName READ none FINAL)
    Q_PROPERTY(QString AttentionIconName READ none FINAL)
    Q_PROPERTY(QString IconThemePath READ none FINAL)
    Q_PROPERTY(varnet::TrayToolTip ToolTip READ toolTip FINAL)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu FINAL)
    Q_PROPERTY(QDBusObjectPath Menu READ menu FINAL)

public:
    StatusNotifierItem(const TrayContent& content, QString drawings, std::function<void(QString token)> activated);

    /// The content is another one than before: tells the tray.
    void follow(const TrayContent& before);

    /// The token of the click that comes next, or came last; empty afterwards.
    QString takeToken() { return std::exchange(m_token, {}); }

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const;
    QString title() const { return m_content.title; }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconName() const { return m_iconName; }
    const TrayPictures& pictures() const { return m_pictures; }
    QString none() const { return {}; }
    TrayToolTip toolTip() const { return {{}, {}, m_content.title, m_content.tooltip}; }
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const;

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString& orientation);
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();

private:
    void choosePictures();

    const TrayContent& m_content;
    const QString m_drawings;
    const std::function<void(QString)> m_activated;
    QString m_iconName;
    TrayPictures m_pictures;
    QString m_token;
};

} // namespace varnet

Q_DECLARE_METATYPE(varnet::TrayPicture)
Q_DECLARE_METATYPE(varnet::TrayToolTip)
