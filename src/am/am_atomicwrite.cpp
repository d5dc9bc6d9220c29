#include "am/am_atomicwrite.h"

#include "am/am_archivedirectory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zavex::am {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666; // before the umask

/** Where a symbolic link leads; anything else is itself. */
std::string resolve(const std::string& path)
{
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
    return real ? std::string(real.get()) : path;
}

int openForWriting(const std::string& path)
{
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC;
    const int descriptor = open(path.c_str(), flags, NEW_FILE_MODE);
    if (descriptor >= 0 || errno != ENOENT || !createFullDirectory(path))
        return descriptor;
    return open(path.c_str(), flags, NEW_FILE_MODE);
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/** The permissions of the file that is replaced, if there is one. */
std::optional<mode_t> oldMode(const std::string& path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status.st_mode & 07777;
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

} // namespace

bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& reason)
{
    const std::string target = resolve(path);
    const std::string beside = target + ".part";
    const int descriptor = openForWriting(beside);
    if (descriptor >= 0 && fill(descriptor, bytes, oldMode(target)) &&
        std::rename(beside.c_str(), target.c_str()) == 0)
        return true;

    reason = std::strerror(errno);
    if (descriptor >= 0)
        unlink(beside.c_str());
    return false;
}

} // namespace zavex::am
