#pragma once

#include "am/am_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace zavex::test {

/** A test with a folder of its own that is removed afterwards. */
class FolderTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "am-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        mFolder = pattern;
    }

    void TearDown() override { std::filesystem::remove_all(mFolder); }

    std::string path(const std::string& name) const { return (mFolder / name).string(); }

    void write(const std::string& name, std::string_view content) const
    {
        std::filesystem::create_directories((mFolder / name).parent_path());
        std::ofstream(mFolder / name, std::ios::binary) << content;
    }

    std::string read(const std::string& name) const
    {
        std::ifstream in(mFolder / name, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    /** Every file below the folder, by relative name, sorted. */
    std::vector<std::string> files() const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(mFolder)) {
            if (entry.is_regular_file())
                found.push_back(std::filesystem::relative(entry.path(), mFolder).string());
        }
        std::ranges::sort(found);
        return found;
    }

    std::filesystem::path mFolder;
};

inline am::File makeFile(const std::string& name, std::string_view content)
{
    std::unique_ptr<char[]> bytes(new char[content.size()]);
    std::ranges::copy(content, bytes.get());
    return am::File(
        new am::FileStructure(name, std::move(bytes), static_cast<std::int32_t>(content.size())));
}

inline std::string textOf(const am::File& file)
{
    return file.isNull() ? "(null)"
                         : std::string(file->data, static_cast<std::size_t>(file->length));
}

} // namespace zavex::test
