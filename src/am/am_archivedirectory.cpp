#include "am/am_archivedirectory.h"

#include "am/am_atomicwrite.h"
#include "am/am_diskfile.h"
#include "common/zvx_system.h"

#include <cerrno>
#include <string_view>
#include <utility>

#include <sys/stat.h>

namespace zavex::am {

namespace {

bool isSeparator(char character)
{
    return character == '/' || character == '\\';
}

bool isDirectory(const std::string& path)
{
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool CreateDirectory(const std::string& path)
{
    if (mkdir(path.c_str(), 0777) == 0)
        return true;
    const int error = errno;
    if (isDirectory(path))
        return true;
    errno = error;
    return false;
}

bool createFullDirectory(const std::string& path)
{
    const std::size_t first = path.find_first_not_of("./\\");
    for (std::size_t at = first; at < path.size(); ++at) {
        if (isSeparator(path[at]) && !CreateDirectory(path.substr(0, at)))
            return false;
    }
    return true;
}

ArchiveDirectory::ArchiveDirectory(const std::string& path) : mPath(path)
{
    if (!mPath.empty() && !isSeparator(mPath.back()))
        mPath += '/';
}

File ArchiveDirectory::read(const std::string& name)
{
    DiskRead found = readDiskFile(mPath + name, name);
    if (!found.failure.empty())
        ZVX_LOG("log", "app", "'%s%s' cannot be read: %s\n", mPath.c_str(), name.c_str(),
                found.failure.c_str());
    return std::move(found.file);
}

bool ArchiveDirectory::write(File file)
{
    if (file.isNull())
        return false;
    std::string reason;
    return writeFileAtomically(mPath + file->filename, file->bytes(), reason);
}

} // namespace zavex::am
