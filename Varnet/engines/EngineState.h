#pragma once

#include <string>
#include <utility>

namespace varnet {

/// What is known of one of the two engines.
struct EngineState {
    enum class Kind {
        unknown,  ///< nothing is known yet
        starting, ///< a launch is under way
        ready,    ///< it answers
        stopped,  ///< it does not run, and that is in order
        missing,  ///< its files are not there; `text` tells the user
        failed,   ///< it could not be started or stopped unexpectedly; `text` tells the user
    };

    Kind kind = Kind::unknown;
    bool adopted = false; ///< with `ready`: what answers is not a process of this application
    std::string text;     ///< with `missing` and `failed`: a sentence

    static EngineState unknown() { return {}; }
    static EngineState starting() { return {Kind::starting, false, {}}; }
    static EngineState ready(bool adopted) { return {Kind::ready, adopted, {}}; }
    static EngineState stopped() { return {Kind::stopped, false, {}}; }
    static EngineState missing(std::string text) { return {Kind::missing, false, std::move(text)}; }
    static EngineState failed(std::string text) { return {Kind::failed, false, std::move(text)}; }

    bool isReady() const { return kind == Kind::ready; }
    bool isStarting() const { return kind == Kind::starting; }

    bool operator==(const EngineState&) const = default;
};

} // namespace varnet
