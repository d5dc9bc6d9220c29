#pragma once

#include <exception>
#include <string>

namespace zavex {

/** One log message. Lives on the stack of the logging entry point: copy what is to be kept. */
struct LogData {
    const char* type = "";     // "log", "info", "warning" or "error"
    const char* message = "";  // formatted text, at most 2047 characters
    const char* file = "";     // source file of the call site, possibly with directories
    const char* function = ""; // name of the calling function
    const char* domain = "";   // "app", "display", "system" or "Cadenza"
    int line = 0;
};

/**
 * Receives every log message, before the call that logs it returns.
 *
 * Declared here and defined once by each program. Must not log: the entry point is not reentrant.
 */
void zvx_log_callback(const LogData& data);

/**
 * The one logging entry point: formats printf-style and hands the record to `zvx_log_callback`.
 *
 * Formats into one static buffer of 2048 bytes; a longer message is cut at 2047 characters.
 * Call sites go through `ZVX_LOG`.
 */
[[gnu::format(printf, 6, 7)]] void zvx_megasuperlogger(const char* type, const char* domain,
                                                       const char* file, int line,
                                                       const char* function, const char* format,
                                                       ...);

/**
 * The one exception type. Logs its message at type "error", domain "system", when it is built.
 *
 * Thrown by value, caught by reference.
 */
class Exception : public std::exception {
public:
    static constexpr std::size_t MESSAGE_SIZE = 8000;        // bytes, terminator included
    static constexpr std::size_t STRING_MESSAGE_SIZE = 2048; // bytes kept of a finished string

    /** Formats printf-style; the message is cut at 7999 characters. */
    [[gnu::format(printf, 2, 3)]] explicit Exception(const char* format, ...);

    /** Takes the text as it is, '%' included; cut at 2047 characters. */
    explicit Exception(const std::string& message);

    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override = default;

    const char* what() const noexcept override { return argMsg; }

private:
    void log() const;

    char argMsg[MESSAGE_SIZE] = {};
};

/** Throws `Exception` with `text`. Called through `ZVX_REQUIRE`. */
[[noreturn]] void failPrecondition(const char* text);

} // namespace zavex

/** Logs printf-style with the call site's file, line and function. */
#define ZVX_LOG(type, domain, ...)                                                                 \
    ::zavex::zvx_megasuperlogger(type, domain, __FILE__, __LINE__, __func__, __VA_ARGS__)

/**
 * The one precondition check: throws `Exception` with `text` when `condition` is false, in every
 * build. `text` is the condition as it is reported, which may be plainer than the expression.
 */
#define ZVX_REQUIRE(condition, text)                                                               \
    (static_cast<bool>(condition) ? void() : ::zavex::failPrecondition(text))
