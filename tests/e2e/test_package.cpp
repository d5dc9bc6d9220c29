#include "e2e/program.h"

#include <gtest/gtest.h>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

/** What `./package` makes, with sections added to its setup file. */
class PackagedShow : public TemporaryFolder {
public:
    explicit PackagedShow(const std::string& sections)
    {
        fs::remove(path());
        runProgram({CADENZA_SOURCE_DIR "/package", path().string()}, {});
        const std::string setup = read("setup.xml");
        write("setup.xml", setup.substr(0, setup.rfind("</demo>")) + sections + "</demo>");
    }
};

TEST(Package, ShowsTheSameWithItsScriptsBesideOneArchive)
{
    const std::string sections = R"(<display width="160" height="120" title="package"/>)"
                                 R"(<dump name="frames/shot.png" rate="0.1" length="60"/><music/>)";
    const PackagedShow package(sections);
    EXPECT_EQ(package.files().size(), filesIn(package, "script").size() + 2);
    EXPECT_TRUE(package.read("demo.zip") == PackagedShow("").read("demo.zip"));

    const VirtualScreen screen;
    const Files expected = record(ShowCopy(sections), screen);
    const Files found = record(package, screen);
    ASSERT_EQ(expected.size(), 6u);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t index = 0; index < found.size(); ++index)
        EXPECT_TRUE(found[index] == expected[index]) << expected[index].first;
}

TEST(Package, PlaysTheArchivesSongButNotItsScripts)
{
    const PackagedShow package(R"(<display width="160" height="120" title="package"/>)");
    fs::remove(package.path("script/flash.flash.xml"));
    const VirtualScreen screen;
    Program program(package.path(), {
                                        {"DISPLAY",        screen.display()},
                                        {"ALSOFT_DRIVERS", "null"          }
    });
    ASSERT_GE(program.waitForLine("---"), 0) << program.output();
    const Keyboard keyboard(screen, "package");
    keyboard.press("Escape");
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    EXPECT_EQ(program.output().find("Could not open"), std::string::npos) << program.output();
    const std::string script = package.read("script/flash.flash.xml");
    EXPECT_NE(script.find(R"(<time start="0" end="10"/>)"), std::string::npos) << script;
}

} // namespace
} // namespace zavex::test
