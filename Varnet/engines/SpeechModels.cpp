#include "Varnet/engines/SpeechModels.h"

#include "Varnet/platform/Paths.h"

#include <algorithm>
#include <array>

namespace varnet::SpeechModels {

namespace fs = std::filesystem;

namespace {

/// Below the model folder: speech recognition, then telling speakers apart.
constexpr std::array folders{"nvidia/nemotron-speech-streaming-en-0.6b", "nvidia/Nemotron-3-Diarization"};

template <class Test>
bool anyEntry(const fs::path& folder, Test test) {
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
         entry.increment(failure)) {
        if (test(*entry))
            return true;
    }
    return false;
}

bool holdsMark(const fs::directory_entry& item) {
    std::error_code failure;
    return item.is_directory(failure) && anyEntry(item.path(), [](const fs::directory_entry& inner) {
               return inner.path().filename().string().ends_with(".verified");
           });
}

} // namespace

fs::path folder() {
    return Paths::applicationSupport() / "Varnet/models";
}

bool installed(const fs::path& modelFolder) {
    return std::ranges::all_of(folders, [&](const char* model) { return anyEntry(modelFolder / model, holdsMark); });
}

std::int64_t bytesOnDisk(const fs::path& modelFolder) {
    std::int64_t bytes = 0;
    std::error_code failure;
    const auto options = fs::directory_options::skip_permission_denied;
    for (fs::recursive_directory_iterator entry(modelFolder, options, failure);
         !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        std::error_code unreadable;
        if (fs::is_regular_file(entry->symlink_status(unreadable))) {
            const auto size = entry->file_size(unreadable);
            bytes += unreadable ? 0 : static_cast<std::int64_t>(size);
        }
    }
    return bytes;
}

} // namespace varnet::SpeechModels
