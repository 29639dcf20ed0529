#include "Varnet/store/WaveformCache.h"

#include "MeetingCore/base/AtomicFile.h"
#include "MeetingCore/base/Failures.h"
#include "MeetingCore/base/Sha256.h"
#include "Varnet/platform/Paths.h"

#include <QDebug>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

namespace varnet::WaveformCache {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view mark = "Varnet waveform 1\n"; ///< another one for another content
constexpr std::size_t peakBytes = Waveform::columnCount * sizeof(float);
constexpr std::size_t hashLength = 16;

std::string shortHash(const std::string& text) {
    return sha256(text).substr(0, hashLength);
}

/// Names of the cache's files: the recording's path, and the state that the waveform was made of.
struct Name {
    std::string path, state;

    explicit Name(const fs::path& wav)
        : path(shortHash(fs::absolute(wav))),
          state(shortHash(std::to_string(fs::file_size(wav)) + ' ' +
                          std::to_string(fs::last_write_time(wav).time_since_epoch().count()))) {}
    std::string text() const { return path + '-' + state; }
};

std::optional<Waveform> decoded(std::string_view bytes) {
    if (bytes.size() != mark.size() + peakBytes || !bytes.starts_with(mark))
        return {};
    Waveform waveform;
    waveform.peaks.resize(Waveform::columnCount);
    std::memcpy(waveform.peaks.data(), bytes.data() + mark.size(), peakBytes);
    const bool sound = std::ranges::all_of(waveform.peaks, [](float peak) { return peak >= 0 && peak <= 1; });
    return sound ? std::optional(std::move(waveform)) : std::nullopt;
}

std::optional<Waveform> kept(const fs::path& file) {
    std::error_code ignored;
    if (!fs::exists(file, ignored))
        return {};
    try {
        return decoded(readFile(file, mark.size() + peakBytes));
    } catch (const FileFailure& failure) {
        qWarning("A kept waveform cannot be used: %s", failure.what());
        return {};
    }
}

/// Removes what was made of earlier states of the recording, and the oldest files of a cache that is full.
void makeRoom(const fs::path& folder, const Name& name) {
    std::vector<std::pair<fs::file_time_type, fs::path>> others;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string other = entry.path().filename();
        if (other.starts_with(name.path + '-'))
            fs::remove(entry.path(), ignored);
        else if (const auto time = entry.last_write_time(ignored); !ignored)
            others.emplace_back(time, entry.path());
    }
    if (others.size() < maximumCount)
        return;
    std::ranges::sort(others);
    for (std::size_t i = 0; i <= others.size() - maximumCount; ++i)
        fs::remove(others[i].second, ignored);
}

void keep(const Waveform& waveform, const fs::path& folder, const Name& name) {
    std::string bytes(mark);
    bytes.append(reinterpret_cast<const char*>(waveform.peaks.data()), peakBytes);
    try {
        makePrivateDirectories(folder);
        makeRoom(folder, name);
        writeFileAtomically(folder / name.text(), bytes);
    } catch (const std::exception& failure) {
        qWarning("A waveform cannot be kept: %s", failure.what());
    }
}

} // namespace

fs::path folder() {
    return Paths::caches() / "waveforms";
}

std::optional<Waveform> waveform(const fs::path& wav, const fs::path& folder, const std::stop_token& stop) try {
    const Name name(wav); // before it is read: what changes meanwhile gets another name
    if (auto known = kept(folder / name.text()))
        return known;
    auto made = Waveform::read(wav, stop);
    if (made)
        keep(*made, folder, name);
    return made;
} catch (const fs::filesystem_error&) {
    return {}; // the recording is gone
}

} // namespace varnet::WaveformCache
