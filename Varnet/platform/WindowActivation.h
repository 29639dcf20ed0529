#pragma once

#include <QString>

class QWindow;

namespace varnet {

/// Shows the window, and asks the desktop to put it in front of the others and to give it the keyboard. `token` is the
/// leave of whoever asked for it, as the desktop handed it over: an xdg-activation token, or on X11 a startup id, which
/// holds the time of the key or the click. Empty where none was given; the desktop may then only mark the window as
/// wanting attention. Main thread.
void bringForward(QWindow& window, const QString& token);

} // namespace varnet
