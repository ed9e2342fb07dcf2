#pragma once

#include "orv/String.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace orv::test {

/// A folder of this test alone, removed with all it holds at the end.
///
///     test::TemporaryFolder folder;
///     folder.write("in.txt", "abc");
///     FileInputStream in(folder.file(u"in.txt"));   // String, as the library's classes take it
///     EXPECT_EQ(folder.read("out.txt"), "abc");
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::random_device source;
        do {
            m_path = std::filesystem::temp_directory_path() /
                     ("orvcl-" + std::to_string(source()) + "-" + std::to_string(source()));
        } while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder itself, for the standard library.
    const std::filesystem::path& path() const noexcept { return m_path; }

    /// The path of a file in the folder, for the library. The file need not exist.
    String file(std::u16string_view name) const
    {
        const std::u16string path = (m_path / name).u16string();
        return String(path.data(), static_cast<std::int32_t>(path.size()));
    }

    void write(std::string_view name, std::string_view content) const
    {
        std::ofstream out(m_path / name, std::ios::binary);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
    }

    /// The whole content; empty where there is no such file.
    std::string read(std::string_view name) const
    {
        std::ifstream in(m_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path m_path;
};

} // namespace orv::test
