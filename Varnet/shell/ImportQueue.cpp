#include "Varnet/shell/ImportQueue.h"

#include "MeetingCore/base/Failures.h"
#include "MeetingCore/records/MeetingStatus.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "Varnet/shell/AppRouter.h"
#include "Varnet/store/MeetingStore.h"

#include <QSysInfo>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace varnet {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t shownFailures = 6;

std::string quoted(const fs::path& file) {
    return "“" + (file.has_filename() ? file.filename() : file.parent_path().filename()).string() + "”";
}

/// Why this is no file to import, by its status, which is filled in; absent when it may be one.
std::optional<std::string> refusal(const fs::path& file, struct stat& status) {
    if (::stat(file.c_str(), &status) != 0)
        return FileFailure::reading(file, errno).what();
    if (S_ISREG(status.st_mode))
        return {};
    return quoted(file) +
           (S_ISDIR(status.st_mode) ? " is a folder. Choose the audio files in it." : " is not an audio file.");
}

} // namespace

ImportQueue::ImportQueue(MeetingStore& store, EngineSupervisor& engines, AppRouter& router, QObject* parent)
    : QObject(parent), m_store(store), m_engines(engines), m_router(router) {
    // Later: the operation that has ended may still have words to say.
    connect(&store, &MeetingStore::busyChanged, this, &ImportQueue::goOn, Qt::QueuedConnection);
    connect(&store, &MeetingStore::recordingChanged, this, &ImportQueue::goOn, Qt::QueuedConnection);
    connect(&engines, &EngineSupervisor::speechChanged, this, &ImportQueue::goOn, Qt::QueuedConnection);
    connect(&engines, &EngineSupervisor::restartPendingChanged, this, &ImportQueue::goOn, Qt::QueuedConnection);
    connect(&store, &MeetingStore::errorChanged, this, [this] {
        if (!m_starting && !m_store.error())
            m_failures.clear();
    });
}

std::optional<fs::path> ImportQueue::localFile(const QUrl& address) {
    const auto host = address.host();
    if (!address.isLocalFile() || (!host.isEmpty() && host != QLatin1String("localhost") &&
                                   host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) != 0))
        return {};
    const auto encoded = address.path(QUrl::FullyEncoded).toLatin1();
    fs::path path = QByteArray::fromPercentEncoding(encoded).toStdString();
    if (!path.is_absolute() || path.native().find('\0') != std::string::npos)
        return {};
    return path;
}

QUrl ImportQueue::address(const std::string& argument) {
    if (argument.find("://") != std::string::npos || argument.starts_with("file:/"))
        return QUrl::fromEncoded(QByteArray::fromStdString(argument));
    const auto bytes = QByteArray::fromStdString(fs::absolute(argument).string());
    return QUrl::fromEncoded("file://" + bytes.toPercentEncoding("/"));
}

void ImportQueue::add(const QList<QUrl>& addresses) {
    if (!m_store.writable())
        return m_store.setError("Meeting storage is unavailable.");
    if (!m_current && m_files.empty()) {
        m_taken = 0;
        m_failures.clear();
    }
    const auto before = m_files.size();
    std::vector<std::string> refusals;
    for (const auto& address : addresses) {
        const auto file = localFile(address);
        struct stat status{};
        auto reason = file ? refusal(*file, status)
                           : "“" + address.toDisplayString().toStdString() + "” is not a file on this computer.";
        if (reason)
            refusals.push_back(std::move(*reason));
        else if (const FileID id{status.st_dev, status.st_ino}; m_held.insert(id).second)
            m_files.push_back({*file, id});
    }
    m_taken += static_cast<int>(m_files.size() - before);
    m_asked = m_taken == 1 && (obstacle() == Obstacle::none || obstacle() == Obstacle::engine);
    if (m_files.size() != before)
        Q_EMIT waitingChanged();
    goOn();
    if (refusals.empty())
        return;
    std::ranges::move(refusals, std::back_inserter(m_failures));
    tell();
}

void ImportQueue::clear() {
    if (m_files.empty())
        return;
    m_files.clear();
    m_held.clear();
    if (m_current)
        m_held.insert(m_current->id);
    Q_EMIT waitingChanged();
}

bool ImportQueue::mayImport() const {
    return !m_files.empty() && obstacle() == Obstacle::none;
}

ImportQueue::Obstacle ImportQueue::obstacle() const {
    if (m_store.recording())
        return Obstacle::recording;
    if (m_store.busy())
        return Obstacle::work;
    // An engine that comes up answers in a moment: an import would only fail for having been too early.
    const auto& speech = m_engines.speech();
    const bool comesUp =
        speech.isStarting() || speech == EngineState::unknown() || (m_engines.restartPending() && !speech.isReady());
    return comesUp ? Obstacle::engine : Obstacle::none;
}

void ImportQueue::goOn() {
    if (!m_current && mayImport())
        m_tasks.spawn(importAll(this, m_tasks.stopToken()));
}

Task<> ImportQueue::importAll(ImportQueue* self, std::stop_token gone) {
    auto& store = self->m_store;
    while (self->mayImport()) {
        self->m_current = std::move(self->m_files.front());
        self->m_files.pop_front();
        Q_EMIT self->waitingChanged();

        const bool alone = std::exchange(self->m_asked, false);
        // Nobody has asked for the import at this moment, so that it must not take away what other work had to say.
        if (!alone && self->m_failures.empty() && store.error())
            self->m_failures.push_back(*store.error());
        self->m_starting = true;
        auto import = store.importAudio(self->m_current->file, alone || !store.selectedID());
        self->m_starting = false;
        const auto meeting = store.audioWork() ? std::optional(store.audioWork()->meetingID) : std::nullopt;
        // One that could not even start has left its own reason there.
        if (meeting && !self->m_failures.empty())
            self->tell();
        co_await import;
        if (gone.stop_requested())
            co_return;
        self->ended(meeting, alone);
    }
}

void ImportQueue::ended(const std::optional<Uuid>& id, bool alone) {
    const Meeting* meeting = id ? m_store.meeting(*id) : nullptr;
    const bool failed = !id || (meeting && meeting->status == MeetingStatus::importNeedsAttention);
    if (failed && m_store.error()) {
        m_failures.push_back(quoted(m_current->file) + ": " + *m_store.error());
        if (m_taken > 1 || m_failures.size() > 1)
            tell();
    }
    if (alone && m_taken == 1 && meeting && m_store.selectedID() == id)
        m_router.setPage(AppRouter::Page::meeting);
    m_held.erase(m_current->id);
    m_current.reset();
}

void ImportQueue::tell() {
    std::string text;
    for (std::size_t line = 0; line < std::min(m_failures.size(), shownFailures); ++line)
        text += (line ? "\n" : "") + m_failures[line];
    if (m_failures.size() > shownFailures)
        text += "\nand " + std::to_string(m_failures.size() - shownFailures) + " more";
    m_store.setError(text);
}

} // namespace varnet
