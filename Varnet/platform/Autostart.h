#pragma once

namespace varnet {

/// Whether the desktop starts the program when the user logs in: an entry of the program's in the user's autostart
/// folder (XDG Autostart). Main thread.
namespace Autostart {

/// An entry is there and is not switched off.
bool enabled();

/// Writes the entry, or takes it away. Throws FileFailure; nothing has changed then.
void setEnabled(bool enabled);

} // namespace Autostart

} // namespace varnet
