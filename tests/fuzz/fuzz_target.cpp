#include "fuzz/fuzz_target.h"

#include "common/zvx_system.h"

#include <cstdio>
#include <cstdlib>

namespace zavex {

void zvx_log_callback(const LogData& /*data*/) {}

namespace fuzz {

void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "SUMMARY: broken promise: %s\n", what);
    std::abort();
}

std::string textOf(Bytes input)
{
    return {input.begin(), input.end()};
}

std::uint32_t bigEndian(Bytes input, std::size_t at)
{
    std::uint32_t value = 0;
    for (const std::uint8_t byte : input.subspan(at, 4))
        value = value << 8U | byte;
    return value;
}

} // namespace fuzz

} // namespace zavex

// What the decoders behind a sound keep when they give a file up is theirs.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libvorbis\nleak:libsndfile\nleak:libFLAC\nleak:libopus\nleak:libmpg123\n";
}
