#include "e2e/program.h"
#include "e2e/screen_picture.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace zavex::test {
namespace {

constexpr int WIDTH = 160;
constexpr int HEIGHT = 120;

constexpr const char* SILENT_SHOW =
    R"(<time start="2"/><display width="160" height="120" title="playback"/>)"
    R"(<osd show="on" location="top" delay="2"/><music mute="nosound"/>)";

/** The show, playing on a screen of its own, with the keyboard in its window. */
class Playback : public testing::Test {
protected:
    /** The demo time as the program logs it when P is pressed. */
    double demoTime()
    {
        const std::size_t from = mProgram.lines().size();
        mKeyboard.press("p");
        const int line = mProgram.waitForLine("[onKeyDown], ", from);
        EXPECT_GE(line, 0) << mProgram.output();
        if (line < 0)
            return -1.0;
        const std::string& text = mProgram.lines()[static_cast<std::size_t>(line)].text;
        return std::strtod(text.c_str() + text.rfind(' '), nullptr);
    }

    /** Whether the green start marker stands in the rows around `centre`, from the top in 0..1. */
    bool markerAt(double centre)
    {
        const ScreenPicture picture = captureScreen(mScreen.display(), WIDTH, HEIGHT);
        const int y = static_cast<int>(centre * HEIGHT);
        for (int x = 0; x < WIDTH; ++x) {
            const std::uint8_t* pixel = picture.at(x, y);
            if (pixel[1] > 110 && pixel[0] < 90 && pixel[2] < 90)
                return true;
        }
        return false;
    }

    /** Waits until the marker stands at `centre`; a frame may take a while in software. */
    bool markerComes(double centre)
    {
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (markerAt(centre))
                return true;
            mProgram.listen(0.05);
        }
        return false;
    }

    VirtualScreen mScreen;
    ShowCopy mShow{SILENT_SHOW};
    Program mProgram{mShow.path(), {{"DISPLAY", mScreen.display()}}};
    Keyboard mKeyboard{mScreen, "playback"};
};

TEST_F(Playback, EscapeEndsItAndLeavesUntouchedScriptsAsTheyWere)
{
    const auto before = mShow.scripts();
    ASSERT_GE(mProgram.waitForLine("---"), 0) << mProgram.output();
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
    EXPECT_EQ(mShow.scripts(), before);
    EXPECT_GE(before.size(), 5u);
}

TEST_F(Playback, KeysPauseAndSeek)
{
    EXPECT_GE(demoTime(), 2.0);
    mKeyboard.press("space");
    const double paused = demoTime();
    mProgram.listen(0.3);
    EXPECT_EQ(demoTime(), paused);

    mKeyboard.press("Right");
    EXPECT_NEAR(demoTime(), paused + 5.0, 1e-4);
    mKeyboard.press("Left");
    mKeyboard.press("Left");
    EXPECT_NEAR(demoTime(), std::max(paused - 5.0, 0.0), 1e-4);

    mKeyboard.press("space");
    const double resumed = demoTime();
    mProgram.listen(0.3);
    EXPECT_GE(demoTime(), resumed + 0.3);

    mKeyboard.press("q");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, TheStartMarkerIsSetClearedAndReturnedTo)
{
    mKeyboard.press("space");
    mKeyboard.press("Right");
    const double marked = demoTime();
    mKeyboard.press("ctrl+t");
    mKeyboard.press("Right");
    EXPECT_NEAR(demoTime(), marked + 5.0, 1e-4);
    mKeyboard.press("t");
    EXPECT_NEAR(demoTime(), marked, 1e-4);
    mKeyboard.press("alt+t");
    EXPECT_EQ(demoTime(), 0.0);
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, ThePositionBarAppearsAndMovesThroughItsPlaces)
{
    constexpr double TOP = (1.0 - 0.9313726) / 2;
    mKeyboard.press("space"); // shows it, and time stands still with it
    EXPECT_TRUE(markerComes(TOP));
    mKeyboard.press("o");
    EXPECT_TRUE(markerComes(0.5));
    mKeyboard.press("o");
    EXPECT_TRUE(markerComes(1.0 - TOP));
    mKeyboard.press("o");
    EXPECT_TRUE(markerComes(TOP));
    mKeyboard.press("ctrl+o");
    mProgram.listen(1.0);
    EXPECT_FALSE(markerAt(TOP));
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, FullScreenAndBackTenTimesLeavesThePicture)
{
    mKeyboard.press("space");
    mKeyboard.press("ctrl+o");
    mProgram.listen(1.0);
    const ScreenPicture before = captureScreen(mScreen.display(), WIDTH, HEIGHT);
    for (int turn = 0; turn < 10; ++turn) {
        const std::size_t from = mProgram.lines().size();
        mKeyboard.press("alt+Return");
        ASSERT_GE(mProgram.waitForLine("restoreResources", from), 0) << mProgram.output();
        const Keyboard refocused(mScreen, "playback");
    }
    mProgram.listen(1.0);
    // The grain differs from frame to frame; a lost texture or target would be far more.
    EXPECT_LT(meanDifference(before, captureScreen(mScreen.display(), WIDTH, HEIGHT)), 1.5);
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

} // namespace
} // namespace zavex::test
