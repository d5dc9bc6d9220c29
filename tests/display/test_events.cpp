#include "display/dis_joystick.h"
#include "recorder.h"
#include "support/gl_display.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <utility>

namespace zavex::test {

using display::DisplayGLFW;
using display::Listener;

namespace {

/** Two listeners on an open display: "A" was added first, "B" sees input first. */
class Events : public GlDisplayTest {
protected:
    Events()
    {
        mA.attachToDisplay(&mDisplay);
        mB.attachToDisplay(&mDisplay);
        mProtocol.clear();
    }

    void press(int key) { mDisplay.onKey(key, GLFW_PRESS); }
    void release(int key) { mDisplay.onKey(key, GLFW_RELEASE); }

    /** The protocol since the last call. */
    Protocol told() { return std::exchange(mProtocol, {}); }

    Protocol mProtocol;
    Recorder mA{"A", mProtocol};
    Recorder mB{"B", mProtocol};
};

} // namespace

TEST_F(Events, InputReachesTheListenerAddedLastFirst)
{
    press(GLFW_KEY_F1);
    mDisplay.onKey(GLFW_KEY_F1, GLFW_REPEAT);
    release(GLFW_KEY_F1);
    mDisplay.onChar('x', GLFW_PRESS);
    mDisplay.onChar('x', GLFW_RELEASE);
    mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_RIGHT, GLFW_PRESS);
    mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_RIGHT, GLFW_RELEASE);
    mDisplay.onMouseMove(3.0f, 4.0f);
    mDisplay.onMouseWheel(1.0f);
    EXPECT_EQ(told(), (Protocol{"B keydown", "A keydown", "B keydown", "A keydown", "B keyup",
                                "A keyup", "B chardown", "A chardown", "B charup", "A charup",
                                "B mousedown", "A mousedown", "B mouseup", "A mouseup",
                                "B mousemove", "A mousemove", "B mousewheel", "A mousewheel"}));
}

TEST_F(Events, ABlockedKeyGoesNoFurtherAndDoesNothingByItself)
{
    mB.answer("keydown", Listener::BLOCK);
    mB.answer("keyup", Listener::BLOCK);
    press(GLFW_KEY_ESCAPE);
    release(GLFW_KEY_ESCAPE);
    press(GLFW_KEY_LEFT_ALT);
    press(GLFW_KEY_ENTER);
    release(GLFW_KEY_ENTER);
    EXPECT_EQ(told(), (Protocol{"B keydown", "B keyup", "B keydown", "B keydown", "B keyup"}));
    EXPECT_FALSE(mDisplay.getWindowMode().fullscreen);
    EXPECT_EQ(countLogged("log", "DisplayGLFW - "), 0);
    EXPECT_TRUE(mDisplay.update());
}

TEST_F(Events, EscapeAsksEveryListenerAndEndsTheNextUpdateUnlessOneRefuses)
{
    press(GLFW_KEY_ESCAPE);
    told();
    release(GLFW_KEY_ESCAPE);
    EXPECT_EQ(told(), (Protocol{"B keyup", "A keyup", "B quit", "A quit"}));
    EXPECT_EQ(countLogged("log", "DisplayGLFW - ESC"), 1);
    EXPECT_FALSE(mDisplay.update());
    EXPECT_TRUE(mDisplay.update()) << "a quit is granted once";

    mB.answer("quit", Listener::BLOCK);
    told();
    release(GLFW_KEY_ESCAPE);
    EXPECT_EQ(told(), (Protocol{"B keyup", "A keyup", "B quit", "A quit"}));
    EXPECT_TRUE(mDisplay.update()) << "one refusal is enough";
}

TEST_F(Events, TheWindowsCloseButtonAsksAndNeverClosesByItself)
{
    EXPECT_FALSE(mDisplay.onWindowClose());
    EXPECT_EQ(told(), (Protocol{"B quit", "A quit"}));
    EXPECT_FALSE(mDisplay.update());
    mDisplay.close();
    EXPECT_TRUE(mDisplay.onWindowClose());
}

TEST_F(Events, AnswersStopDeliveryAndEndTheProgram)
{
    struct Row {
        int action;
        bool stops;
        bool quits;
    };
    for (const auto& [action, stops, quits] : {
             Row{Listener::WHATEVER,               false, false},
             Row{Listener::BLOCK,                  true,  false},
             Row{Listener::QUIT,                   false, true },
             Row{Listener::DIRTY,                  false, false},
             Row{Listener::QUIT | Listener::DIRTY, false, true },
             Row{Listener::BLOCK | Listener::QUIT, true,  false},
    }) {
        SCOPED_TRACE(action);
        told();
        mB.answer("keydown", action);
        press(GLFW_KEY_F1);
        const Protocol protocol = told();
        EXPECT_EQ(protocol.back() == "A keydown", !stops);
        EXPECT_EQ(std::ranges::count(protocol, "A quit"), quits ? 1 : 0);
        EXPECT_EQ(mDisplay.update(), !quits);
    }
}

TEST_F(Events, NothingIsDeliveredWithoutAWindow)
{
    mDisplay.close();
    press(GLFW_KEY_F1);
    mDisplay.onChar('x', GLFW_PRESS);
    mDisplay.onMouseButton(0, GLFW_PRESS);
    mDisplay.onMouseMove(1.0f, 1.0f);
    mDisplay.onMouseWheel(1.0f);
    mDisplay.onWindowSize(1, 1);
    EXPECT_EQ(told(), Protocol{});
}

TEST_F(Events, AListenerMayDestroyTheOneThatIsNext)
{
    auto victim = std::make_unique<Recorder>("victim", mProtocol);
    victim->attachToDisplay(&mDisplay);
    struct Killer : Listener {
        std::function<void()> mKill;
        int onKeyDown(const display::KeyEvent&) override
        {
            mKill();
            return WHATEVER;
        }
    } killer;
    killer.mKill = [&] { victim.reset(); };
    killer.attachToDisplay(&mDisplay);
    told();
    press(GLFW_KEY_F1);
    EXPECT_EQ(told(), (Protocol{"B keydown", "A keydown"}));
}

TEST_F(Events, ModifiersCountFromTheirOwnPressOn)
{
    press(GLFW_KEY_LEFT_SHIFT);
    EXPECT_EQ(mA.mKey.control, display::KEYMOD_LSHIFT);
    press(GLFW_KEY_RIGHT_CONTROL);
    press(GLFW_KEY_RIGHT_ALT);
    mDisplay.onMouseMove(1.0f, 1.0f);
    EXPECT_EQ(mA.mMove.control,
              display::KEYMOD_LSHIFT | display::KEYMOD_RCTRL | display::KEYMOD_RALT);
    EXPECT_TRUE(mA.mMove.shift() && mA.mMove.ctrl() && mA.mMove.alt());
    EXPECT_FALSE(mA.mMove.rightShift() || mA.mMove.leftCtrl() || mA.mMove.leftAlt());
    release(GLFW_KEY_LEFT_SHIFT);
    EXPECT_FALSE(mA.mKey.shift());
}

TEST_F(Events, ModifiersFollowTheKeyboardWhenAnotherWindowHadTheFocus)
{
    const auto control = [this] {
        mDisplay.onMouseMove(1.0f, 1.0f);
        return mA.mMove.control;
    };
    press(GLFW_KEY_RIGHT_ALT);
    mDisplay.onModifiers(GLFW_MOD_ALT);
    EXPECT_EQ(control(), display::KEYMOD_RALT) << "known already";
    mDisplay.onModifiers(GLFW_MOD_SHIFT);
    EXPECT_EQ(control(), display::KEYMOD_LSHIFT) << "one released, another pressed elsewhere";
    mDisplay.onModifiers(0);
    EXPECT_EQ(control(), display::KEYMOD_NONE);
}

TEST_F(Events, MouseMotionCarriesTheWayBack)
{
    mDisplay.onMouseMove(16.0f, 12.0f);
    mDisplay.onMouseMove(32.0f, 6.0f);
    EXPECT_EQ(mA.mMove.mousePos, (mathbase::Vector2f{32.0f, 6.0f}));
    EXPECT_EQ(mA.mMove.mousePosUnit, (mathbase::Vector2f{0.5f, 0.125f}));
    EXPECT_EQ(mA.mMove.mouseDelta, (mathbase::Vector2f{-16.0f, 6.0f}));
    EXPECT_EQ(mA.mMove.mouseDeltaWheel, 0.0f);

    mDisplay.onMouseWheel(2.0f);
    mDisplay.onMouseWheel(-1.0f);
    EXPECT_EQ(mA.mMove.mouseWheel, -1.0f);
    EXPECT_EQ(mA.mMove.mouseDeltaWheel, -3.0f);
    EXPECT_EQ(mA.mMove.mouseDelta, (mathbase::Vector2f{0.0f, 0.0f}));
    EXPECT_EQ(mDisplay.getMousePosition(), (mathbase::Vector3f{32.0f, 6.0f, -1.0f}));
}

TEST_F(Events, ButtonsBeyondTheThirdAreIgnored)
{
    mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_MIDDLE, GLFW_PRESS);
    EXPECT_EQ(mA.mButton.button, display::MOUSE_MIDDLE);
    told();
    mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_4, GLFW_PRESS);
    EXPECT_EQ(told(), Protocol{});
}

TEST_F(Events, AResizeByTheUserIsToldInDrawingOrder)
{
    mDisplay.setActiveResolution(32, 24);
    mDisplay.onWindowSize(90, 70);
    EXPECT_EQ(told(), (Protocol{"A resize 90x70", "B resize 90x70"}));
    EXPECT_EQ(mDisplay.getWindowMode().activeWidth, 90);
    EXPECT_EQ(mDisplay.getWindowMode().activeHeight, 70);
}

TEST(DoubleClick, IsTheSecondOfTwoQuickClicksWithoutMotion)
{
    // c: left click, r: right click, m: the mouse moves, '.': a tenth of a second passes.
    // Expected for each left click: s for a single one, d for a double one.
    const std::pair<const char*, const char*> cases[] = {
        {"c",                "s"   },
        {"c.....c",          "sd"  },
        {"c.......c",        "sd"  },
        {"c.........c",      "ss"  },
        {"c..m..c",          "ss"  },
        {"c..c..c",          "sds" },
        {"c..c..c..c",       "sdsd"},
        {"c..........c...c", "ssd" },
        {"c.r.c",            "sd"  },
    };
    DisplayGLFW display;
    display::WindowMode mode = smallMode();
    mode.fpsMode = display::WindowMode::FPS_DELTA;
    mode.fps = 10.0f;
    display.open(mode);
    display.update();
    Protocol protocol;
    Recorder recorder{"it", protocol};
    recorder.attachToDisplay(&display);

    for (const auto& [steps, expected] : cases) {
        std::string seen;
        for (const char step : "m.........." + std::string{steps}) {
            if (step == '.')
                display.update();
            else if (step == 'm')
                display.onMouseMove(display.getMousePosition().x + 1.0f, 0.0f);
            else
                display.onMouseButton(
                    step == 'c' ? GLFW_MOUSE_BUTTON_LEFT : GLFW_MOUSE_BUTTON_RIGHT, GLFW_PRESS);
            if (step == 'c')
                seen += recorder.mButton.doubleClick ? 'd' : 's';
        }
        EXPECT_EQ(seen, expected) << steps;
    }
}

TEST_F(Events, KeysOfTheLibraryHaveTheirOwnKeys)
{
    // clang-format off
    const std::pair<int, int> cases[] = {
        {GLFW_KEY_TAB, display::KEY_TAB}, {GLFW_KEY_BACKSPACE, display::KEY_BACKSPACE},
        {GLFW_KEY_INSERT, 293}, {GLFW_KEY_DELETE, 294}, {GLFW_KEY_UP, 283}, {GLFW_KEY_DOWN, 284},
        {GLFW_KEY_LEFT, 285}, {GLFW_KEY_RIGHT, 286}, {GLFW_KEY_PAGE_UP, 295},
        {GLFW_KEY_PAGE_DOWN, 296}, {GLFW_KEY_HOME, 297}, {GLFW_KEY_END, 298}, {GLFW_KEY_F1, 258},
        {GLFW_KEY_F25, 282}, {GLFW_KEY_KP_0, 299}, {GLFW_KEY_KP_9, 308},
        {GLFW_KEY_KP_DECIMAL, 313}, {GLFW_KEY_KP_EQUAL, 314}, {GLFW_KEY_KP_ENTER, 315},
        {GLFW_KEY_SPACE, display::KEY_SPACE}, {GLFW_KEY_A, display::KEY_a},
        {GLFW_KEY_COMMA, display::KEY_COMMA}, {GLFW_KEY_CAPS_LOCK, -1}, {GLFW_KEY_UNKNOWN, -1},
    };
    // clang-format on
    for (const auto& [libraryKey, key] : cases) {
        press(libraryKey);
        EXPECT_EQ(mA.mKey.key, key) << libraryKey;
        release(libraryKey);
    }
}

/** Input sent to the window by the screen's server, as a user would give it; A looks on. */
class RealInput : public Events {
protected:
    RealInput()
    {
        mB.attachToDisplay(nullptr);
        display::WindowMode mode = smallMode();
        mode.title = mTitle;
        mDisplay.open(mode);
        told();
    }

    /** Sends input and runs frames until `expected` keys, characters and turns of the wheel were
     * told. */
    Protocol sent(const std::string& input, std::ptrdiff_t expected)
    {
        const auto isInput = [](const std::string& line) {
            return line.starts_with("A key") || line.starts_with("A char") ||
                   line.starts_with("A mousewheel");
        };
        EXPECT_EQ(std::system(("xdotool search --sync --name '^" + mTitle + "$' " + input).c_str()),
                  0);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{10};
        while (std::ranges::count_if(mProtocol, isInput) < expected &&
               std::chrono::steady_clock::now() < deadline)
            mDisplay.update();
        Protocol seen = told();
        std::erase_if(seen, [&](const std::string& line) { return !isInput(line); });
        return seen;
    }

    const std::string mTitle = "keys " + std::to_string(getpid());
};

TEST_F(RealInput, ACharacterIsReleasedWithTheKeyThatTypedIt)
{
    EXPECT_EQ(sent("key --window %1 e", 4),
              (Protocol{"A keydown", "A chardown", "A keyup", "A charup"}));
    EXPECT_EQ(mA.mKey.key, display::KEY_e);
    EXPECT_EQ(mA.mChar.key, 'e');
}

TEST_F(RealInput, OnlyTurningTheWheelIsAWheelEvent)
{
    const std::string sidewaysThenUp =
        "click --window %1 6 click --window %1 7 click --window %1 4";
    EXPECT_EQ(sent(sidewaysThenUp, 1), Protocol{"A mousewheel"});
    EXPECT_EQ(mA.mMove.mouseWheel, 1.0f);
}

TEST_F(Events, AJoystickThatIsNotThereReadsAsZero)
{
    for (const int index : {-1, display::Joystick::MOST_JOYSTICKS}) {
        display::Joystick state;
        state.buttons.fill(true);
        state.axes.fill(1.0f);
        EXPECT_FALSE(mDisplay.readJoystick(index, state));
        EXPECT_EQ(state.buttons, display::Joystick{}.buttons);
        EXPECT_EQ(state.axes, display::Joystick{}.axes);
    }
}

} // namespace zavex::test
