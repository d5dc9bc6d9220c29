#pragma once

#include <string>

namespace zavex {
struct LogData;
}

namespace zavex::cadenza {

/**
 * The console line of a log message: "[type][function], message (file:line)" and a newline. The
 * file loses its directories, the function the outermost namespace of this program.
 */
std::string logLine(const LogData& data);

} // namespace zavex::cadenza
