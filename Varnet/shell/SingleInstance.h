#pragma once

#include "Varnet/shell/StorageLock.h"

#include <QList>
#include <QUrl>

#include <filesystem>
#include <optional>
#include <string>

namespace varnet {

/// One program per user and one process per library, settled before anything is read or repaired.
namespace SingleInstance {

/// What a start that is not the only one comes to.
struct Refusal {
    int exitCode = 0;    ///< 0 when the running program shows its window and has taken the files
    std::string message; ///< a finished sentence for the terminal; empty with exit code 0
};

/// Absent when this process may go on, with the lock. Otherwise the holder of the lock is asked over the bus to show
/// itself and to import `files`; while it is still starting or already ending this waits some seconds, and longer for
/// the answer of a busy one.
std::optional<Refusal> settle(StorageLock& lock, const std::filesystem::path& storageRoot, const QList<QUrl>& files);

/// The refusal of a start beside a program that has another library open.
Refusal anotherLibraryOpen(std::optional<pid_t> process);

} // namespace SingleInstance

} // namespace varnet
