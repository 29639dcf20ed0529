#pragma once

#include <string>

namespace varnet {

/// What the program is called and which build of it this is. Any thread.
namespace AppInfo {

/// The name that people see: "Zelvik".
std::string name();

/// The name on the session bus and of the desktop entry: "org.varnet.Varnet".
std::string identifier();

/// The released version, such as "1.4.0".
std::string version();

/// The number of this build of the version, such as "12".
std::string buildNumber();

/// Version and build number in one, such as "1.4.0.12"; another build has another text.
std::string bundleVersion();

} // namespace AppInfo

} // namespace varnet
