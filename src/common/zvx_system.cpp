#include "common/zvx_system.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace zavex {

namespace {

constexpr std::size_t LOG_BUFFER_SIZE = 2048; // bytes, terminator included

} // namespace

// NOLINTNEXTLINE(readability-function-size): one parameter for each thing a line says
void zvx_megasuperlogger(const char* type, const char* domain, const char* file, int line,
                         const char* function, const char* format, ...)
{
    static char buffer[LOG_BUFFER_SIZE];

    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer, LOG_BUFFER_SIZE, format, arguments);
    va_end(arguments);

    LogData data;
    data.type = type;
    data.message = buffer;
    data.file = file;
    data.function = function;
    data.domain = domain;
    data.line = line;
    zvx_log_callback(data);
}

Exception::Exception(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(argMsg, MESSAGE_SIZE, format, arguments);
    va_end(arguments);
    log();
}

Exception::Exception(const std::string& message)
{
    const std::size_t length = std::min(message.size(), STRING_MESSAGE_SIZE - 1);
    std::memcpy(argMsg, message.data(), length);
    log();
}

void Exception::log() const
{
    zvx_megasuperlogger("error", "system", __FILE__, __LINE__, "Exception", "%s", argMsg);
}

void failPrecondition(const char* text)
{
    throw Exception("%s", text);
}

} // namespace zavex
