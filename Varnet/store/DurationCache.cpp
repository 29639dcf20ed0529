#include "Varnet/store/DurationCache.h"

#include "MeetingCore/audio/WavHeader.h"
#include "Varnet/store/MeetingStore.h"

#include <filesystem>

namespace varnet {

namespace fs = std::filesystem;

namespace {

/// Another one whenever the file has changed.
std::string keyOf(const fs::path& file) {
    std::error_code sizeError, timeError;
    const auto size = fs::file_size(file, sizeError);
    const auto changed = fs::last_write_time(file, timeError);
    return file.string() + '|' + (sizeError ? "0" : std::to_string(size)) + '|' +
           (timeError ? "" : std::to_string(changed.time_since_epoch().count()));
}

} // namespace

std::optional<double> DurationCache::duration(const Meeting& meeting, const MeetingStore& store) {
    if (store.recording() && store.recordingID() == meeting.id)
        return {};
    const auto file = store.audioURL(meeting);
    if (!file) {
        const bool told = !meeting.turns.empty() && meeting.turns.back().end > 0;
        return told ? std::optional(meeting.turns.back().end) : std::nullopt;
    }
    auto key = keyOf(*file);
    if (const auto known = m_values.find(key); known != m_values.end())
        return known->second;
    const auto header = WavHeader::read(*file);
    if (!header || header->sampleRate == 0)
        return {};
    const double seconds = static_cast<double>(header->frameCount()) / header->sampleRate;
    m_values.emplace(std::move(key), seconds);
    return seconds;
}

DurationCache& DurationCache::shared() {
    static DurationCache cache;
    return cache;
}

} // namespace varnet
