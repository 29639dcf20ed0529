#pragma once

#include "Varnet/platform/Machine.h"
#include "Varnet/platform/Paths.h"
#include "Varnet/platform/Settings.h"

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace varnet {

inline constexpr int speechEnginePort = 17863;
inline constexpr int notesEnginePort = 17864;

/// One launch of an engine, complete.
struct EngineSpec {
    std::string name; ///< what people see, the first words of failure messages
    std::filesystem::path executable;
    std::vector<std::string> arguments;
    std::filesystem::path workingDirectory;
    int port = 0; ///< on the loopback interface
    std::string healthPath = "/health";
    std::chrono::seconds startupLimit{120};         ///< how long it may take to answer its health path
    std::map<std::string, std::string> environment; ///< laid over the application's own

    std::string healthURL() const { return "http://127.0.0.1:" + std::to_string(port) + healthPath; }

    bool operator==(const EngineSpec&) const = default;
};

/// Where the two engines live and how each is started. A description: it starts nothing, and what is not there is
/// absent. Asked afresh for each launch, so that a changed setting counts at once. Main thread.
struct EngineLayout {
    std::filesystem::path root; ///< absolute; what every relative path is resolved against
    bool bundled = false;       ///< the engines came with the program; else a development folder

    /// The folder that the environment variable VARNET_RUNTIME names, or, only where that is not set, the one stored as
    /// "RuntimeRoot"; it need not exist. Where neither names one, the folder of resources, if it holds "engine".
    static std::optional<EngineLayout>
    resolve(const Settings& settings, const std::optional<std::filesystem::path>& resources = Paths::resources());

    /// The program of a bundled speech engine for this processor.
    std::optional<std::filesystem::path> bundledBinary(const Machine& machine) const;

    /// The program of a bundled notes engine, which there is for accelerated machines only.
    std::optional<std::filesystem::path> bundledNotesBinary(const Machine& machine) const;

    /// Tells a bundled speech engine, also while it downloads, where its models are.
    std::map<std::string, std::string> modelEnvironment() const;

    std::optional<EngineSpec> speech(const Settings& settings, const Machine& machine) const;

    /// `keyFile` holds the secret that the engine asks of its clients. Absent also while a bundled engine has no model.
    std::optional<EngineSpec> notes(const std::filesystem::path& keyFile, const Machine& machine) const;

    /// The build of the application, which `processorOnly` is bound to.
    static std::string appVersion();

    /// Whether the accelerated speech engine crashed under this very build, so that it is started on the processor.
    static bool processorOnly(const Settings& settings);

    bool operator==(const EngineLayout&) const = default;
};

} // namespace varnet
