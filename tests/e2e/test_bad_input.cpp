#include "e2e/program.h"

#include "support/case_name.h"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace zavex::test {
namespace {

constexpr const char* GOOD_SETUP =
    R"(<display width="160" height="120" title="bad"/><music mute="nosound"/>)";

/** One of each stage that may fail; what else there is to refuse is tested where it is refused. */
struct BadInput {
    const char* name;
    std::string sections; // of the setup file
    const char* file;     // replaced by `content`, removed when that is empty; may be null
    std::string content;
    std::vector<const char*> said; // each stands in the output
    bool hasScreen = true;

    friend void PrintTo(const BadInput& input, std::ostream* out) { *out << input.name; }
};

// clang-format off
const BadInput BAD_INPUTS[] = {
    {"NoSetup", GOOD_SETUP, "setup.xml", "", {"[Cadenza] Could not load 'setup.[local.]xml'"}},
    {"MalformedSetup", GOOD_SETUP, "setup.xml", "<demo>\n\t<time start=\"0/>\n</demo>",
     {"setup.xml", "(error at line ", "You must close the value using \""}},
    {"MalformedScript", GOOD_SETUP, "script/plasma.plasma.xml",
     "<effect>\n<time start=1.5/></effect>", {"script/plasma.plasma.xml", "line 2", "'=' expected!"}},
    {"MissingArchive",
     R"(<archive path="gone.zip"/><display width="160" height="120"/><music filename="inside.ogg"/>)",
     nullptr, "", {"gone.zip", "Could not open the file 'inside.ogg'!"}},
    {"BrokenTexture", GOOD_SETUP, "plasma/intro2.png", "\x89PNG\r\n\x1a\n cut",
     {"plasma/intro2.png", "[loadPNG]"}},
    {"ShaderThatDoesNotCompile", GOOD_SETUP, "postprocess/combine.frag",
     "void main() { nonsense; }", {"Could not compile 'postprocess/combine.frag'"}},
    {"MissingShader", GOOD_SETUP, "postprocess/minify.vert", "", {"postprocess/minify.vert"}},
    {"NoScreen", GOOD_SETUP, nullptr, "", {"DisplayGLFW: Could not initialize GLFW!"}, false},
    {"OddHeightWhileRecording",
     R"(<display width="160" height="121"/><dump name="a.png" length="1"/><music mute="nosound"/>)",
     nullptr, "", {"121"}},
};
// clang-format on

class BadInputs : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputs, EndWithOneClearErrorAndLoseNothing)
{
    const BadInput& input = GetParam();
    const ShowCopy show(input.sections);
    if (input.file != nullptr && input.content.empty())
        std::filesystem::remove(show.path(input.file));
    else if (input.file != nullptr)
        show.write(input.file, input.content);
    const auto before = show.scripts();

    const VirtualScreen screen;
    Program program(show.path(), variable("DISPLAY", input.hasScreen ? screen.display() : ""));
    EXPECT_EQ(program.waitForEnd(), 1) << program.output();
    for (const char* part : input.said)
        EXPECT_NE(program.output().find(part), std::string::npos) << part << "\n"
                                                                  << program.output();
    EXPECT_EQ(show.scripts(), before);
}

INSTANTIATE_TEST_SUITE_P(Cases, BadInputs, testing::ValuesIn(BAD_INPUTS), test::caseName);

TEST(WithoutMusic, TheShowGoesOn)
{
    using Row = std::array<std::string, 3>;
    for (const auto& [song, drivers, said] : {
             Row{"setup.xml",     "null", "Could not open file"},
             Row{"afterglow.ogg", "none", "No sound device!"   }
    }) {
        const ShowCopy show(
            R"(<display width="160" height="120" title="silent"/><music filename=")" + song +
            "\"/>");
        const VirtualScreen screen;
        Program program(show.path(), screen, variable("ALSOFT_DRIVERS", drivers));
        EXPECT_GE(program.waitForLine(said), 0) << program.output();
        EXPECT_GE(program.waitForLine("---"), 0) << program.output();
        Keyboard(screen, "silent").press("Escape");
        EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    }
}

} // namespace
} // namespace zavex::test
