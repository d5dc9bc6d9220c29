#include "e2e/program.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

const std::string PREFIX = "a prefix";
const std::string SHOW = PREFIX + "/share/cadenza/demo";
const std::string COPY = "a home/.local/share/cadenza/afterglow";
const std::string SCRIPT = COPY + "/script/clear.clear.xml";

/** Ends by itself after one frame, as if Escape had been pressed. */
constexpr const char* ONE_FRAME =
    R"(<demo><display width="16" height="12" title="install"/><music mute="nosound"/>)"
    R"(<dump name="shot.png" rate="25" length="0.04"/></demo>)";

/** What `cmake --install` puts in place, write-protected, and the home of a user. */
class Installed : public testing::Test {
protected:
    Installed()
    {
        runProgram({CADENZA_CMAKE, "--install", CADENZA_BUILD_DIR, "--prefix", mPlace.path(PREFIX)},
                   {});
        runProgram({"chmod", "-R", "a-w", mPlace.path(SHOW)}, {});
        fs::create_directory(mPlace.path("a home"));
    }

    void TearDown() override { allowWriting(); }

    void allowWriting() { runProgram({"chmod", "-R", "u+w", mPlace.path(SHOW)}, {}); }

    /** Starts the launcher from somewhere else. @return What it and the program print. */
    std::string launch(const std::string& home, int expectedStatus)
    {
        Program launcher(
            "/",
            {
                {"DISPLAY",       mScreen.display()},
                {"HOME",          mPlace.path(home)},
                {"XDG_DATA_HOME", ""               }
        },
            std::nullopt, mPlace.path(PREFIX + "/bin/afterglow"));
        EXPECT_EQ(launcher.waitForEnd(), expectedStatus) << launcher.output();
        return launcher.output();
    }

    VirtualScreen mScreen;
    TemporaryFolder mPlace;
};

TEST_F(Installed, TheShowIsEditedInACopyThatIsRenewedUntilThen)
{
    mPlace.write(COPY + "/setup.local.xml", ONE_FRAME);
    EXPECT_EQ(launch("a home", 0).find("Could not save"), std::string::npos);
    for (const auto& [name, content] : filesIn(mPlace, SHOW))
        EXPECT_TRUE(mPlace.read(COPY + "/" + name) == content) << name;

    allowWriting();
    mPlace.write(SHOW + "/plasma/later.txt", "later");
    EXPECT_EQ(launch("a home", 0).find("afterglow: "), std::string::npos);
    EXPECT_EQ(mPlace.read(COPY + "/plasma/later.txt"), "later");
    EXPECT_NE(mPlace.read(COPY + "/setup.local.xml"), "");

    std::string edited = mPlace.read(SCRIPT);
    edited.replace(edited.find("locked=\"0\""), 10, "locked=\"1\"");
    mPlace.write(SCRIPT, edited);
    EXPECT_EQ(launch("a home", 0).find("afterglow: "), std::string::npos);
    mPlace.write(SHOW + "/plasma/later.txt", "still later");
    EXPECT_NE(launch("a home", 0).find("was edited"), std::string::npos);
    EXPECT_EQ(mPlace.read(SCRIPT), edited);
    EXPECT_EQ(mPlace.read(COPY + "/plasma/later.txt"), "later");

    // A renewal that was cut short had put the copy aside.
    fs::rename(mPlace.path(COPY), mPlace.path(COPY + "/../.afterglow.x.old"));
    launch("a home", 0);
    EXPECT_EQ(mPlace.read(SCRIPT), edited);
}

TEST_F(Installed, WithoutAPlaceForTheCopyTheLauncherSaysSoInOneLine)
{
    mPlace.write("no home", "");
    const std::string said = launch("no home", 1);
    EXPECT_TRUE(said.starts_with("afterglow: cannot make the working copy ")) << said;
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
}

TEST_F(Installed, TheDesktopFindsIt)
{
    runProgram(
        {"desktop-file-validate", mPlace.path(PREFIX + "/share/applications/afterglow.desktop")},
        {});
    EXPECT_TRUE(fs::exists(mPlace.path(PREFIX + "/share/icons/hicolor/48x48/apps/afterglow.png")));
}

} // namespace
} // namespace zavex::test
