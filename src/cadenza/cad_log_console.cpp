// The program's receiver of log messages. Tests bring their own, so it is not in the library.

#include "cadenza/cad_log_line.h"
#include "common/zvx_system.h"

#include <cstdio>
#include <new>

namespace zavex {

void zvx_log_callback(const LogData& data)
{
    // Also called while something is cleaned up, or by a C library.
    try {
        std::fputs(cadenza::logLine(data).c_str(), stdout);
    } catch (const std::bad_alloc&) {
        std::puts(data.message);
    }
}

} // namespace zavex
