// The seeds and whatever the fuzzer has found, each once. A fault ends the process; the last name
// printed is the input's.

#include "fuzz/fuzz_target.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

#include <sys/resource.h>

namespace zavex::fuzz {

namespace {

constexpr long MOST_MEMORY = 1L << 20U; // KiB, of the process with the sanitizers' own

long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST(KeptInputs, AreRefusedOrHoldWhatIsPromised)
{
    const std::filesystem::path folder = CADENZA_TEST_SOURCE_DIR "/inputs";
    for (const Target& target : TARGETS) {
        const std::filesystem::directory_iterator entries(folder / target.name);
        const std::set<std::filesystem::path> names(begin(entries), end(entries));
        EXPECT_FALSE(names.empty()) << target.name;
        for (const std::filesystem::path& name : names) {
            std::fprintf(stderr, "%s\n", name.c_str());
            std::ifstream file(name, std::ios::binary);
            const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
            target.run(bytes);
            ASSERT_LT(peakMemory(), MOST_MEMORY) << name;
        }
    }
}

} // namespace
} // namespace zavex::fuzz
