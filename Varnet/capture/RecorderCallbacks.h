#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace varnet {

/// What a recorder tells while it runs. All are called on the recorder's threads and must neither throw nor wait;
/// receivers hop to their own thread. Each may be empty. None comes after `stop` has returned.
struct RecorderCallbacks {
    /// 16-bit PCM that has reached its file, in order and without holes: what the live transcript hears.
    std::function<void(std::vector<std::byte>)> onPCM;
    /// The first failure; nothing more is written after it, and `stop` is still required. At most once.
    std::function<void(std::exception_ptr)> onError;
    /// RMS levels of the latest block; `call` is absent when no call is captured.
    std::function<void(float microphone, std::optional<float> call)> onLevels;
    /// A sentence for the user about a recording that goes on.
    std::function<void(std::string)> onNotice;
};

} // namespace varnet
