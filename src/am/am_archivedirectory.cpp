#include "am/am_archivedirectory.h"

#include "am/am_atomicwrite.h"

#include <cerrno>
#include <cstdio>
#include <limits>
#include <string_view>

#include <sys/stat.h>

namespace zavex::am {

namespace {

bool isSeparator(char character)
{
    return character == '/' || character == '\\';
}

using OpenFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/** The size of a regular file in bytes; -1 for anything that `File` cannot hold. */
std::int32_t readableSize(std::FILE* file)
{
    struct stat status {};
    if (fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > std::numeric_limits<std::int32_t>::max())
        return -1;
    return static_cast<std::int32_t>(status.st_size);
}

} // namespace

bool CreateDirectory(const std::string& path)
{
    return mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

bool createFullDirectory(const std::string& path)
{
    const std::size_t first = path.find_first_not_of("./\\");
    bool created = true;
    for (std::size_t at = first; at < path.size(); ++at) {
        if (isSeparator(path[at]) && !CreateDirectory(path.substr(0, at)))
            created = false;
    }
    return created;
}

ArchiveDirectory::ArchiveDirectory(const std::string& path) : mPath(path)
{
    if (!mPath.empty() && !isSeparator(mPath.back()))
        mPath += '/';
}

File ArchiveDirectory::read(const std::string& name)
{
    const OpenFile file(std::fopen((mPath + name).c_str(), "rb"), std::fclose);
    if (!file)
        return {};
    const std::int32_t length = readableSize(file.get());
    if (length < 0)
        return {};

    const auto size = static_cast<std::size_t>(length);
    std::unique_ptr<char[]> bytes(new char[size]);
    if (std::fread(bytes.get(), 1, size, file.get()) != size)
        return {};
    return File(new FileStructure(name, std::move(bytes), length));
}

bool ArchiveDirectory::write(File file)
{
    std::string reason;
    const std::string_view bytes(file->data, static_cast<std::size_t>(file->length));
    return writeFileAtomically(mPath + file->filename, bytes, reason);
}

} // namespace zavex::am
