#pragma once

#include "common/zvx_system.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace zavex::bench {

/** A copy of a show in a folder of its own, which is the working directory while it lives. */
class ShowFolder {
public:
    /**
     * Throws `Exception` when the folder cannot be made.
     *
     * @param show   The show's folder.
     * @param setup  Text of "setup.local.xml".
     */
    ShowFolder(const char* show, const char* setup)
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "cadenza-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw Exception("No scratch folder '%s'", pattern.c_str());
        mPath = pattern;
        std::filesystem::copy(show, mPath, std::filesystem::copy_options::recursive);
        std::ofstream(mPath / "setup.local.xml") << setup;
        std::filesystem::current_path(mPath);
    }
    ShowFolder(const ShowFolder&) = delete;
    ShowFolder& operator=(const ShowFolder&) = delete;
    ~ShowFolder()
    {
        std::filesystem::current_path("/");
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

private:
    std::filesystem::path mPath;
};

} // namespace zavex::bench
