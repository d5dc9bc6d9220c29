#include "display/dis_glinclude.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zavex::display {
namespace {

struct ErrorCase {
    GLenum error;
    const char* expected; // empty: ignored

    friend void PrintTo(const ErrorCase& row, std::ostream* out) { *out << row.error; }
};

constexpr ErrorCase ERROR_CASES[] = {
    {0x500,  "GL_INVALID_ENUM"     },
    {0x501,  "GL_INVALID_VALUE"    },
    {0x502,  "GL_INVALID_OPERATION"},
    {0x503,  "GL_STACK_OVERFLOW"   },
    {0x504,  "GL_STACK_UNDERFLOW"  },
    {0x505,  "GL_OUT_OF_MEMORY"    },
    {0x8031, "GL_TABLE_TOO_LARGE"  },
    {0x506,  ""                    },
    {0,      ""                    },
};

class GlError : public testing::TestWithParam<ErrorCase> {};

TEST_P(GlError, NamesTheCallTheFileAndTheErrorOrIsIgnored)
{
    const std::string name = GetParam().expected;
    const std::string expected =
        name.empty() ? "nothing was thrown"
                     : "GL-error at [12] dis_file.cpp\nLine: glFoo( 1 )\nError: '" + name + "'\n";

    EXPECT_EQ(test::thrownMessage(
                  [] { raiseGlError(GetParam().error, "dis_file.cpp", 12, "glFoo( 1 )"); }),
              expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, GlError, testing::ValuesIn(ERROR_CASES));

} // namespace
} // namespace zavex::display
