#include "common/zvx_system.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zavex {
namespace {

using test::clearLog;
using test::logLines;

class Logging : public testing::Test {
protected:
    void SetUp() override { clearLog(); }
};

TEST_F(Logging, HandsTheCallSiteAndTheFormattedTextToTheCallback)
{
    const int line = __LINE__ + 1;
    ZVX_LOG("warning", "display", "%d of %s\n", 3, "four");

    ASSERT_EQ(logLines().size(), 1u);
    EXPECT_EQ(logLines()[0].type, "warning");
    EXPECT_EQ(logLines()[0].domain, "display");
    EXPECT_EQ(logLines()[0].message, "3 of four\n");
    EXPECT_EQ(logLines()[0].file, __FILE__);
    EXPECT_EQ(logLines()[0].line, line);
    EXPECT_EQ(logLines()[0].function, "TestBody");
}

TEST_F(Logging, CutsALongMessageAtTheBuffer)
{
    ZVX_LOG("log", "app", "%s", std::string(3000, 'x').c_str());
    EXPECT_EQ(logLines().at(0).message, std::string(2047, 'x'));
}

TEST_F(Logging, EveryExceptionIsLoggedWhenItIsBuilt)
{
    const Exception formatted("%s at %d", "broken", 7);
    const Exception copy(formatted);

    EXPECT_STREQ(copy.what(), "broken at 7");
    ASSERT_EQ(logLines().size(), 1u);
    EXPECT_EQ(logLines()[0].type, "error");
    EXPECT_EQ(logLines()[0].domain, "system");
    EXPECT_EQ(logLines()[0].function, "Exception");
    EXPECT_EQ(logLines()[0].message, "broken at 7");
}

TEST_F(Logging, TakesAStringVerbatimAndCutsIt)
{
    EXPECT_STREQ(Exception(std::string{"100 %d %s"}).what(), "100 %d %s");
    EXPECT_EQ(logLines().back().message, "100 %d %s");
    EXPECT_EQ(std::string{Exception(std::string(3000, 'y')).what()}, std::string(2047, 'y'));
    EXPECT_EQ(std::string{Exception("%s", std::string(9000, 'z').c_str()).what()},
              std::string(7999, 'z'));
}

TEST_F(Logging, ABrokenPreconditionThrowsItsText)
{
    EXPECT_EQ(test::thrownMessage([] { ZVX_REQUIRE(1 + 1 == 3, "sum==3"); }), "sum==3");
    EXPECT_NO_THROW(ZVX_REQUIRE(true, "never"));
}

} // namespace
} // namespace zavex
