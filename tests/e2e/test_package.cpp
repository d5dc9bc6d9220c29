#include "e2e/program.h"

#include <gtest/gtest.h>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

/** What `./package` makes, with sections added to its setup file. */
class PackagedShow : public TemporaryFolder {
public:
    explicit PackagedShow(const std::string& sections, const Environment& environment = {})
    {
        fs::remove(path());
        runProgram({CADENZA_SOURCE_DIR "/package", path().string()}, environment);
        const std::string setup = read("setup.xml");
        write("setup.xml", setup.substr(0, setup.rfind("</demo>")) + sections + "</demo>");
    }
};

TEST(Package, ShowsTheSameWithItsScriptsBesideOneArchive)
{
    const std::string sections =
        R"(<display width="160" height="120" title="package"/>)"
        R"(<dump name="frames/shot.png" rate="0.05" length="160"/><music/>)";
    const PackagedShow package(sections);
    EXPECT_EQ(package.files().size(), filesIn(package, "script").size() + 2);
    const PackagedShow elsewhere("", {
                                         {"TZ", "XYZ-9"}
    });
    EXPECT_TRUE(package.read("demo.zip") == elsewhere.read("demo.zip"));
    constexpr std::size_t DATE = 12; // offset of the first file's date in the archive
    EXPECT_EQ(package.read("demo.zip").substr(DATE, 2),
              "\x21" + std::string(1, '\0')); // 1980-01-01

    const VirtualScreen screen;
    const ShowCopy folder("");
    folder.write("setup.xml", package.read("setup.xml")); // its archive is not there
    const Files expected = record(folder, screen);
    const Files found = record(package, screen);
    ASSERT_EQ(expected.size(), 8u);
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
