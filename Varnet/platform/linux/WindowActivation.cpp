#include "Varnet/platform/WindowActivation.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <QWindow>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace varnet {

namespace {

/// Milliseconds of the X server's clock; 0 where the id holds none.
quint32 startupTime(const QString& startupId) {
    static const QRegularExpression pattern(QStringLiteral("_TIME(\\d+)$"));
    return pattern.match(startupId).captured(1).toUInt();
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto request = xcb_intern_atom(connection, false, static_cast<uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, request, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// A window manager gives the keyboard to the window that was asked for last. The toolkit knows the time of its own
/// last event only, which is older than the click that wants the window now.
void activateSince(QWindow& window, quint32 time, xcb_connection_t* connection) {
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, atom(connection, "_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL,
                        32, 1, &time);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = id;
    message.type = atom(connection, "_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 1; // an application asks
    message.data.data32[1] = time;
    xcb_send_event(connection, false, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(connection);
}

} // namespace

void bringForward(QWindow& window, const QString& token) {
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized); // show() would end a maximized one
    window.setVisible(true);
    if (!window.isActive())
        window.raise();
    // On Wayland the toolkit takes it from here. No process that is started later may find it.
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
        window.requestActivate();
        qunsetenv("XDG_ACTIVATION_TOKEN");
        return;
    }
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (const auto time = startupTime(token); x11 && time != 0)
        activateSince(window, time, x11->connection());
    else
        window.requestActivate();
}

} // namespace varnet
