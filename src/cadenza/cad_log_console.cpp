// The program's receiver of log messages. Tests bring their own, so it is not in the library.

#include "cadenza/cad_log_line.h"
#include "common/zvx_system.h"

#include <cstdio>

namespace zavex {

void zvx_log_callback(const LogData& data)
{
    std::fputs(cadenza::logLine(data).c_str(), stdout);
}

} // namespace zavex
