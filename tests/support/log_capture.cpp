#include "support/log_capture.h"

#include <algorithm>

namespace zavex {

namespace {

std::vector<test::LogLine>& lines()
{
    static std::vector<test::LogLine> kept;
    return kept;
}

} // namespace

void zvx_log_callback(const LogData& data)
{
    lines().push_back({data.type, data.message, data.file, data.function, data.domain, data.line});
}

namespace test {

const std::vector<LogLine>& logLines()
{
    return lines();
}

void clearLog()
{
    lines().clear();
}

int countLogged(const std::string& type, const std::string& part)
{
    return static_cast<int>(std::ranges::count_if(lines(), [&](const LogLine& line) {
        return line.type == type && line.message.find(part) != std::string::npos;
    }));
}

} // namespace test

} // namespace zavex
