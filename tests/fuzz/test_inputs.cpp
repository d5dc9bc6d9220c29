// The seeds and whatever the fuzzer has found, each once. A fault ends the process; the last name
// printed is the input's.

#include "fuzz/fuzz_target.h"
#include "support/case_name.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <vector>

#include <sys/resource.h>

namespace zavex::fuzz {

void PrintTo(const Target& target, std::ostream* out)
{
    *out << target.name;
}

namespace {

constexpr long MOST_MEMORY = 1L << 20U; // KiB, of the process with the sanitizers' own

long peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class KeptInputs : public testing::TestWithParam<Target> {};

TEST_P(KeptInputs, AreRefusedOrHoldWhatIsPromised)
{
    const std::filesystem::path folder = CADENZA_TEST_SOURCE_DIR "/inputs";
    const std::filesystem::directory_iterator entries(folder / GetParam().name);
    const std::set<std::filesystem::path> names(begin(entries), end(entries));
    EXPECT_FALSE(names.empty());
    for (const std::filesystem::path& name : names) {
        std::fprintf(stderr, "%s\n", name.c_str());
        std::ifstream file(name, std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        GetParam().run(bytes);
        ASSERT_LT(peakMemory(), MOST_MEMORY) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, KeptInputs, testing::ValuesIn(TARGETS), test::caseName);

} // namespace
} // namespace zavex::fuzz
