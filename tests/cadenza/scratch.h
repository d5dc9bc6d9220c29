#pragma once

#include "support/temporary_folder.h"

namespace zavex::test {

/** A temporary folder that is the working directory for as long as it lives. */
class ScratchFolder : public TemporaryFolder {
public:
    ScratchFolder() { std::filesystem::current_path(path()); }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(mBefore, ignored);
    }

private:
    std::filesystem::path mBefore = std::filesystem::current_path();
};

/** Writes a file below the working directory, and the folders that it needs. */
inline void writeText(const std::filesystem::path& name, const std::string& text)
{
    if (name.has_parent_path())
        std::filesystem::create_directories(name.parent_path());
    std::ofstream(name, std::ios::binary) << text;
}

/** A file's bytes; empty when there is none. */
inline std::string readText(const std::filesystem::path& name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace zavex::test
