#pragma once

#include "MeetingCore/base/Uuid.h"
#include "Varnet/async/Task.h"
#include "Varnet/async/TaskScope.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <sys/types.h>

#include <deque>
#include <filesystem>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace varnet {

class AppRouter;
class EngineSupervisor;
class MeetingStore;

/// The audio files that were handed to the program and are not imported yet. They are imported one after the other, in
/// their order, whenever the store is neither busy nor recording and the speech engine neither just comes up nor is
/// about to be started again. What waits is kept in memory only: a quit forgets it.
///
/// A file that is handed over alone and need not wait for other work is selected, and the page turns to it when its
/// import has ended, unless another meeting has been selected by then. All others leave the page and the selection
/// alone. What became of each that could not be imported then stands in the store's `error`, a line each, until it is
/// dismissed. Main thread; the three objects must outlive it.
class ImportQueue : public QObject {
    Q_OBJECT
public:
    ImportQueue(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent = nullptr);

    /// Takes the files behind the addresses. What is no file on this computer is refused in words; a file that is
    /// waiting or being imported already is not taken twice. Without storage none is taken.
    void add(const QList<QUrl>& addresses);

    /// Forgets what waits. An import that runs goes on.
    void clear();

    /// What files have to wait for now.
    enum class Obstacle { none, recording, work, engine };
    Obstacle obstacle() const;

    int waiting() const { return static_cast<int>(m_files.size()); }
    const std::filesystem::path& first() const { return m_files.front().file; } ///< the next file, while one waits

    /// The path that an address names on this computer, byte for byte; absent for any other address.
    static std::optional<std::filesystem::path> localFile(const QUrl& address);

    /// The address of what a command line names: an address as it stands, or else a path, which counts from the working
    /// directory.
    static QUrl address(const std::string& argument);

Q_SIGNALS:
    void waitingChanged();

private:
    using FileID = std::pair<dev_t, ino_t>; ///< the same for all names of a file
    struct Entry {
        std::filesystem::path file;
        FileID id;
    };

    bool mayImport() const;
    void goOn();
    static Task<> importAll(ImportQueue* self, std::stop_token gone);
    void ended(const std::optional<Uuid>& meeting, bool alone);
    void tell();

    MeetingStore& m_store;
    EngineSupervisor& m_engines;
    AppRouter& m_router;
    std::deque<Entry> m_files;
    std::optional<Entry> m_current;      ///< the file that is being imported
    std::set<FileID> m_held;             ///< those of m_files and of m_current
    int m_taken = 0;                     ///< files since nothing waited and none was being imported
    bool m_asked = false;                ///< somebody waits to see the file that was taken
    bool m_starting = false;             ///< an import clears the store's error when it starts
    std::vector<std::string> m_failures; ///< lines that nobody has dismissed
    TaskScope m_tasks{"Imports"};
};

} // namespace varnet
