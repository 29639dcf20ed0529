#include "Varnet/engines/EngineLayout.h"

#include "Varnet/engines/NotesModel.h"
#include "Varnet/engines/SpeechModels.h"
#include "Varnet/platform/AppInfo.h"

#include <unistd.h>

#include <cstdlib>

namespace varnet {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> executable(const fs::path& path) {
    std::error_code failure;
    const bool runnable = fs::is_regular_file(path, failure) && ::access(path.c_str(), X_OK) == 0;
    return runnable ? std::optional(path) : std::nullopt;
}

bool isThere(const fs::path& path) {
    std::error_code failure;
    return fs::exists(path, failure);
}

std::vector<std::string> notesArguments(const fs::path& model, const fs::path& keyFile) {
    return {"--model",
            model.string(),
            "--alias",
            "qwen3.5-4b-q4km",
            "--host",
            "127.0.0.1",
            "--port",
            std::to_string(notesEnginePort),
            "--ctx-size",
            "8192",
            "--parallel",
            "1",
            "--threads",
            "4",
            "--batch-size",
            "256",
            "--ubatch-size",
            "128",
            "--jinja",
            "--reasoning",
            "off",
            "--no-context-shift",
            "--api-key-file",
            keyFile.string()};
}

} // namespace

std::optional<EngineLayout> EngineLayout::resolve(const Settings& settings, const std::optional<fs::path>& resources) {
    const char* variable = std::getenv("VARNET_RUNTIME");
    const std::string folder = variable ? variable : settings.text("RuntimeRoot").value_or("");
    if (!folder.empty())
        return EngineLayout{fs::absolute(folder), false};
    if (resources && isThere(*resources / "engine"))
        return EngineLayout{*resources, true};
    return std::nullopt;
}

std::optional<fs::path> EngineLayout::bundledBinary(const Machine& machine) const {
    if (!bundled)
        return std::nullopt;
    return executable(root / "engine" / machine.processorFolder / "bin/nemo-speech");
}

std::optional<fs::path> EngineLayout::bundledNotesBinary(const Machine& machine) const {
    if (!bundled || !machine.runsAcceleratedEngines)
        return std::nullopt;
    return executable(root / "notes-engine/llama-server");
}

std::map<std::string, std::string> EngineLayout::modelEnvironment() const {
    if (!bundled)
        return {};
    return {{"NEMO_SPEECH_MODEL_DIR", SpeechModels::folder().string()}};
}

std::optional<EngineSpec> EngineLayout::speech(const Settings& settings, const Machine& machine) const {
    EngineSpec spec;
    spec.name = "Speech engine";
    spec.workingDirectory = root;
    spec.port = speechEnginePort;
    std::optional<fs::path> program;
    if (bundled) {
        program = bundledBinary(machine);
        spec.arguments = {"serve", "--config", (root / "config/speech.yaml").string()};
        if (processorOnly(settings))
            spec.arguments.insert(spec.arguments.end(), {"--device", "cpu"});
        spec.environment = modelEnvironment();
    } else {
        program = executable(root / ".runtime/source/build/metal-asr/bin/nemo-speech");
        if (!program)
            program = executable(root / ".runtime/nemo-speech-0.2.0-macos-aarch64-metal/bin/nemo-speech");
        spec.arguments = {"serve", "--config", "config/speech.yaml"};
    }
    if (!program)
        return std::nullopt;
    spec.executable = *program;
    return spec;
}

std::optional<EngineSpec> EngineLayout::notes(const fs::path& keyFile, const Machine& machine) const {
    EngineSpec spec;
    spec.name = "Notes engine";
    spec.workingDirectory = root;
    spec.port = notesEnginePort;
    std::optional<fs::path> program;
    fs::path model;
    if (bundled) {
        program = bundledNotesBinary(machine);
        model = NotesModel::file();
        if (!program || !NotesModel::installed())
            return std::nullopt;
        spec.workingDirectory = program->parent_path();
    } else {
        program = executable(root / ".runtime/notes/runtime/llama-b11146/llama-server");
        model = root / ".runtime/notes/Qwen3.5-4B-Q4_K_M.gguf";
        if (!program || !isThere(model))
            return std::nullopt;
    }
    spec.executable = *program;
    spec.arguments = notesArguments(model, keyFile);
    return spec;
}

std::string EngineLayout::appVersion() {
    return AppInfo::bundleVersion();
}

bool EngineLayout::processorOnly(const Settings& settings) {
    return settings.text("SpeechEngineProcessorOnlyVersion") == appVersion();
}

} // namespace varnet
