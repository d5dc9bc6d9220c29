#include "cadenza/scratch.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zavex::test {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() : mBefore(fs::current_path())
{
    std::string pattern = (fs::temp_directory_path() / "cadenza-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    mFolder = pattern;
    fs::current_path(mFolder);
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    fs::current_path(mBefore, ignored);
    fs::remove_all(mFolder, ignored);
}

void writeText(const std::string& name, const std::string& text)
{
    const fs::path path(name);
    if (path.has_parent_path())
        fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string readText(const fs::path& name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace zavex::test
