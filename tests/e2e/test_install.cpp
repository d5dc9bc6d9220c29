#include "e2e/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

const std::string PREFIX = "a prefix";
const std::string SHOW = PREFIX + "/share/cadenza/demo";
const std::string COPY = "a home/.local/share/cadenza/afterglow";
const std::string SCRIPT = COPY + "/script/clear.clear.xml";

const std::string SETTINGS = std::string("<demo>") + ONE_FRAME + "</demo>";

/** What `cmake --install` puts in place, write-protected, and the home of a user. */
class Installed : public testing::Test {
protected:
    Installed()
    {
        runProgram(
            {CADENZA_CMAKE, "--install", CADENZA_BUILD_DIR, "--prefix", mPlace.path(PREFIX)});
        runProgram({"chmod", "-R", "a-w", mPlace.path(SHOW)});
        fs::create_directory(mPlace.path("a home"));
    }

    void TearDown() override { allowWriting(); }

    void allowWriting() { runProgram({"chmod", "-R", "u+w", mPlace.path(SHOW)}); }

    /** Starts the launcher from somewhere else. */
    std::unique_ptr<Program> start(const std::string& home)
    {
        auto user = variable("HOME", mPlace.path(home));
        user.emplace_back("XDG_DATA_HOME", "");
        return std::make_unique<Program>("/", mScreen, user, std::nullopt,
                                         mPlace.path(PREFIX + "/bin/afterglow"));
    }

    /** @return What the launcher and the program print. */
    std::string launch(const std::string& home, int expectedStatus)
    {
        const auto launcher = start(home);
        EXPECT_EQ(launcher->waitForEnd(), expectedStatus) << launcher->output();
        return launcher->output();
    }

    VirtualScreen mScreen;
    TemporaryFolder mPlace;
};

TEST_F(Installed, TheShowIsEditedInACopyThatIsRenewedUntilThen)
{
    mPlace.write(COPY + "/setup.local.xml", SETTINGS);
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

    // Renewals that were cut short had put the copy aside, and made a part of the next.
    fs::rename(mPlace.path(COPY), mPlace.path(COPY + "/../.afterglow.x.old"));
    mPlace.write(COPY + "/../.afterglow.x/part", "");
    launch("a home", 0);
    EXPECT_EQ(mPlace.read(SCRIPT), edited);
    EXPECT_EQ(std::distance(fs::directory_iterator(mPlace.path(COPY + "/..")), {}), 1);
}

TEST_F(Installed, AnOpenCopyIsPlayedAndNeverRenewed)
{
    mPlace.write(COPY + "/setup.local.xml", SETTINGS);
    const auto first = start("a home");
    const auto second = start("a home");
    EXPECT_EQ(first->waitForEnd(), 0) << first->output();
    EXPECT_EQ(second->waitForEnd(), 0) << second->output();

    allowWriting();
    mPlace.write(SHOW + "/plasma/later.txt", "later");
    for (const std::string& locked : {COPY, COPY + "/script"}) {
        SCOPED_TRACE(locked);
        const int folder = open(mPlace.path(locked).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_EQ(flock(folder, LOCK_EX | LOCK_NB), 0) << "still held by a program that ended";
        EXPECT_NE(launch("a home", 0).find("open already"), std::string::npos);
        EXPECT_FALSE(fs::exists(mPlace.path(COPY + "/plasma/later.txt")));
        close(folder);
    }
    EXPECT_EQ(launch("a home", 0).find("open already"), std::string::npos);
    EXPECT_EQ(mPlace.read(COPY + "/plasma/later.txt"), "later");
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
        {"desktop-file-validate", mPlace.path(PREFIX + "/share/applications/afterglow.desktop")});
    EXPECT_TRUE(fs::exists(mPlace.path(PREFIX + "/share/icons/hicolor/48x48/apps/afterglow.png")));
}

} // namespace
} // namespace zavex::test
