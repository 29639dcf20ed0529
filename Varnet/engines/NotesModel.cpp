#include "Varnet/engines/NotesModel.h"

#include "Varnet/platform/Paths.h"

namespace varnet::NotesModel {

std::filesystem::path file() {
    return Paths::applicationSupport() / "Varnet/notes-model/Qwen3.5-4B-Q4_K_M.gguf";
}

bool installed() {
    std::error_code failure;
    const auto size = std::filesystem::file_size(file(), failure);
    return !failure && size == static_cast<std::uintmax_t>(byteCount);
}

} // namespace varnet::NotesModel
