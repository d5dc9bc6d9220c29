#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zavex::test {

/** An empty folder that is removed with the object. Names are relative to it. */
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "cadenza-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        mPath = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    const std::filesystem::path& path() const { return mPath; }
    std::string path(const std::string& name) const { return (mPath / name).string(); }

    /** Makes the folders that it needs, too. */
    void write(const std::string& name, std::string_view content) const
    {
        std::filesystem::create_directories((mPath / name).parent_path());
        std::ofstream(mPath / name, std::ios::binary) << content;
    }

    /** Empty when there is no such file. */
    std::string read(const std::string& name) const
    {
        std::ifstream file(mPath / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /** Every file below the folder, by name, sorted. */
    std::vector<std::string> files() const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(mPath))
            if (entry.is_regular_file())
                found.push_back(std::filesystem::relative(entry.path(), mPath).string());
        std::ranges::sort(found);
        return found;
    }

private:
    std::filesystem::path mPath;
};

} // namespace zavex::test
