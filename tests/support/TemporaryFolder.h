#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace varnet::test {

/// A folder of its own for one test, erased with everything in it at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string path = parent / "varnet-test.XXXXXX";
        if (!::mkdtemp(path.data()))
            throw std::runtime_error("no temporary folder");
        m_path = path;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

/// Makes a folder unusable while it lives: a file stands in its place.
class FileInTheWay {
public:
    explicit FileInTheWay(std::filesystem::path folder) : m_folder(std::move(folder)) {
        std::filesystem::rename(m_folder, m_folder.string() + ".aside");
        std::ofstream(m_folder).flush();
    }
    FileInTheWay(const FileInTheWay&) = delete;
    FileInTheWay& operator=(const FileInTheWay&) = delete;
    ~FileInTheWay() {
        std::error_code ignored;
        std::filesystem::remove(m_folder, ignored);
        std::filesystem::rename(m_folder.string() + ".aside", m_folder, ignored);
    }

private:
    std::filesystem::path m_folder;
};

} // namespace varnet::test
