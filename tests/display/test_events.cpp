#include "display/dis_joystick.h"
#include "recorder.h"
#include "support/gl_display.h"

#include <GLFW/glfw3.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <utility>

#include <unistd.h>

namespace zavex::display {
namespace {

/** Two listeners on an open display: "A" was added first, "B" sees input first. */
class Events : public test::GlDisplayTest {
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

TEST_F(Events, InputReachesTheListenerAddedLastFirstAndNoneWithoutAWindow)
{
    const auto giveAllInput = [this] {
        press(GLFW_KEY_F1);
        mDisplay.onKey(GLFW_KEY_F1, GLFW_REPEAT);
        release(GLFW_KEY_F1);
        for (const int action : {GLFW_PRESS, GLFW_RELEASE}) {
            mDisplay.onChar('x', action);
            mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_RIGHT, action);
        }
        mDisplay.onMouseMove(3.0f, 4.0f);
        mDisplay.onMouseWheel(1.0f);
    };
    giveAllInput();
    EXPECT_EQ(told(), (Protocol{"B keydown", "A keydown", "B keydown", "A keydown", "B keyup",
                                "A keyup", "B chardown", "A chardown", "B mousedown", "A mousedown",
                                "B charup", "A charup", "B mouseup", "A mouseup", "B mousemove",
                                "A mousemove", "B mousewheel", "A mousewheel"}));
    mDisplay.close();
    giveAllInput();
    mDisplay.onWindowSize(1, 1);
    EXPECT_EQ(told(), Protocol{});
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
    EXPECT_EQ(test::countLogged("log", "DisplayGLFW - "), 0);
    EXPECT_TRUE(mDisplay.update());
}

TEST_F(Events, EscapeAsksEveryListenerAndEndsTheNextUpdateUnlessOneRefuses)
{
    press(GLFW_KEY_ESCAPE);
    told();
    release(GLFW_KEY_ESCAPE);
    EXPECT_EQ(told(), (Protocol{"B keyup", "A keyup", "B quit", "A quit"}));
    EXPECT_EQ(test::countLogged("log", "DisplayGLFW - ESC"), 1);
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
    for (const int action :
         {Listener::WHATEVER + 0, Listener::BLOCK + 0, Listener::QUIT + 0, Listener::DIRTY + 0,
          Listener::QUIT | Listener::DIRTY, Listener::BLOCK | Listener::QUIT}) {
        SCOPED_TRACE(action);
        told();
        mB.answer("keydown", action);
        press(GLFW_KEY_F1);
        const Protocol protocol = told();
        const bool stops = (action & Listener::BLOCK) != 0;
        const bool quits = (action & Listener::QUIT) != 0 && !stops;
        EXPECT_EQ(protocol.back() != "A keydown", stops);
        EXPECT_EQ(std::ranges::count(protocol, "A quit"), quits ? 1 : 0);
        EXPECT_EQ(mDisplay.update(), !quits);
    }
}

TEST_F(Events, AListenerMayDestroyTheOneThatIsNext)
{
    auto victim = std::make_unique<Recorder>("victim", mProtocol);
    victim->attachToDisplay(&mDisplay);
    struct Killer : Listener {
        std::unique_ptr<Recorder>& mVictim;
        explicit Killer(std::unique_ptr<Recorder>& victim) : mVictim(victim) {}
        int onKeyDown(const KeyEvent&) override { return mVictim.reset(), WHATEVER; }
    } killer(victim);
    killer.attachToDisplay(&mDisplay);
    told();
    press(GLFW_KEY_F1);
    EXPECT_EQ(told(), (Protocol{"B keydown", "A keydown"}));
}

TEST_F(Events, ModifiersCountFromTheirOwnPressOnAndFollowTheKeyboardElsewhere)
{
    press(GLFW_KEY_LEFT_SHIFT);
    EXPECT_EQ(mA.mKey.control, KEYMOD_LSHIFT);
    press(GLFW_KEY_RIGHT_CONTROL);
    press(GLFW_KEY_RIGHT_ALT);
    mDisplay.onMouseMove(1.0f, 1.0f);
    EXPECT_EQ(mA.mMove.control, KEYMOD_LSHIFT | KEYMOD_RCTRL | KEYMOD_RALT);
    EXPECT_TRUE(mA.mMove.shift() && mA.mMove.ctrl() && mA.mMove.alt());
    EXPECT_FALSE(mA.mMove.rightShift() || mA.mMove.leftCtrl() || mA.mMove.leftAlt());
    release(GLFW_KEY_LEFT_SHIFT);
    release(GLFW_KEY_RIGHT_CONTROL);
    EXPECT_FALSE(mA.mKey.shift());

    const auto control = [this](int held) {
        mDisplay.onModifiers(held);
        mDisplay.onMouseMove(1.0f, 1.0f);
        return mA.mMove.control;
    };
    EXPECT_EQ(control(GLFW_MOD_ALT), KEYMOD_RALT) << "known already";
    EXPECT_EQ(control(GLFW_MOD_SHIFT), KEYMOD_LSHIFT) << "one released, another pressed elsewhere";
    EXPECT_EQ(control(0), KEYMOD_NONE);
}

TEST_F(Events, MouseMotionCarriesTheWayBackAndButtonsBeyondTheThirdAreIgnored)
{
    using mathbase::Vector2f;
    mDisplay.onMouseMove(16.0f, 12.0f);
    mDisplay.onMouseMove(32.0f, 6.0f);
    EXPECT_EQ(mA.mMove.mousePos, Vector2f(32, 6));
    EXPECT_EQ(mA.mMove.mousePosUnit, Vector2f(0.5f, 0.125f));
    EXPECT_EQ(mA.mMove.mouseDelta, Vector2f(-16, 6));
    EXPECT_EQ(mA.mMove.mouseDeltaWheel, 0.0f);
    mDisplay.onMouseWheel(2.0f);
    mDisplay.onMouseWheel(-1.0f);
    EXPECT_EQ(mA.mMove.mouseWheel, -1.0f);
    EXPECT_EQ(mA.mMove.mouseDeltaWheel, -3.0f);
    EXPECT_EQ(mA.mMove.mouseDelta, Vector2f());
    EXPECT_EQ(mDisplay.getMousePosition(), mathbase::Vector3f(32, 6, -1));

    mDisplay.onMouseButton(GLFW_MOUSE_BUTTON_MIDDLE, GLFW_PRESS);
    EXPECT_EQ(mA.mButton.button, MOUSE_MIDDLE);
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
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        {"c", "s"}, {"c.....c", "sd"}, {"c.......c", "sd"}, {"c.........c", "ss"},
        {"c..m..c", "ss"}, {"c..c..c", "sds"}, {"c..c..c..c", "sdsd"},
        {"c..........c...c", "ssd"}, {"c.r.c", "sd"},
    };
    // clang-format on
    DisplayGLFW display;
    WindowMode mode = test::smallMode();
    mode.fpsMode = WindowMode::FPS_DELTA;
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
                display.onMouseButton(step == 'c' ? 0 : 1, GLFW_PRESS);
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
        {GLFW_KEY_TAB, KEY_TAB}, {GLFW_KEY_BACKSPACE, KEY_BACKSPACE},
        {GLFW_KEY_INSERT, 293}, {GLFW_KEY_DELETE, 294}, {GLFW_KEY_UP, 283}, {GLFW_KEY_DOWN, 284},
        {GLFW_KEY_LEFT, 285}, {GLFW_KEY_RIGHT, 286}, {GLFW_KEY_PAGE_UP, 295},
        {GLFW_KEY_PAGE_DOWN, 296}, {GLFW_KEY_HOME, 297}, {GLFW_KEY_END, 298}, {GLFW_KEY_F1, 258},
        {GLFW_KEY_F25, 282}, {GLFW_KEY_KP_0, 299}, {GLFW_KEY_KP_9, 308},
        {GLFW_KEY_KP_DECIMAL, 313}, {GLFW_KEY_KP_EQUAL, 314}, {GLFW_KEY_KP_ENTER, 315},
        {GLFW_KEY_SPACE, KEY_SPACE}, {GLFW_KEY_A, KEY_a},
        {GLFW_KEY_COMMA, KEY_COMMA}, {GLFW_KEY_CAPS_LOCK, -1}, {GLFW_KEY_UNKNOWN, -1},
    };
    // clang-format on
    for (const auto& [libraryKey, key] : cases) {
        press(libraryKey);
        EXPECT_EQ(mA.mKey.key, key) << libraryKey;
        release(libraryKey);
    }
}

/** Sent to the window by the screen's server, as a user would give it; A looks on. */
TEST_F(Events, ACharacterIsReleasedWithItsKeyAndTheWheelTurnsOnlyUpAndDown)
{
    mB.attachToDisplay(nullptr);
    WindowMode mode = test::smallMode();
    mode.title = "keys " + std::to_string(getpid());
    mDisplay.open(mode);
    const auto isOther = [](const std::string& line) {
        return !line.starts_with("A key") && !line.starts_with("A char") &&
               !line.starts_with("A mousewheel");
    };
    // Runs frames until as many keys, characters and turns of the wheel were told.
    const auto sent = [&](const std::string& input, std::size_t expected) {
        const std::string window = "xdotool search --sync --name '^" + mode.title + "$' ";
        EXPECT_EQ(std::system((window + input).c_str()), 0);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{10};
        Protocol seen;
        do {
            mDisplay.update();
            std::ranges::remove_copy_if(told(), std::back_inserter(seen), isOther);
        } while (seen.size() < expected && std::chrono::steady_clock::now() < deadline);
        return seen;
    };
    EXPECT_EQ(sent("key --window %1 e", 4),
              (Protocol{"A keydown", "A chardown", "A keyup", "A charup"}));
    EXPECT_EQ(mA.mKey.key, KEY_e);
    EXPECT_EQ(mA.mChar.key, 'e');
    EXPECT_EQ(sent("click --window %1 6 click --window %1 7 click --window %1 4", 1),
              Protocol{"A mousewheel"});
    EXPECT_EQ(mA.mMove.mouseWheel, 1.0f);
}

TEST_F(Events, AJoystickThatIsNotThereReadsAsZero)
{
    for (const int index : {-1, Joystick::MOST_JOYSTICKS}) {
        Joystick state;
        state.buttons.fill(true);
        state.axes.fill(1.0f);
        EXPECT_FALSE(mDisplay.readJoystick(index, state));
        EXPECT_EQ(state.buttons, Joystick{}.buttons);
        EXPECT_EQ(state.axes, Joystick{}.axes);
    }
}

} // namespace
} // namespace zavex::display
