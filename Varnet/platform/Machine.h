#pragma once

#include <string>

namespace varnet {

/// What decides which of the engines that come with the program can run here. A value, so that tests can name another
/// machine.
struct Machine {
    /// 64-bit ARM, or 64-bit x86 with AVX2.
    bool runsAcceleratedEngines = false;
    /// The folder of an engine built for this processor: "arm64" or "x86_64".
    std::string processorFolder;

    /// The machine that this program runs on.
    static Machine current();
};

} // namespace varnet
