#include "Varnet/engines/EngineLayout.h"
#include "Varnet/engines/NotesModel.h"
#include "Varnet/engines/SpeechModels.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace varnet;
namespace fs = std::filesystem;

namespace {

const Machine fastARM{true, "arm64"};
const Machine fastIntel{true, "x86_64"};
const Machine slowIntel{false, "x86_64"};

struct Layout : ::testing::Test {
    test::TemporaryFolder folder;
    fs::path root = folder / "root";
    Settings settings{folder / "settings.conf"};
    test::ScopedVariable dataHome{"XDG_DATA_HOME", (folder / "data").string()};
    test::ScopedVariable runtime{"VARNET_RUNTIME", std::nullopt};

    fs::path makeFile(const fs::path& path, bool executable = false) {
        fs::create_directories(path.parent_path());
        std::ofstream(path) << "x";
        if (executable)
            fs::permissions(path, fs::perms::owner_exec, fs::perm_options::add);
        return path;
    }
    fs::path makeProgram(const char* name) { return makeFile(root / name, true); }
    void makeNotesModel(std::int64_t bytes) {
        fs::resize_file(makeFile(NotesModel::file()), static_cast<std::uintmax_t>(bytes));
    }
};

} // namespace

TEST_F(Layout, ResolvesInItsOrder) {
    makeFile(folder / "with/engine/arm64/file");
    makeFile(folder / "without/notes-engine/llama-server", true);
    const EngineLayout bundled{folder / "with", true};
    const struct {
        const char* name;
        std::optional<std::string> variable;
        const char* stored;
        const char* resources;
        std::optional<EngineLayout> expected;
    } rows[] = {
        {"variable before stored", "/variable", "/stored", "with", EngineLayout{"/variable", false}},
        {"stored before resources", {}, "/stored", "with", EngineLayout{"/stored", false}},
        {"empty variable hides stored", "", "/stored", "with", bundled},
        {"empty stored is no folder", {}, "", "with", bundled},
        {"resources without engine", {}, "", "without", std::nullopt},
    };
    for (const auto& row : rows) {
        runtime.set(row.variable);
        settings.setText("RuntimeRoot", row.stored);
        EXPECT_EQ(EngineLayout::resolve(settings, folder / row.resources), row.expected) << row.name;
    }
}

TEST_F(Layout, SpeechIsWhatIsExecutableForThisMachine) {
    const EngineLayout development{root, false}, bundled{root, true};
    EXPECT_EQ(development.speech(settings, fastARM), std::nullopt);
    const fs::path released = makeProgram(".runtime/nemo-speech-0.2.0-macos-aarch64-metal/bin/nemo-speech");
    const fs::path built = makeFile(root / ".runtime/source/build/metal-asr/bin/nemo-speech");
    EXPECT_EQ(development.speech(settings, fastARM)->executable, released) << "the built one is not executable yet";
    fs::permissions(built, fs::perms::owner_exec, fs::perm_options::add);
    EXPECT_EQ(development.speech(settings, fastARM)->executable, built);

    const fs::path intel = makeProgram("engine/x86_64/bin/nemo-speech");
    EXPECT_EQ(bundled.speech(settings, fastARM), std::nullopt);
    settings.setText("SpeechEngineProcessorOnlyVersion", "another build");
    const auto spec = bundled.speech(settings, fastIntel);
    EXPECT_EQ(spec->executable, intel);
    EXPECT_EQ(spec->arguments.size(), 3U) << "the fallback of another build counts no more";
    EXPECT_EQ(spec->environment.at("NEMO_SPEECH_MODEL_DIR"), (folder / "data/Varnet/models").string());
}

TEST_F(Layout, BundledNotesNeedAFastMachineAndTheWholeModel) {
    const EngineLayout layout{root, true};
    const fs::path program = makeProgram("notes-engine/llama-server");
    EXPECT_EQ(layout.notes("/key", fastARM), std::nullopt) << "no model yet";
    makeNotesModel(2741986463);
    EXPECT_EQ(layout.notes("/key", fastARM), std::nullopt) << "one byte short";
    makeNotesModel(2741986464);
    EXPECT_EQ(layout.notes("/key", slowIntel), std::nullopt);

    const auto spec = layout.notes("/key", fastARM);
    ASSERT_TRUE(spec);
    EXPECT_EQ(spec->executable, program);
    EXPECT_EQ(spec->workingDirectory, root / "notes-engine");
    EXPECT_EQ(spec->arguments.at(1), (folder / "data/Varnet/notes-model/Qwen3.5-4B-Q4_K_M.gguf").string());
}

TEST_F(Layout, SpeechModelsAreInstalledOnceBothAreVerified) {
    const fs::path models = SpeechModels::folder();
    EXPECT_FALSE(SpeechModels::installed(models));
    makeFile(models / "nvidia/nemotron-speech-streaming-en-0.6b/main/weights.verified");
    EXPECT_FALSE(SpeechModels::installed(models)) << "one of the two";
    makeFile(models / "nvidia/Nemotron-3-Diarization/weights.verified");
    makeFile(models / "nvidia/Nemotron-3-Diarization/main/weights.verified.part");
    EXPECT_FALSE(SpeechModels::installed(models)) << "the mark stands elsewhere";
    makeFile(models / "nvidia/Nemotron-3-Diarization/main/.verified");
    EXPECT_TRUE(SpeechModels::installed(models));
    EXPECT_EQ(SpeechModels::bytesOnDisk(models), 4);
}
