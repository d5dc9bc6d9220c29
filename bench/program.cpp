// What all benchmark programs are made of, besides what they measure.

#include "figure.h"

#include "common/zvx_system.h"

#include <cerrno>
#include <exception>
#include <string_view>

void zavex::zvx_log_callback(const LogData& data)
{
    if (std::string_view(data.type) == "error")
        std::fprintf(stderr, "%s\n", data.message);
}

int main()
{
    try {
        zavex::bench::Figures figures;
        zavex::bench::run(figures);
        return figures.exitStatus();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, exception.what());
        return EXIT_FAILURE;
    }
}
