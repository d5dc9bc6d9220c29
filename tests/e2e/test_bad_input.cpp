#include "e2e/program.h"

#include "support/case_name.h"

#include <gtest/gtest.h>

#include <ostream>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* GOOD_SETUP =
    R"(<display width="160" height="120" title="bad"/><music mute="nosound"/>)";

struct BadInput {
    const char* name;
    const char* setup; // sections of the setup file
    const char* file;  // replaced by `content`, removed when that is null; may be null
    const char* content;
    const char* screen;            // DISPLAY; null for a virtual screen
    std::vector<const char*> said; // each stands in the output

    friend void PrintTo(const BadInput& input, std::ostream* out) { *out << input.name; }
};

const BadInput BAD_INPUTS[] = {
    {"NoSetup",
     GOOD_SETUP,                                                                                       "setup.xml",
     nullptr,                                                                                                                                        nullptr,
     {"[Cadenza] Could not load 'setup.[local.]xml'"}                                                                                                                                                              },
    {"MalformedSetup",
     GOOD_SETUP,                                                                                       "setup.xml",
     "<demo>\n\t<time start=\"0/>\n</demo>",                                                                                                         nullptr,
     {"setup.xml", "(error at line ", "You must close the value using \""}                                                                                                                                         },
    {"SetupWithAnotherRoot",        GOOD_SETUP,                                                        "setup.xml",                 "<show></show>", nullptr, {"setup.xml"}                                        },
    {"MalformedScript",
     GOOD_SETUP,                                                                                       "script/plasma.plasma.xml",
     "<effect>\n<time start=1.5/></effect>",                                                                                                         nullptr,
     {"script/plasma.plasma.xml", "line 2", "'=' expected!"}                                                                                                                                                       },
    {"ScriptCutShort",
     GOOD_SETUP,                                                                                       "script/flash.flash.xml",
     "<effect><time start=\"0\"",                                                                                                                    nullptr,
     {"script/flash.flash.xml", "EOF"}                                                                                                                                                                             },
    {"MissingSong",
     R"(<display width="160" height="120"/><music filename="gone.ogg"/>)",                             nullptr,
     nullptr,                                                                                                                                        nullptr,
     {"Could not open the file 'gone.ogg'!"}                                                                                                                                                                       },
    {"MissingArchive",
     R"(<archive path="gone.zip"/><display width="160" height="120"/><music filename="inside.ogg"/>)",
     nullptr,                                                                                                                       nullptr,
     nullptr,                                                                                                                                                 {"gone.zip", "Could not open the file 'inside.ogg'!"}},
    {"MissingTexture",              GOOD_SETUP,                                                        "plasma/intro.png",          nullptr,         nullptr, {"plasma/intro.png"}                                 },
    {"BrokenTexture",
     GOOD_SETUP,                                                                                       "plasma/intro2.png",
     "\x89PNG\r\n\x1a\n cut",                                                                                                                        nullptr,
     {"plasma/intro2.png", "[loadPNG]"}                                                                                                                                                                            },
    {"ShaderThatDoesNotCompile",
     GOOD_SETUP,                                                                                       "postprocess/combine.frag",
     "void main() { nonsense; }",                                                                                                                    nullptr,
     {"Could not compile 'postprocess/combine.frag'"}                                                                                                                                                              },
    {"ShaderThatDoesNotLink",
     GOOD_SETUP,                                                                                       "postprocess/glow_hor.frag",
     "void missing(); void main() { missing(); }",                                                                                                   nullptr,
     {"Could not link.", "postprocess/glow_hor.frag"}                                                                                                                                                              },
    {"MissingShader",
     GOOD_SETUP,                                                                                       "postprocess/minify.vert",
     nullptr,                                                                                                                                        nullptr,
     {"postprocess/minify.vert"}                                                                                                                                                                                   },
    {"NoScreen",                    GOOD_SETUP,                                                        nullptr,                     nullptr,         "",      {"DisplayGLFW: Could not initialize GLFW!"}          },
    {"NoSize",
     R"(<display width="0" height="0"/><music mute="nosound"/>)",                                      nullptr,
     nullptr,                                                                                                                                        nullptr,
     {"0 x 0"}                                                                                                                                                                                                     },
    {"OddHeightWhileRecording",
     R"(<display width="160" height="121"/><dump name="a.png" length="1"/><music mute="nosound"/>)",   nullptr,
     nullptr,                                                                                                                                        nullptr,
     {"121"}                                                                                                                                                                                                       },
    {"RecordingWithoutAnExtension",
     R"(<display width="160" height="120"/><dump name="movie"/><music mute="nosound"/>)",              nullptr,
     nullptr,                                                                                                                                        nullptr,
     {"Could not find something that could write to 'movie'"}                                                                                                                                                      },
};

class BadInputs : public testing::TestWithParam<BadInput> {};

TEST_P(BadInputs, EndWithOneClearErrorAndLoseNothing)
{
    const BadInput& input = GetParam();
    const ShowCopy show(input.setup);
    if (input.file != nullptr && input.content == nullptr)
        fs::remove(show.path() / input.file);
    else if (input.file != nullptr)
        show.write(input.file, input.content);
    const auto before = show.scripts();

    const VirtualScreen screen;
    Program program(show.path(),
                    {
                        {"DISPLAY", input.screen != nullptr ? input.screen : screen.display()}
    });
    EXPECT_EQ(program.waitForEnd(), 1) << program.output();
    for (const char* part : input.said)
        EXPECT_NE(program.output().find(part), std::string::npos) << part << "\n"
                                                                  << program.output();
    EXPECT_EQ(show.scripts(), before);
}

INSTANTIATE_TEST_SUITE_P(Cases, BadInputs, testing::ValuesIn(BAD_INPUTS), test::caseName);

/** What only switches the music off: the show goes on. */
struct NoMusic {
    const char* name;
    const char* song;
    const char* drivers; // ALSOFT_DRIVERS
    const char* said;

    friend void PrintTo(const NoMusic& row, std::ostream* out) { *out << row.name; }
};

constexpr NoMusic NO_MUSIC[] = {
    {"ASongThatIsNoSound", "setup.xml",     "null", "Could not open file"},
    {"NoSoundDevice",      "afterglow.ogg", "none", "No sound device!"   },
};

class WithoutMusic : public testing::TestWithParam<NoMusic> {};

TEST_P(WithoutMusic, TheShowGoesOn)
{
    const ShowCopy show(R"(<display width="160" height="120" title="silent"/><music filename=")" +
                        std::string(GetParam().song) + "\"/>");
    const VirtualScreen screen;
    Program program(show.path(),
                    {
                        {"DISPLAY",        screen.display()  },
                        {"ALSOFT_DRIVERS", GetParam().drivers}
    });
    const Keyboard keyboard(screen, "silent");
    EXPECT_GE(program.waitForLine(GetParam().said), 0) << program.output();
    EXPECT_GE(program.waitForLine("---"), 0) << program.output();
    keyboard.press("Escape");
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
}

INSTANTIATE_TEST_SUITE_P(Cases, WithoutMusic, testing::ValuesIn(NO_MUSIC), test::caseName);

} // namespace
} // namespace zavex::test
