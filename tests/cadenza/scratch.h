#pragma once

#include <filesystem>
#include <string>

namespace zavex::test {

/** Makes an empty folder the working directory for as long as it lives, then removes it. */
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

private:
    std::filesystem::path mBefore;
    std::filesystem::path mFolder;
};

/** Writes a file below the working directory, and the folders that it needs. */
void writeText(const std::string& name, const std::string& text);

/** A file's bytes; empty when there is none. */
std::string readText(const std::filesystem::path& name);

} // namespace zavex::test
