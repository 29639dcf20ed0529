#include "Varnet/platform/Paths.h"

#include <QDir>

#include <cstdlib>
#include <string>

namespace varnet::Paths {

namespace {

std::filesystem::path folder(const char* variable, const char* belowHome) {
    const char* value = std::getenv(variable);
    if (value && *value == '/')
        return value;
    return std::filesystem::path(QDir::homePath().toStdString()) / belowHome;
}

} // namespace

std::filesystem::path applicationSupport() {
    return folder("XDG_DATA_HOME", ".local/share");
}

std::filesystem::path notesServiceKey() {
    return applicationSupport() / "Varnet/notes-service.key";
}

std::filesystem::path configuration() {
    return folder("XDG_CONFIG_HOME", ".config");
}

std::filesystem::path logs() {
    return folder("XDG_STATE_HOME", ".local/state") / "Varnet/logs";
}

std::filesystem::path caches() {
    return folder("XDG_CACHE_HOME", ".cache") / "Varnet";
}

std::optional<std::filesystem::path> resources() {
    std::error_code failure;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", failure);
    const auto binaries = executable.parent_path();
    if (failure || binaries.filename() != "bin")
        return std::nullopt;
    auto resources = binaries.parent_path() / "lib/varnet";
    if (!std::filesystem::is_directory(resources, failure))
        return std::nullopt;
    return resources;
}

} // namespace varnet::Paths
