#include "am/am_diskfile.h"

#include "common/zvx_system.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zavex::am {

namespace {

namespace fs = std::filesystem;

constexpr int MOST_LINKS = 40; // as many as the system follows
constexpr std::uint64_t MOST_BYTES =
    std::numeric_limits<std::int32_t>::max(); // that a file can hold

/** An open file that is closed with the object. */
class Descriptor {
public:
    explicit Descriptor(int descriptor) : mDescriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (mDescriptor >= 0)
            close(mDescriptor);
    }

    int get() const { return mDescriptor; }

private:
    int mDescriptor;
};

/** Why what is open is not to be read; empty when it may be. */
std::string refusal(const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return std::strerror(EISDIR);
    return S_ISREG(status.st_mode) ? "" : "Not a regular file";
}

/** @return Whether all bytes came; else errno says why, EIO when the file ended early. */
bool readAll(int descriptor, char* bytes, std::size_t size)
{
    while (size > 0) {
        const ssize_t count = ::read(descriptor, bytes, size);
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0)
            errno = EIO;
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool meansMissing(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

} // namespace

OpenedFile openRegularFile(const std::string& path)
{
    // A pipe of that name must not make the program wait for its other end.
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return {-1, 0, meansMissing(errno) ? "" : std::strerror(errno)};
    struct stat status {};
    std::string failure = fstat(descriptor, &status) != 0 ? std::strerror(errno) : refusal(status);
    if (failure.empty())
        return {descriptor, static_cast<std::uint64_t>(status.st_size), {}};
    close(descriptor);
    return {-1, 0, std::move(failure)};
}

DiskRead readDiskFile(const std::string& path, const std::string& name)
{
    OpenedFile opened = openRegularFile(path);
    const Descriptor file(opened.descriptor);
    if (file.get() < 0)
        return {{}, std::move(opened.failure)};
    if (opened.size > MOST_BYTES)
        return {{},
                "It has " + std::to_string(opened.size) + " bytes, expected at most " +
                    std::to_string(MOST_BYTES)};

    auto bytes = std::make_unique_for_overwrite<char[]>(opened.size);
    if (!readAll(file.get(), bytes.get(), opened.size))
        return {{}, std::strerror(errno)};
    return {File(new FileStructure(name, std::move(bytes), static_cast<std::int32_t>(opened.size))),
            {}};
}

std::string followLinks(const std::string& path)
{
    fs::path target = path;
    std::error_code error;
    for (int links = 0; links < MOST_LINKS; ++links) {
        const fs::path next = fs::read_symlink(target, error);
        if (error)
            break;
        target = target.parent_path() / next;
    }
    return target.string();
}

std::string leadsOutside(const std::string& path)
{
    std::error_code error;
    const fs::path folder = fs::current_path(error);
    if (error)
        return {};
    const fs::path target = fs::weakly_canonical(folder / followLinks(path), error);
    if (error)
        return {};
    const fs::path inside = target.lexically_relative(folder);
    return *inside.begin() == ".." ? target.string() : "";
}

FolderLock::~FolderLock()
{
    if (mDescriptor >= 0)
        close(mDescriptor);
}

bool FolderLock::take(const std::string& folder)
{
    if (mDescriptor >= 0)
        return true;
    mDescriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    mHeld = mDescriptor >= 0 && flock(mDescriptor, LOCK_EX | LOCK_NB) == 0;
    if (mHeld)
        return true;
    if (mDescriptor >= 0 && errno == EWOULDBLOCK) {
        close(mDescriptor);
        mDescriptor = -1;
        return false;
    }
    ZVX_LOG("log", "app", "'%s' cannot be locked against other programs: %s\n", folder.c_str(),
            std::strerror(errno));
    return true;
}

} // namespace zavex::am
