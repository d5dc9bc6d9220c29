#include "common/zvx_process.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

namespace zavex {

namespace {

constexpr std::int64_t SAME_REQUEST = 100'000'000;  // nanoseconds
constexpr std::int64_t NANOSECONDS = 1'000'000'000; // in a second

constexpr std::size_t MESSAGE_SIZE = 8192; // bytes, terminator included

// A handler has nothing else to leave its news in.
std::atomic<std::int64_t> quitSignalled{0}; // nanoseconds of the system's clock; 0 before
static_assert(std::atomic<std::int64_t>::is_always_lock_free);

/** Does only what a signal handler may. */
void onQuitSignal(int signal)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t time = std::int64_t{now.tv_sec} * NANOSECONDS + now.tv_nsec;
    std::int64_t first = 0;
    if (quitSignalled.compare_exchange_strong(first, time) || time - first < SAME_REQUEST)
        return;

    // Takes effect when this handler returns.
    struct sigaction byDefault {};
    byDefault.sa_handler = SIG_DFL;
    sigaction(signal, &byDefault, nullptr);
    raise(signal);
}

void catchQuitSignals()
{
    struct sigaction quit {};
    quit.sa_handler = onQuitSignal;
    quit.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&quit.sa_mask, signal);
    sigaction(SIGINT, &quit, nullptr);
    sigaction(SIGTERM, &quit, nullptr);

    struct sigaction hangUp {};
    sigaction(SIGHUP, nullptr, &hangUp);
    if (hangUp.sa_handler != SIG_IGN)
        sigaction(SIGHUP, &quit, nullptr);
}

void openStandardStreams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF)
            open("/dev/null", O_RDWR); // takes the lowest free number, which is this one
}

} // namespace

void prepareProcess()
{
    openStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    catchQuitSignals();
}

bool isQuitSignalled()
{
    return quitSignalled.load(std::memory_order_relaxed) != 0;
}

void reportFailure(const char* format, ...)
{
    std::array<char, MESSAGE_SIZE> message{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message.data(), message.size(), format, arguments);
    va_end(arguments);

    char* const begin = message.data();
    char* end = begin + std::strlen(begin);
    while (end > begin && end[-1] == '\n')
        --end;
    *end = '\0';
    std::replace(begin, end, '\n', ' ');
    std::fflush(stdout);
    std::fprintf(stderr, "cadenza: %s\n", begin);
}

} // namespace zavex
