#pragma once

#include "common/zvx_system.h"

#include <string>
#include <vector>

namespace zavex::test {

/** A copy of one log message. */
struct LogLine {
    std::string type;
    std::string message;
    std::string file;
    std::string function;
    std::string domain;
    int line = 0;
};

/** Every message logged by this test executable since the last `clearLog`, oldest first. */
const std::vector<LogLine>& logLines();

void clearLog();

/** How many messages of `type` contain `part`. */
int countLogged(const std::string& type, const std::string& part);

/**
 * Runs `action` and returns the message of the `Exception` it throws; "nothing was thrown" when it
 * throws none.
 */
template <typename Action>
std::string thrownMessage(Action action)
{
    try {
        action();
    } catch (const Exception& exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

} // namespace zavex::test
