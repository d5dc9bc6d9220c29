#include "cadenza/cad_log_line.h"

#include "common/zvx_system.h"

#include <string_view>

namespace zavex::cadenza {

namespace {

constexpr std::string_view NAMESPACE = "zavex::";

std::string_view withoutDirectory(std::string_view file)
{
    const std::size_t separator = file.find_last_of("\\/:");
    return separator == std::string_view::npos ? file : file.substr(separator + 1);
}

std::string_view withoutNamespace(std::string_view function)
{
    return function.starts_with(NAMESPACE) ? function.substr(NAMESPACE.size()) : function;
}

} // namespace

std::string logLine(const LogData& data)
{
    std::string line;
    line.append("[").append(data.type).append("][").append(withoutNamespace(data.function));
    line.append("], ").append(data.message);
    line.append(" (").append(withoutDirectory(data.file)).append(":");
    line.append(std::to_string(data.line)).append(")\n");
    return line;
}

} // namespace zavex::cadenza
