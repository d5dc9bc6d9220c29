#include "display/dis_glinclude.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace zavex::display {
namespace {

TEST(GlError, NamesTheCallTheFileAndTheErrorOrIsIgnored)
{
    const std::pair<GLenum, std::string> cases[] = {
        {0x500,  "GL_INVALID_ENUM"     },
        {0x501,  "GL_INVALID_VALUE"    },
        {0x502,  "GL_INVALID_OPERATION"},
        {0x503,  "GL_STACK_OVERFLOW"   },
        {0x504,  "GL_STACK_UNDERFLOW"  },
        {0x505,  "GL_OUT_OF_MEMORY"    },
        {0x8031, "GL_TABLE_TOO_LARGE"  },
    };
    for (const auto& [error, name] : cases) {
        const GLenum number = error;
        EXPECT_EQ(test::thrownMessage(
                      [&] { raiseGlError(number, "/src/d/dis_file.cpp", 12, "glFoo( 1 )"); }),
                  "GL-error at [12] dis_file.cpp\nLine: glFoo( 1 )\nError: '" + name + "'\n");
    }
    for (const GLenum ignored : {0u, 0x506u})
        EXPECT_NO_THROW(raiseGlError(ignored, "dis_file.cpp", 12, "glFoo( 1 )"));
}

} // namespace
} // namespace zavex::display
