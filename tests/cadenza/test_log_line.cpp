#include "cadenza/cad_log_line.h"
#include "common/zvx_system.h"

#include "support/case_name.h"

#include <gtest/gtest.h>

namespace zavex::cadenza {
namespace {

struct LineCase {
    const char* name;
    const char* file;
    const char* function;
    const char* message;
    const char* expected;

    friend void PrintTo(const LineCase& line, std::ostream* out) { *out << line.name; }
};

constexpr LineCase LINE_CASES[] = {
    {"WholeName",            "main.cpp",              "setup",               "hi",          "[log][setup], hi (main.cpp:7)\n"},
    {"Slashes",              "/src/cadenza/main.cpp", "setup",               "hi",          "[log][setup], hi (main.cpp:7)\n"},
    {"Backslashes",          "c:\\src\\main.cpp",     "setup",               "hi",          "[log][setup], hi (main.cpp:7)\n"},
    {"Drive",                "c:main.cpp",            "setup",               "hi",          "[log][setup], hi (main.cpp:7)\n"},
    {"LastOfAnySeparator",   "a/b\\c:d",              "f",                   "",            "[log][f],  (d:7)\n"             },
    {"Namespace",            "a",                     "zavex::cadenza::run", "",            "[log][cadenza::run],  (a:7)\n"  },
    {"NamespaceOnlyInFront", "a",                     "f<zavex::X>",         "",            "[log][f<zavex::X>],  (a:7)\n"   },
    {"EndsInNewline",        "a",                     "f",                   "No sound!\n", "[log][f], No sound!\n (a:7)\n"  },
    {"PercentIsText",        "a",                     "f",                   "100%d",       "[log][f], 100%d (a:7)\n"        },
};

class LogLine : public testing::TestWithParam<LineCase> {};

TEST_P(LogLine, ShowsTypeFunctionMessageAndPlace)
{
    LogData data;
    data.type = "log";
    data.domain = "app";
    data.line = 7;
    data.file = GetParam().file;
    data.function = GetParam().function;
    data.message = GetParam().message;

    EXPECT_EQ(logLine(data), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, LogLine, testing::ValuesIn(LINE_CASES), test::caseName);

} // namespace
} // namespace zavex::cadenza
