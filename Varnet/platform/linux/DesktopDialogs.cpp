#include "Varnet/platform/DesktopDialogs.h"

#include <QtGlobal>

#include <algorithm>

namespace varnet {

std::vector<char*> argumentsWithDesktopDialogs(int argc, char** argv) {
    static char option[] = "-platformtheme", theme[] = "xdgdesktopportal";
    std::vector<char*> arguments(argv, argv + argc);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME"))
        arguments.insert(arguments.begin() + std::min(argc, 1), {option, theme}); // one that the user gave comes later
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace varnet
