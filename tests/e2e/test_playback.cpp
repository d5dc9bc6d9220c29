#include "e2e/program.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace zavex::test {
namespace {

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

    /** Whether the demo time comes within a tenth of a millisecond of `expected`: a key pressed
        while time stands still acts on the next frame. */
    bool timeBecomes(double expected)
    {
        double time = demoTime();
        for (int attempt = 0; attempt < 50 && std::abs(time - expected) > 1e-4; ++attempt)
            time = demoTime();
        return std::abs(time - expected) <= 1e-4;
    }

    VirtualScreen mScreen;
    ShowCopy mShow{SILENT_SHOW};
    Program mProgram{mShow.path(), {{"DISPLAY", mScreen.display()}}};
    Keyboard mKeyboard{mScreen, "playback"};
};

TEST_F(Playback, KeysReachIt)
{
    EXPECT_GE(demoTime(), 2.0);
    mKeyboard.press("space");
    mProgram.listen(0.5); // until the pause is seen in a frame
    const double paused = demoTime();
    mProgram.listen(0.3);
    EXPECT_EQ(demoTime(), paused);

    mKeyboard.press("ctrl+t");
    mKeyboard.press("Right");
    EXPECT_TRUE(timeBecomes(paused + 5.0));
    mKeyboard.press("t");
    EXPECT_TRUE(timeBecomes(paused));
    mKeyboard.press("alt+t");
    EXPECT_TRUE(timeBecomes(0.0));

    mKeyboard.press("space");
    const double resumed = demoTime();
    mProgram.listen(2.0);
    EXPECT_GE(demoTime(), resumed + 1.0);
    mKeyboard.press("q");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
}

TEST_F(Playback, GoesToFullScreenAndEscapeLeavesUntouchedScriptsAsTheyWere)
{
    const auto before = mShow.scripts();
    EXPECT_GE(before.size(), 5u);
    mKeyboard.press("alt+Return");
    EXPECT_GE(mProgram.waitForLine("restoreResources"), 0) << mProgram.output();
    // The window is another one, and gets the keyboard when it is there.
    int answer = -1;
    for (int attempt = 0; attempt < 20 && answer < 0; ++attempt) {
        const std::size_t from = mProgram.lines().size();
        Keyboard(mScreen, "playback").press("p");
        answer = mProgram.waitForLine("[onKeyDown], ", from, 1.0);
    }
    mKeyboard.press("Escape");
    EXPECT_EQ(mProgram.waitForEnd(), 0) << mProgram.output();
    EXPECT_EQ(mShow.scripts(), before);
}

} // namespace
} // namespace zavex::test
