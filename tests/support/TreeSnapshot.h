#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace varnet::test {

/// Everything below a folder: relative path to content, target of a link, or kind. Links are not followed.
inline std::map<std::string, std::string> treeOf(const std::filesystem::path& folder) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::string& value = tree[entry.path().lexically_relative(folder)];
        if (entry.is_symlink()) {
            value = "-> " + fs::read_symlink(entry.path()).native();
        } else if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            if (entry.file_size() < 1'000'000)
                value.assign(std::istreambuf_iterator<char>(file), {});
            else
                value = std::to_string(entry.file_size()) + " bytes";
        } else {
            value = entry.is_directory() ? "folder" : "special";
        }
    }
    return tree;
}

} // namespace varnet::test
