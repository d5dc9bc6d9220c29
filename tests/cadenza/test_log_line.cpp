#include "cadenza/cad_log_line.h"
#include "common/zvx_system.h"

#include <gtest/gtest.h>

namespace zavex::cadenza {
namespace {

TEST(LogLine, ShowsTypeFunctionMessageAndPlace)
{
    const auto line = [](const char* file, const char* function, const char* message) {
        LogData data;
        data.type = "log";
        data.domain = "app";
        data.line = 7;
        data.file = file;
        data.function = function;
        data.message = message;
        return logLine(data);
    };
    for (const char* file : {"main.cpp", "/src/cadenza/main.cpp", "c:\\src\\main.cpp", "c:main.cpp",
                             "a/b\\c:main.cpp"})
        EXPECT_EQ(line(file, "setup", "hi"), "[log][setup], hi (main.cpp:7)\n") << file;
    EXPECT_EQ(line("a", "zavex::cadenza::run", ""), "[log][cadenza::run],  (a:7)\n");
    EXPECT_EQ(line("a", "f<zavex::X>", ""), "[log][f<zavex::X>],  (a:7)\n");
    EXPECT_EQ(line("a", "f", "No sound!\n"), "[log][f], No sound!\n (a:7)\n");
    EXPECT_EQ(line("a", "f", "100%d"), "[log][f], 100%d (a:7)\n");
}

} // namespace
} // namespace zavex::cadenza
