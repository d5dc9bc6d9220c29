// What libFuzzer calls. The environment says which target: FUZZ_TARGET=png.

#include "fuzz/fuzz_target.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

using zavex::fuzz::Target;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

const Target& chosen()
{
    const char* const name = std::getenv("FUZZ_TARGET");
    for (const Target& each : zavex::fuzz::TARGETS)
        if (name != nullptr && each.name == std::string_view(name))
            return each;
    std::fprintf(stderr, "FUZZ_TARGET names no target\n");
    std::exit(EXIT_FAILURE);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    chosen().run({data, size});
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t most, unsigned /*seed*/)
{
    const std::size_t changed = LLVMFuzzerMutate(data, size, most);
    if (chosen().repair != nullptr)
        chosen().repair({data, changed});
    return changed;
}
