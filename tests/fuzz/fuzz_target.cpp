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

} // namespace fuzz

} // namespace zavex

// What the decoders behind a sound keep when they give a file up is theirs.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libvorbis\nleak:libsndfile\nleak:libFLAC\nleak:libopus\nleak:libmpg123\n";
}
