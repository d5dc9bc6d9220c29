#include "am/am_atomicwrite.h"

#include "am/am_archivedirectory.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zavex::am {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666; // before the umask
constexpr mode_t PERMISSIONS = 07777;
constexpr int MOST_LINKS = 40; // as many as the system follows

/** Where symbolic links lead, to a file or to where one is to be; anything else is itself. */
std::string resolve(const std::string& path)
{
    std::filesystem::path target = path;
    std::error_code error;
    for (int links = 0; links < MOST_LINKS; ++links) {
        const std::filesystem::path next = std::filesystem::read_symlink(target, error);
        if (error)
            break;
        target = target.parent_path() / next;
    }
    return target.string();
}

/** Creates a file in the folder of `target`, under a name that nothing has. -1 when it cannot. */
int createBeside(const std::string& target, std::string& beside)
{
    const std::string start = target.substr(0, target.rfind('/') + 1) + ".part";
    int descriptor = -1;
    for (int number = 0; descriptor < 0 && (number == 0 || errno == EEXIST); ++number) {
        beside = start + std::to_string(number);
        descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILE_MODE);
    }
    return descriptor;
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/** Closes `descriptor` in any case. */
bool fill(int descriptor, std::string_view bytes, std::optional<mode_t> replacedMode)
{
    bool done = writeAll(descriptor, bytes);
    if (replacedMode)
        done = done && fchmod(descriptor, *replacedMode) == 0 && fsync(descriptor) == 0;
    const int error = errno;
    const bool closed = close(descriptor) == 0;
    if (!done)
        errno = error;
    return done && closed;
}

/** @param oldMode  The permissions of the file that is replaced, if there is one. */
bool replace(const std::string& target, std::string_view bytes, std::optional<mode_t> oldMode)
{
    std::string beside;
    int descriptor = createBeside(target, beside);
    if (descriptor < 0 && errno == ENOENT && createFullDirectory(target))
        descriptor = createBeside(target, beside);
    if (descriptor < 0)
        return false;
    if (fill(descriptor, bytes, oldMode) && std::rename(beside.c_str(), target.c_str()) == 0)
        return true;

    const int error = errno;
    unlink(beside.c_str());
    errno = error;
    return false;
}

/** Into a device or a pipe, which has to stay what it is. */
bool pass(const std::string& target, std::string_view bytes)
{
    const int descriptor = open(target.c_str(), O_WRONLY | O_CLOEXEC);
    return descriptor >= 0 && fill(descriptor, bytes, std::nullopt);
}

bool write(const std::string& target, std::string_view bytes)
{
    struct stat old {};
    if (stat(target.c_str(), &old) != 0)
        return errno == ENOENT && replace(target, bytes, std::nullopt);
    if (!S_ISREG(old.st_mode))
        return pass(target, bytes);
    // Renaming over a write-protected file would work.
    return faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0 &&
           replace(target, bytes, old.st_mode & PERMISSIONS);
}

} // namespace

bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& reason)
{
    const bool written = write(resolve(path), bytes);
    if (!written)
        reason = std::strerror(errno);
    return written;
}

} // namespace zavex::am
