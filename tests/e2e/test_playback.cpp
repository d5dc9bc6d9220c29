#include "e2e/program.h"
#include "e2e/screen_picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zavex::test {
namespace {

constexpr int WIDTH = 480;
constexpr int HEIGHT = 120;

constexpr const char* SILENT_SHOW =
    R"(<time start="2"/><display width="480" height="120" title="playback"/>)"
    R"(<osd show="on" location="top" delay="2"/><music mute="nosound"/>)";

/** The show, playing on a screen of its own, with the keyboard in its window. */
class Playback : public testing::Test {
protected:
    /** Keys that are pressed before the first frame may find nobody. */
    void SetUp() override { ASSERT_GE(mProgram.waitForLine("---"), 0) << mProgram.output(); }

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

    /** Whether the window, which may be another one than before, has the keyboard and answers. */
    bool keysArrive()
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            const Keyboard keyboard(mScreen, "playback");
            const std::size_t from = mProgram.lines().size();
            keyboard.press("p");
            if (mProgram.waitForLine("[onKeyDown], ", from, 1.0) >= 0)
                return true;
        }
        return false;
    }

    /** Whether the demo time comes within a tenth of a millisecond of `expected`: a key pressed
        while time stands still acts on the next frame. */
    bool timeBecomes(double expected)
    {
        double time = demoTime();
        for (int attempt = 0; attempt < 50 && std::abs(time - expected) > 1e-4; ++attempt)
            time = demoTime();
        return std::abs(time - expected) <= 1e-4;
    }

    /** Whether the play head stands in the row at `centre`, from the top in 0..1. */
    bool playHeadAt(double centre)
    {
        const ScreenPicture picture = captureScreen(mScreen.display(), WIDTH, HEIGHT);
        const int y = static_cast<int>(centre * HEIGHT);
        for (int x = 0; x < WIDTH; ++x) {
            const std::uint8_t* pixel = picture.at(x, y);
            if (std::min({pixel[0], pixel[1], pixel[2]}) > 120)
                return true;
        }
        return false;
    }

    /** Waits until the play head stands at `centre`; a frame may take a while in software. */
    bool playHeadComes(double centre)
    {
        for (int attempt = 0; attempt < 100; ++attempt) {
            if (playHeadAt(centre))
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
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
    EXPECT_EQ(mShow.scripts(), before);
    EXPECT_GE(before.size(), 5u);
}

TEST_F(Playback, KeysPauseAndSeek)
{
    EXPECT_GE(demoTime(), 2.0);
    mKeyboard.press("space");
    mProgram.listen(0.5); // until the pause is seen in a frame
    const double paused = demoTime();
    mProgram.listen(0.3);
    EXPECT_EQ(demoTime(), paused);

    mKeyboard.press("Right");
    EXPECT_TRUE(timeBecomes(paused + 5.0));
    mKeyboard.press("Left");
    EXPECT_TRUE(timeBecomes(paused));
    mKeyboard.press("Left");
    EXPECT_TRUE(timeBecomes(0.0));

    mKeyboard.press("space");
    const double resumed = demoTime();
    mProgram.listen(2.0);
    EXPECT_GE(demoTime(), resumed + 1.0);

    mKeyboard.press("q");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, TheStartMarkerIsSetClearedAndReturnedTo)
{
    mKeyboard.press("space");
    mProgram.listen(0.5);
    const double marked = demoTime();
    EXPECT_GT(marked, 2.0);
    mKeyboard.press("ctrl+t");
    mKeyboard.press("Right");
    EXPECT_TRUE(timeBecomes(marked + 5.0));
    mKeyboard.press("t");
    EXPECT_TRUE(timeBecomes(marked));
    mKeyboard.press("alt+t");
    EXPECT_TRUE(timeBecomes(0.0));
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, ThePositionBarAppearsAndMovesThroughItsPlaces)
{
    constexpr double TOP = (1.0 - 0.9313726) / 2;
    mKeyboard.press("space"); // shows it, and time stands still with it
    EXPECT_TRUE(playHeadComes(TOP));
    mKeyboard.press("o");
    EXPECT_TRUE(playHeadComes(0.5));
    mKeyboard.press("o");
    EXPECT_TRUE(playHeadComes(1.0 - TOP));
    mKeyboard.press("o");
    EXPECT_TRUE(playHeadComes(TOP));
    mKeyboard.press("ctrl+o");
    mProgram.listen(1.0);
    EXPECT_FALSE(playHeadAt(TOP));
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
        ASSERT_TRUE(keysArrive()) << mProgram.output();
    }
    mProgram.listen(1.0);
    // The grain differs from frame to frame; a lost texture or target would be far more.
    EXPECT_LT(meanDifference(before, captureScreen(mScreen.display(), WIDTH, HEIGHT)), 1.5);
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

} // namespace
} // namespace zavex::test
