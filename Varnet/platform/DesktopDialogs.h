#pragma once

#include <vector>

namespace varnet {

/// The arguments to make the application object with, and a null at their end: those of the program, and the ones that
/// let the toolkit take its file dialogs from the desktop's portal, so that GNOME shows GNOME's dialog and KDE shows
/// KDE's. Colours and fonts stay those of the platform theme that there would be otherwise, and without a portal so do
/// the dialogs. A user who has chosen a platform theme keeps it. The strings are those of `argv` and constants.
std::vector<char*> argumentsWithDesktopDialogs(int argc, char** argv);

} // namespace varnet
