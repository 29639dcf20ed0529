#include "Varnet/platform/AppInfo.h"

namespace varnet::AppInfo {

std::string name() {
    return "Zelvik";
}

std::string identifier() {
    return "org.varnet.Varnet";
}

std::string version() {
    return VARNET_VERSION;
}

std::string buildNumber() {
    return VARNET_BUILD_NUMBER;
}

std::string bundleVersion() {
    return VARNET_VERSION "." VARNET_BUILD_NUMBER;
}

} // namespace varnet::AppInfo
