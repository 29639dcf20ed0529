#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace varnet::test {

/// A folder of its own for one test, erased with everything in it at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string path = std::filesystem::temp_directory_path() / "varnet-test.XXXXXX";
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

} // namespace varnet::test
