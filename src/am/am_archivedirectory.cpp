#include "am/am_archivedirectory.h"

#include "am/am_atomicwrite.h"

#include <cerrno>
#include <cstdio>
#include <limits>
#include <string_view>

#include <fcntl.h>
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

using OpenFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

OpenFile openForReading(const std::string& path)
{
    // A pipe of that name must not make the program wait for its other end.
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    return {descriptor < 0 ? nullptr : fdopen(descriptor, "rb"), std::fclose};
}

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
    const OpenFile file = openForReading(mPath + name);
    if (!file)
        return {};
    const std::int32_t length = readableSize(file.get());
    if (length < 0)
        return {};

    const auto size = static_cast<std::size_t>(length);
    auto bytes = std::make_unique_for_overwrite<char[]>(size);
    if (std::fread(bytes.get(), 1, size, file.get()) != size)
        return {};
    return File(new FileStructure(name, std::move(bytes), length));
}

bool ArchiveDirectory::write(File file)
{
    if (file.isNull())
        return false;
    std::string reason;
    const std::string_view bytes(file->data, static_cast<std::size_t>(file->length));
    return writeFileAtomically(mPath + file->filename, bytes, reason);
}

} // namespace zavex::am
