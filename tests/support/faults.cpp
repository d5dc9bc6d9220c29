// Preloaded into a program, lets one of its calls fail: the call that FAULT_CALL names (open, read,
// write, fsync, rename, close, or new for memory that the program itself asks for), the time that
// FAULT_AT says, counted from 1, with the error number FAULT_ERRNO. The file FAULT_REPORT comes
// into being then. Only files count whose paths hold one of the parts that FAULT_PATHS lists,
// separated by colons; memory counts from the first of them on.
//
// Built without sanitizers: it is called before theirs are ready.

#include <algorithm>
#include <bitset>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr std::size_t MOST_DESCRIPTORS = 1024;

std::string_view setting(const char* name)
{
    const char* const value = getenv(name);
    return value != nullptr ? value : "";
}

/** The function that would have been called without this library. */
template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

struct State {
    std::bitset<MOST_DESCRIPTORS> watched; // descriptors of files that count
    bool begun = false;                    // such a file was opened
    long calls = 0;
};

State& state()
{
    static State only;
    return only;
}

bool isWatched(const char* path)
{
    std::string_view parts = setting("FAULT_PATHS");
    while (!parts.empty()) {
        const std::string_view part = parts.substr(0, parts.find(':'));
        if (std::string_view(path).find(part) != std::string_view::npos)
            return true;
        parts.remove_prefix(std::min(part.size() + 1, parts.size()));
    }
    return false;
}

bool isWatched(int descriptor)
{
    return descriptor >= 0 && static_cast<std::size_t>(descriptor) < MOST_DESCRIPTORS &&
           state().watched[static_cast<std::size_t>(descriptor)];
}

/** Whether this call, which counts, is to fail; errno is set then. */
bool fails(std::string_view call)
{
    if (call != setting("FAULT_CALL") || ++state().calls != atol(getenv("FAULT_AT")))
        return false;
    const int report =
        next<int(const char*, int, ...)>("open")(getenv("FAULT_REPORT"), O_WRONLY | O_CREAT, 0600);
    next<int(int)>("close")(report);
    errno = atoi(getenv("FAULT_ERRNO"));
    return true;
}

template <typename Open>
int openWatched(const char* path, Open open)
{
    if (!isWatched(path))
        return open();
    state().begun = true;
    if (fails("open"))
        return -1;
    const int descriptor = open();
    if (descriptor >= 0 && static_cast<std::size_t>(descriptor) < MOST_DESCRIPTORS)
        state().watched.set(static_cast<std::size_t>(descriptor));
    return descriptor;
}

/** Whether code of the program itself lies there, not that of a library. */
bool isOfProgram(const void* address)
{
    const auto objectOf = [](const void* place) {
        dl_find_object found{};
        _dl_find_object(const_cast<void*>(place), &found);
        return found.dlfo_link_map;
    };
    static const auto* const program = objectOf(reinterpret_cast<void*>(getauxval(AT_ENTRY)));
    return objectOf(address) == program;
}

void* allocate(std::size_t size, const char* name, const void* caller)
{
    if (state().begun && isOfProgram(caller) && fails("new"))
        throw std::bad_alloc();
    return next<void*(std::size_t)>(name)(size);
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return openWatched(path,
                       [&] { return next<int(const char*, int, ...)>("open")(path, flags, mode); });
}

ssize_t read(int descriptor, void* bytes, std::size_t size)
{
    return isWatched(descriptor) && fails("read")
               ? -1
               : next<ssize_t(int, void*, std::size_t)>("read")(descriptor, bytes, size);
}

ssize_t write(int descriptor, const void* bytes, std::size_t size)
{
    return isWatched(descriptor) && fails("write")
               ? -1
               : next<ssize_t(int, const void*, std::size_t)>("write")(descriptor, bytes, size);
}

int fsync(int descriptor)
{
    return isWatched(descriptor) && fails("fsync") ? -1 : next<int(int)>("fsync")(descriptor);
}

int rename(const char* from, const char* to)
{
    return isWatched(from) && fails("rename")
               ? -1
               : next<int(const char*, const char*)>("rename")(from, to);
}

/** Closed even when that fails, as the system does it. */
int close(int descriptor)
{
    const bool watched = isWatched(descriptor);
    if (watched)
        state().watched.reset(static_cast<std::size_t>(descriptor));
    const int result = next<int(int)>("close")(descriptor);
    return watched && fails("close") ? -1 : result;
}

} // extern "C"

void* operator new(std::size_t size)
{
    return allocate(size, "_Znwm", __builtin_return_address(0));
}

void* operator new[](std::size_t size)
{
    return allocate(size, "_Znam", __builtin_return_address(0));
}
