#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "recorder.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace zavex::test {

using display::DisplayGL;
using display::DisplayGLFW;
using display::DisplayObsolete;
using display::Listener;
using display::WindowMode;

namespace {

/** A quarter red, a quarter green, the rest of the window white. */
void drawFlag()
{
    DisplayObsolete::setProject(0.0f, 2.0f, 0.0f, 2.0f);
    DisplayObsolete::setColor(1.0f);
    DisplayObsolete::drawBox(0.0f, 0.0f, 2.0f, 2.0f, DisplayObsolete::SOLID);
    DisplayObsolete::setColor(1.0f, 0.0f, 0.0f, 1.0f);
    DisplayObsolete::drawBox(0.0f, 1.0f, 1.0f, 2.0f, DisplayObsolete::SOLID);
    DisplayObsolete::setColor(0.0f, 1.0f, 0.0f, 1.0f);
    DisplayObsolete::drawBox(1.0f, 0.0f, 2.0f, 1.0f, DisplayObsolete::SOLID);
}

GLint viewport(int index)
{
    GLint box[4] = {};
    glGetIntegerv(GL_VIEWPORT, box);
    return box[index];
}

} // namespace

TEST(DisplayLife, OnlyOneDisplayLivesAtATime)
{
    const std::unique_ptr<DisplayGL> first{DisplayGL::create()};
    EXPECT_EQ(thrownMessage([] { const DisplayGLFW second; }),
              "Can not open more than one GLFW-device");
    EXPECT_EQ(thrownMessage([] { const DisplayGLFW third; }),
              "Can not open more than one GLFW-device")
        << "the refused one must not have taken the first one's place";
}

TEST(DisplayLife, WithoutAScreenTheConstructorFailsAndTheNextDisplayMaySucceed)
{
    const std::string screen{std::getenv("DISPLAY") ? std::getenv("DISPLAY") : ""};
    setenv("DISPLAY", ":4242", 1);
    EXPECT_EQ(thrownMessage([] { const DisplayGLFW display; }),
              "DisplayGLFW: Could not initialize GLFW!");
    setenv("DISPLAY", screen.c_str(), 1);
    DisplayGLFW display;
    EXPECT_NO_THROW(display.open(smallMode()));
}

TEST(DisplayLife, CallerErrorsAreNamed)
{
    DisplayGLFW display;
    EXPECT_EQ(thrownMessage([&] { display.close(); }), "mOpened");
    EXPECT_EQ(thrownMessage([&] { display.addListener(nullptr); }), "listener!=0");
    EXPECT_EQ(thrownMessage([&] { display.open(smallMode(0, 0)); }),
              "DisplayGLFW: Can not open a window of 0 x 0 pixels, both must be positive");
    EXPECT_EQ(thrownMessage([&] { display.open(smallMode(64, -1)); }),
              "DisplayGLFW: Can not open a window of 64 x -1 pixels, both must be positive");
    EXPECT_FALSE(display.update());
}

TEST(DisplayLife, OpensClosesAndOpensAgain)
{
    clearLog();
    Protocol protocol;
    DisplayGLFW display;
    Recorder early{"early", protocol};
    early.attachToDisplay(&display);
    EXPECT_TRUE(protocol.empty());

    display.open(smallMode());
    EXPECT_EQ(protocol, Protocol{"early resize 64x48"});
    Recorder late{"late", protocol};
    late.attachToDisplay(&display);
    EXPECT_EQ(protocol.back(), "late resize 64x48");
    EXPECT_TRUE(display.supportsShaders());
    EXPECT_TRUE(display.supportsFBO());
    EXPECT_FALSE(display.hasExtension(""));
    EXPECT_GE(display.maxNumVertexAttrib(), 8);
    EXPECT_EQ(countLogged("info", "Opened window of resolution 64x48 (glfw version: 3."), 1);
    EXPECT_EQ(countLogged("info", "GL_SHADING_LANGUAGE_VERSION: '"), 1);

    display.close();
    EXPECT_EQ(countLogged("info", "closing display"), 1);
    EXPECT_FALSE(display.update());

    protocol.clear();
    display.open(smallMode(80, 60));
    EXPECT_EQ(protocol, (Protocol{"early resize 80x60", "late resize 80x60"}));
    EXPECT_TRUE(display.update());
}

TEST(DisplayLife, OpeningAnOpenWindowResizesIt)
{
    DisplayGLFW display;
    display.open(smallMode());
    display.open(smallMode(100, 80));
    EXPECT_EQ(display.getWindowMode().width, 100);
    display.setActiveResolution(50, 40);
    glfwGetWindowSize(glfwGetCurrentContext(), nullptr, nullptr); // waits for the screen's server
    EXPECT_TRUE(display.update()) << "the driver learns of the size at the end of a frame";
    EXPECT_EQ(display.getWindowMode().activeWidth, 50) << "the size was told before";
    display.setActiveResolution(-1, -1);
    const Picture picture = pictureOf(display, drawFlag);
    EXPECT_EQ(pixelAt(picture, 5, 5), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 95, 75), 0x00ff00u);
}

TEST(DisplayLife, ListsTheScreensModes)
{
    DisplayGLFW display;
    std::vector<WindowMode> modes(3);
    display.getModes(modes);
    ASSERT_FALSE(modes.empty());
    EXPECT_GT(modes.front().width, 0);
    EXPECT_GT(modes.front().height, 0);
    EXPECT_EQ(modes.front().title, "");
    EXPECT_EQ(modes.front().activeWidth, 800);
}

class Frame : public GlDisplayTest {};

TEST_F(Frame, ListenersDrawInTheOrderInWhichTheyWereAdded)
{
    Protocol protocol;
    Recorder first{"first", protocol};
    Recorder second{"second", protocol};
    first.attachToDisplay(&mDisplay);
    second.attachToDisplay(&mDisplay);
    protocol.clear();
    EXPECT_TRUE(mDisplay.update());
    EXPECT_EQ(protocol, (Protocol{"first draw", "second draw"}));

    first.attachToDisplay(&mDisplay);
    protocol.clear();
    mDisplay.update();
    EXPECT_EQ(protocol, (Protocol{"second draw", "first draw"}));
}

TEST_F(Frame, ListenersMayComeAndGoWhileTheyAreWalked)
{
    Protocol protocol;
    auto leaver = std::make_unique<Recorder>("leaver", protocol);
    Recorder stayer{"stayer", protocol};
    Recorder newcomer{"newcomer", protocol};
    struct Changer : Listener {
        std::function<void()> mChange;
        void onDraw() override { mChange(); }
    } changer;
    changer.mChange = [&] {
        leaver.reset();
        if (newcomer.display == nullptr)
            newcomer.attachToDisplay(&mDisplay);
    };
    changer.attachToDisplay(&mDisplay);
    leaver->attachToDisplay(&mDisplay);
    stayer.attachToDisplay(&mDisplay);

    protocol.clear();
    mDisplay.update();
    EXPECT_EQ(protocol, (Protocol{"newcomer resize 64x48", "stayer draw"}));
    protocol.clear();
    mDisplay.update();
    EXPECT_EQ(protocol, (Protocol{"stayer draw", "newcomer draw"}));
}

TEST_F(Frame, AListenerMayCloseTheDisplay)
{
    EXPECT_FALSE(drawFrame(mDisplay, [this] { mDisplay.close(); }));
    mDisplay.open(smallMode());
    EXPECT_TRUE(mDisplay.update());
}

TEST_F(Frame, WhatAListenerThrowsInsideTheLibraryComesOutOfTheUpdate)
{
    struct Thrower : Listener {
        void onResize(int, int) override
        {
            if (display != nullptr && mThrows)
                throw Exception{"from a listener"};
        }
        bool mThrows = false;
    } thrower;
    thrower.attachToDisplay(&mDisplay);
    mDisplay.update();
    thrower.mThrows = true;
    GLFWwindow* const window = glfwGetCurrentContext();
    glfwSetWindowSize(window, 70, 50);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds{10};
    std::string message;
    do
        message = thrownMessage([&] { mDisplay.update(); });
    while (message != "from a listener" && std::chrono::steady_clock::now() < deadline);
    EXPECT_EQ(message, "from a listener");
    EXPECT_EQ(mDisplay.getWindowMode().width, 70);
}

TEST_F(Frame, ScreenShotsBeginWithTheTopRow)
{
    const Picture picture = pictureOf(drawFlag);
    EXPECT_EQ(pixelAt(picture, 0, 0), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 31, 23), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 32, 23), 0xffffffu);
    EXPECT_EQ(pixelAt(picture, 32, 24), 0x00ff00u);
    EXPECT_EQ(pixelAt(picture, 63, 47), 0x00ff00u);

    am::Image image(new am::ImageObject);
    image->resize(64, 48);
    drawFrame(mDisplay, [&] {
        drawFlag();
        mDisplay.getScreenShot(image);
    });
    const auto pixel = [&](int index) {
        const std::uint8_t* const first = image->getData() + index * 4;
        return std::vector<int>(first, first + 4);
    };
    EXPECT_EQ(pixel(0), (std::vector<int>{0, 0, 255, 255}));
    EXPECT_EQ(pixel(64 * 48 - 1), (std::vector<int>{0, 255, 0, 255}));
}

TEST_F(Frame, ScreenShotsNeedAnEvenHeightAndAnImageOfTheWindowsSize)
{
    am::Image image;
    EXPECT_EQ(thrownMessage([&] { mDisplay.getScreenShot(image); }), "image.isNull()==false");
    image.assign(new am::ImageObject);
    image->resize(64, 47);
    EXPECT_EQ(thrownMessage([&] { mDisplay.getScreenShot(image); }),
              "image->getHeight()==mWindowMode.height");
    image->resize(63, 48);
    EXPECT_EQ(thrownMessage([&] { mDisplay.getScreenShot(image); }),
              "image->getWidth()==mWindowMode.width");

    mDisplay.close();
    mDisplay.open(smallMode(64, 47));
    EXPECT_TRUE(mDisplay.update());
    EXPECT_EQ(thrownMessage([&] { mDisplay.getScreenShotRGB24(nullptr); }),
              "(mWindowMode.height & 1) == 0");
    EXPECT_EQ(thrownMessage([&] { mDisplay.getScreenShot(image); }),
              "(mWindowMode.height & 1) == 0");
}

TEST_F(Frame, ASmallerActiveAreaIsCentredAndNothingIsDrawnOutside)
{
    mDisplay.close();
    mDisplay.open(smallMode(800, 600));
    mDisplay.setActiveResolution(640, 480);
    const Picture picture = pictureOf([&] {
        EXPECT_EQ(viewport(0), 80);
        EXPECT_EQ(viewport(1), 60);
        EXPECT_EQ(viewport(2), 640);
        EXPECT_EQ(viewport(3), 480);
        DisplayObsolete::clear({1.0f, 1.0f, 1.0f, 1.0f}, 1.0f);
        drawFlag();
    });
    EXPECT_EQ(pixelAt(picture, 79, 300), 0x000000u);
    EXPECT_EQ(pixelAt(picture, 80, 60), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 719, 539), 0x00ff00u);
    EXPECT_EQ(pixelAt(picture, 720, 539), 0x000000u);
    EXPECT_EQ(pixelAt(picture, 400, 540), 0x000000u);

    mDisplay.setActiveResolution(-1, -1);
    EXPECT_EQ(mDisplay.getWindowMode().activeWidth, 800);
    EXPECT_EQ(mDisplay.getWindowMode().activeHeight, 600);
}

TEST_F(Frame, TheFirstThreeFramesStartBlack)
{
    const auto untouched = [this] { return pixelAt(pictureOf([] {}), 10, 10); };
    for (int frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(untouched(), 0x000000u) << frame;
        drawFrame(mDisplay, drawFlag);
        if (frame < 2)
            mDisplay.setActiveResolution(-1, -1);
    }
}

TEST_F(Frame, StatesAreResetBeforeDrawing)
{
    const auto spoil = [] {
        DisplayObsolete::setProject(0.0f, 1.0f, 0.0f, 1.0f);
        glViewport(1, 2, 3, 4);
        glEnable(GL_LIGHTING);
        glClearDepth(0.5);
        glMatrixMode(GL_TEXTURE);
        glScalef(2.0f, 2.0f, 2.0f);
        glMatrixMode(GL_MODELVIEW);
    };
    drawFrame(mDisplay, spoil);
    drawFrame(mDisplay, [] {
        GLfloat matrix[16] = {};
        glGetFloatv(GL_TEXTURE_MATRIX, matrix);
        EXPECT_EQ(matrix[0], 1.0f);
        glGetFloatv(GL_PROJECTION_MATRIX, matrix);
        EXPECT_NEAR(matrix[5], 2.4142135f, 1e-5f);
        EXPECT_NEAR(matrix[0], 2.4142135f * 48.0f / 64.0f, 1e-5f);
        EXPECT_EQ(viewport(2), 64);
        EXPECT_EQ(glIsEnabled(GL_LIGHTING), GL_FALSE);
        GLfloat depth = 0.0f;
        glGetFloatv(GL_DEPTH_CLEAR_VALUE, &depth);
        EXPECT_EQ(depth, 1.0f);
        GLint units = 0;
        glGetIntegerv(GL_ACTIVE_TEXTURE, &units);
        EXPECT_EQ(units, GL_TEXTURE0);
        GLint pushed = 0;
        glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &pushed);
        EXPECT_EQ(pushed, 1);
    });
}

TEST_F(Frame, TenSwitchesToFullScreenAndBackLeaveThePicture)
{
    const Picture before = pictureOf(drawFlag);
    const auto press = [this](int key, int action) { mDisplay.onKey(key, action); };
    for (int toggle = 0; toggle < 10; ++toggle) {
        press(GLFW_KEY_LEFT_ALT, GLFW_PRESS);
        press(GLFW_KEY_ENTER, GLFW_PRESS);
        EXPECT_EQ(mDisplay.getWindowMode().fullscreen, toggle % 2 == 1);
        press(GLFW_KEY_ENTER, GLFW_RELEASE);
        press(GLFW_KEY_LEFT_ALT, GLFW_RELEASE);
        EXPECT_EQ(mDisplay.getWindowMode().fullscreen, toggle % 2 == 0);
        EXPECT_TRUE(drawFrame(mDisplay, drawFlag));
    }
    EXPECT_EQ(countLogged("log", "DisplayGLFW - ALT+ENTER"), 10);
    const Picture after = pictureOf(drawFlag);
    EXPECT_TRUE(isSamePicture(after, before, {0.0, 0}));
}

TEST_F(Frame, ASteadyFrameAllocatesNothing)
{
    struct Painter : Listener {
        void onDraw() override { drawFlag(); }
    } painter;
    painter.attachToDisplay(&mDisplay);
    for (int frame = 0; frame < 5; ++frame)
        mDisplay.update();

    const AllocationCounter allocations;
    for (int frame = 0; frame < 20; ++frame)
        mDisplay.update();
    EXPECT_EQ(allocations.count(), 0u);
}

namespace {

/** A display in one pacing mode. */
class Pacing : public testing::Test {
protected:
    void open(WindowMode::FpsMode fpsMode, float fps)
    {
        WindowMode mode = smallMode();
        mode.fpsMode = fpsMode;
        mode.fps = fps;
        mDisplay.open(mode);
        mRecorder.attachToDisplay(&mDisplay);
        mProtocol.clear();
    }

    Protocol mProtocol;
    DisplayGLFW mDisplay;
    Recorder mRecorder{"painter", mProtocol};
};

} // namespace

TEST_F(Pacing, DeltaStepsTheClockByOneFrameExactly)
{
    open(WindowMode::FPS_DELTA, 25.0f);
    float expected = 0.0f;
    for (int frame = 0; frame < 50; ++frame) {
        EXPECT_EQ(mDisplay.getTime(), expected) << frame;
        EXPECT_NEAR(mDisplay.getTime(), static_cast<float>(frame) * 0.04f, 1e-5f);
        mDisplay.update();
        expected += 0.04f;
    }
}

TEST_F(Pacing, FixedLetsNoFrameBeEarly)
{
    open(WindowMode::FPS_FIXED, 50.0f);
    const float start = mDisplay.getTime();
    mDisplay.update();
    for (int frame = 1; frame <= 10; ++frame) {
        mDisplay.update();
        EXPECT_GE(mDisplay.getTime() - start, static_cast<float>(frame) * 0.02f - 1e-4f);
    }
}

TEST_F(Pacing, EventDrawsOnlyWhenDirtyAndWakesUpForAQuit)
{
    open(WindowMode::FPS_EVENT, 0.0f);
    EXPECT_TRUE(mDisplay.update());
    EXPECT_EQ(mProtocol, Protocol{"painter draw"});

    // The window's own first events may ask for further drawing; an update without any draws
    // nothing.
    do {
        mProtocol.clear();
        mDisplay.setDirty(true);
        mDisplay.setDirty(false);
        EXPECT_TRUE(mDisplay.update());
    } while (!mProtocol.empty());

    mDisplay.setDirty(true);
    EXPECT_TRUE(mDisplay.update());
    EXPECT_EQ(mProtocol, Protocol{"painter draw"});
    mDisplay.shallStop(Listener::QUIT);
    EXPECT_FALSE(mDisplay.update());
}

TEST_F(Pacing, AFrameRateIsMeasuredOverASecond)
{
    open(WindowMode::FPS_DELTA, 10.0f);
    for (int frame = 0; frame < 9; ++frame)
        mDisplay.update();
    EXPECT_EQ(mDisplay.getFps(), 0.0f);
    mDisplay.update();
    mDisplay.update();
    EXPECT_NEAR(mDisplay.getFps(), 10.0f, 0.01f);
}

} // namespace zavex::test
