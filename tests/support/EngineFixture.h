#pragma once

#include "MeetingCore/base/AtomicFile.h"
#include "Varnet/engines/EngineSupervisor.h"
#include "tests/support/Await.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <signal.h>

#include <fstream>
#include <set>

namespace varnet::test {

/// What the engines under test live in: who answers, and a time that passes as fast as the test likes.
struct EngineWorld {
    std::filesystem::path root;
    std::set<std::string> answering;              ///< health addresses that answer besides the scripts
    std::vector<std::chrono::nanoseconds> delays; ///< every sleep but the pauses between health requests
    bool delaysPass = false;                      ///< such a sleep is over at once; else it never is
    std::chrono::nanoseconds time{0};

    static constexpr const char* speechURL = "http://127.0.0.1:17863/health";
    static constexpr const char* notesURL = "http://127.0.0.1:17864/health";

    /// A script answers by making the file "speech.up" or "notes.up" in the root.
    static Task<bool> healthy(std::shared_ptr<EngineWorld> world, std::string url) {
        co_await sleepFor(std::chrono::milliseconds(1));
        const char* mark = url == speechURL ? "speech.up" : "notes.up";
        co_return world->answering.contains(url) || std::filesystem::exists(world->root / mark);
    }

    static Task<bool> sleep(std::shared_ptr<EngineWorld> world, std::chrono::nanoseconds duration,
                            std::stop_token stop) {
        const bool pause = duration == std::chrono::milliseconds(500);
        if (!pause)
            world->delays.push_back(duration);
        const bool passes = pause || world->delaysPass;
        const bool slept = co_await sleepFor(passes ? std::chrono::milliseconds(1) : std::chrono::hours(1), stop);
        if (slept)
            world->time += duration;
        co_return slept;
    }
};

/// Engines that are shell scripts, in private folders, with their real processes.
struct Engines : ::testing::Test {
    TemporaryFolder folder;
    std::filesystem::path root = folder / "root";
    ScopedVariable data{"XDG_DATA_HOME", (folder / "data").string()};
    ScopedVariable state{"XDG_STATE_HOME", (folder / "state").string()};
    ScopedVariable runtime{"VARNET_RUNTIME", std::nullopt};
    std::shared_ptr<EngineWorld> world = std::make_shared<EngineWorld>();
    std::filesystem::path settingsFile = folder / "settings.conf";
    std::filesystem::path keyFile = folder / "keys/notes-service.key";

    static constexpr const char* developmentSpeech = ".runtime/source/build/metal-asr/bin/nemo-speech";
    static constexpr const char* bundledSpeech = "engine/x86_64/bin/nemo-speech";
    static constexpr const char* developmentNotes = ".runtime/notes/runtime/llama-b11146/llama-server";

    /// Comes up and stays until the file "crash" appears.
    static constexpr const char* serve =
        "echo hello; touch speech.up; until [ -e crash ]; do sleep 0.01; done; rm speech.up crash; kill -SEGV $$";

    std::unique_ptr<EngineSupervisor> make(bool bundled = false, bool enabled = true) {
        world->root = root;
        EngineParts parts;
        parts.healthy = [world = world](std::string url) { return EngineWorld::healthy(world, std::move(url)); };
        parts.sleep = [world = world](std::chrono::nanoseconds duration, std::stop_token stop) {
            return EngineWorld::sleep(world, duration, std::move(stop));
        };
        parts.now = [world = world] { return world->time.count(); };
        parts.machine = {true, "x86_64"};
        parts.settingsFile = settingsFile;
        return std::make_unique<EngineSupervisor>(enabled, EngineLayout{root, bundled}, keyFile, parts);
    }

    void write(const std::filesystem::path& path, const std::string& text) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }

    /// Installs a script that notes its process and its arguments in the root, one line a start; what begins with
    /// "#!" is installed as it is.
    void install(const char* name, const std::string& script) {
        const auto program = root / name;
        write(program, script.starts_with("#!") ? script
                                                : "#!/bin/sh\necho $$ >> " + (root / "starts").string() +
                                                      "\necho $@ >> " + (root / "arguments").string() + "\n" + script);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    std::vector<std::string> lines(const char* name) {
        std::vector<std::string> found;
        std::ifstream file(root / name);
        for (std::string line; std::getline(file, line);)
            found.push_back(line);
        return found;
    }

    std::size_t starts() { return lines("starts").size(); }

    /// Whether the engine that was started last runs; one that was killed and not collected does not.
    bool lastRuns() {
        std::ifstream status("/proc/" + lines("starts").back() + "/stat");
        std::string id, name, kind;
        return status >> id >> name >> kind && kind != "Z";
    }

    void crash() { write(root / "crash", ""); }
};

} // namespace varnet::test
