#include "MeetingCore/records/MeetingRepository.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/JsonDecoding.h"
#include "MeetingCore/base/Text.h"
#include "MeetingCore/records/MeetingEncoder.h"
#include "MeetingCore/records/MeetingJson.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <system_error>
#include <thread>

namespace fs = std::filesystem;

namespace varnet {

namespace {

constexpr const char* recordName = "meeting.json";

/// Results of one parallel pass, one slot per folder.
/// What became of an entry of the root.
struct DecodeSlot {
    std::optional<Meeting> meeting; ///< absent when its record could not be read
    bool hasRecord = true;
};

class DecodeSlots {
public:
    explicit DecodeSlots(std::size_t count) : m_slots(count) {}

    void fill(std::size_t index, DecodeSlot slot) {
        const std::lock_guard lock(m_lock);
        m_slots[index] = std::move(slot);
    }

    /// Once all workers have ended.
    std::vector<DecodeSlot>& slots() { return m_slots; }

private:
    std::mutex m_lock;
    std::vector<DecodeSlot> m_slots;
};

Meeting readRecord(const fs::path& folder, JsonParser& parser) {
    readFile(folder / recordName, parser.buffer(), JsonLimits::maximumBytes);
    return decodeMeeting(parser);
}

/// The entries of the root, in the order of the file system. Which of them hold a record shows when it is read.
std::vector<fs::path> entriesOf(const fs::path& root) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator entry(root, error), end; !error && entry != end; entry.increment(error))
        entries.push_back(entry->path());
    if (error)
        throw FileFailure::reading(root, error.value());
    return entries;
}

DecodeSlot decodeEntry(const fs::path& folder, JsonParser& parser) {
    try {
        return {readRecord(folder, parser)};
    } catch (const std::exception&) {
        std::error_code ignored; // a stray file has no record below it
        return {std::nullopt, fs::exists(folder / recordName, ignored)};
    }
}

/// Takes folders from the shared counter until none is left.
void decodeFolders(const std::vector<fs::path>& folders, std::atomic<std::size_t>& next, DecodeSlots& slots) {
    JsonParser parser;
    for (std::size_t index = next++; index < folders.size(); index = next++)
        slots.fill(index, decodeEntry(folders[index], parser));
}

void decodeInParallel(const std::vector<fs::path>& folders, DecodeSlots& slots) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> helpers;
    const std::size_t workers = std::min<std::size_t>(std::thread::hardware_concurrency(), folders.size());
    try {
        while (helpers.size() + 1 < workers)
            helpers.emplace_back([&] { decodeFolders(folders, next, slots); });
    } catch (const std::system_error&) {
        // Without more threads the ones that run do the work.
    }
    decodeFolders(folders, next, slots);
}

} // namespace

MeetingRepository::MeetingRepository(fs::path root) : m_root(std::move(root)) {
    makePrivateDirectories(m_root);
}

fs::path MeetingRepository::directory(const Uuid& id) const {
    return m_root / id.text();
}

void MeetingRepository::save(const Meeting& meeting) const {
    const fs::path folder = directory(meeting.id);
    makePrivateDirectories(folder);
    writeFileAtomically(folder / recordName, encodeMeeting(meeting));
}

void MeetingRepository::save(const Meeting& meeting, MeetingEncoder& encoder) const {
    const fs::path folder = directory(meeting.id);
    makePrivateDirectories(folder);
    writeFileAtomically(folder / recordName, encoder.encode(meeting));
}

Meeting MeetingRepository::load(const Uuid& id) const {
    JsonParser parser;
    return readRecord(directory(id), parser);
}

LoadedMeetings MeetingRepository::loadRecovering() const {
    const std::vector<fs::path> folders = entriesOf(m_root);
    DecodeSlots decoded(folders.size());
    decodeInParallel(folders, decoded);

    LoadedMeetings loaded;
    std::vector<std::size_t> readable;
    auto& slots = decoded.slots();
    for (std::size_t index = 0; index < folders.size(); ++index) {
        if (slots[index].meeting)
            readable.push_back(index);
        else if (slots[index].hasRecord)
            loaded.unreadable.push_back(validUtf8(folders[index].filename().native()));
    }
    std::ranges::sort(readable, [&](std::size_t one, std::size_t other) {
        const Date date = slots[one].meeting->createdAt, otherDate = slots[other].meeting->createdAt;
        return date == otherDate ? one < other : date > otherDate;
    });
    loaded.meetings.reserve(readable.size());
    for (const std::size_t index : readable)
        loaded.meetings.push_back(std::move(*slots[index].meeting));
    return loaded;
}

void MeetingRepository::archiveBeforeTranscription(const Meeting& meeting) const {
    const fs::path history = directory(meeting.id) / "history";
    makePrivateDirectories(history);
    writeFileAtomically(history / (Uuid::random().text() + ".json"), encodeMeeting(meeting));
}

} // namespace varnet
