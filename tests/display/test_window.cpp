#include "gl_assets.h"
#include "recorder.h"

#include <GLFW/glfw3.h>

#include <array>
#include <chrono>

namespace zavex::display {
namespace {

/** A quarter red, a quarter green, the rest of the window white. */
void drawFlag()
{
    Draw::setProject(0.0f, 2.0f, 0.0f, 2.0f);
    Draw::setColor(1.0f);
    Draw::drawBox(0.0f, 0.0f, 2.0f, 2.0f, Draw::SOLID);
    Draw::setColor(1.0f, 0.0f, 0.0f, 1.0f);
    Draw::drawBox(0.0f, 1.0f, 1.0f, 2.0f, Draw::SOLID);
    Draw::setColor(0.0f, 1.0f, 0.0f, 1.0f);
    Draw::drawBox(1.0f, 0.0f, 2.0f, 1.0f, Draw::SOLID);
}

TEST(Window, OpensClosesAndOpensAgain)
{
    test::clearLog();
    Protocol protocol;
    DisplayGLFW display;
    Recorder early{"early", protocol};
    early.attachToDisplay(&display);
    EXPECT_FALSE(display.update());
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
    std::vector<WindowMode> modes(3);
    display.getModes(modes);
    EXPECT_GT(modes.at(0).width * modes.at(0).height, 0);
    EXPECT_EQ(modes.at(0).title, "");
    EXPECT_EQ(modes.at(0).activeWidth, 800);

    display.close();
    EXPECT_EQ(countLogged("info", "closing display"), 1);
    EXPECT_FALSE(display.update());
    protocol.clear();
    WindowMode fixed = smallMode(80, 60);
    fixed.canResize = false;
    display.open(fixed);
    EXPECT_EQ(glfwGetWindowAttrib(glfwGetCurrentContext(), GLFW_RESIZABLE), GLFW_FALSE);
    EXPECT_EQ(protocol, (Protocol{"early resize 80x60", "late resize 80x60"}));
    EXPECT_TRUE(display.update());
}

class Frame : public test::GlDisplayTest {
protected:
    using GlDisplayTest::GlDisplayTest;

    static std::array<GLint, 4> viewport()
    {
        std::array<GLint, 4> box{};
        glGetIntegerv(GL_VIEWPORT, box.data());
        return box;
    }

    /** What listeners were told by one frame. */
    Protocol told()
    {
        mProtocol.clear();
        mDisplay.update();
        return mProtocol;
    }

    Protocol mProtocol;
};

TEST_F(Frame, OpeningAnOpenWindowResizesIt)
{
    mDisplay.open(smallMode(100, 80));
    EXPECT_EQ(mDisplay.getWindowMode().width, 100);
    mDisplay.setActiveResolution(50, 40);
    glfwGetWindowSize(glfwGetCurrentContext(), nullptr, nullptr); // waits for the screen's server
    EXPECT_TRUE(mDisplay.update()) << "the driver learns of the size at the end of a frame";
    EXPECT_EQ(mDisplay.getWindowMode().activeWidth, 50) << "the size was told before";
    mDisplay.setActiveResolution(-1, -1);
    const Picture picture = pictureOf(drawFlag);
    EXPECT_EQ(pixelAt(picture, 5, 5), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 95, 75), 0x00ff00u);
}

TEST_F(Frame, ListenersDrawInTheOrderInWhichTheyWereAddedAndMayComeAndGoMeanwhile)
{
    struct Changer : Listener {
        std::function<void()> mChange = [] {};
        void onDraw() override { mChange(); }
    } changer;
    changer.attachToDisplay(&mDisplay);
    auto first = std::make_unique<Recorder>("first", mProtocol);
    Recorder second{"second", mProtocol};
    Recorder newcomer{"newcomer", mProtocol};
    first->attachToDisplay(&mDisplay);
    second.attachToDisplay(&mDisplay);
    EXPECT_EQ(told(), (Protocol{"first draw", "second draw"}));
    first->attachToDisplay(&mDisplay);
    EXPECT_EQ(told(), (Protocol{"second draw", "first draw"}));

    changer.mChange = [&] {
        first.reset();
        if (newcomer.display == nullptr)
            newcomer.attachToDisplay(&mDisplay);
    };
    second.attachToDisplay(&mDisplay);
    EXPECT_EQ(told(), (Protocol{"newcomer resize 64x48", "second draw"}));
    EXPECT_EQ(told(), (Protocol{"second draw", "newcomer draw"}));
    changer.mChange = [&] { mDisplay.close(); };
    EXPECT_FALSE(mDisplay.update());
    changer.mChange = [] {};
    mDisplay.open(smallMode());
    EXPECT_TRUE(mDisplay.update());
}

TEST_F(Frame, WhatAListenerThrowsInsideTheLibraryComesOutOfTheUpdate)
{
    struct Thrower : Listener {
        void onResize(int width, int) override
        {
            if (width == 70)
                throw Exception{"from a listener"};
        }
    } thrower;
    thrower.attachToDisplay(&mDisplay);
    glfwSetWindowSize(glfwGetCurrentContext(), 70, 50);
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
    am::Image image(new am::ImageObject);
    image->resize(64, 48);
    const Picture picture = pictureOf([&] {
        drawFlag();
        mDisplay.getScreenShot(image);
    });
    EXPECT_EQ(pixelAt(picture, 0, 0), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 31, 23), 0xff0000u);
    EXPECT_EQ(pixelAt(picture, 32, 23), 0xffffffu);
    EXPECT_EQ(pixelAt(picture, 32, 24), 0x00ff00u);
    EXPECT_EQ(pixelAt(picture, 63, 47), 0x00ff00u);
    const auto pixel = [&](int index) {
        const std::uint8_t* const first = image->getData() + index * 4;
        return std::vector<int>(first, first + 4);
    };
    EXPECT_EQ(pixel(0), (std::vector{0, 0, 255, 255}));
    EXPECT_EQ(pixel(64 * 48 - 1), (std::vector{0, 255, 0, 255}));
}

TEST_F(Frame, ASmallerActiveAreaIsCentredAndNothingIsDrawnOutside)
{
    mDisplay.close();
    mDisplay.open(smallMode(800, 600));
    mDisplay.setActiveResolution(640, 480);
    const Picture picture = pictureOf([&] {
        EXPECT_EQ(viewport(), (std::array{80, 60, 640, 480}));
        Draw::clear({1.0f, 1.0f, 1.0f, 1.0f}, 1.0f);
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
    for (int frame = 0; frame < 3; ++frame) {
        EXPECT_EQ(pixelAt(pictureOf([] {}), 10, 10), 0x000000u) << frame;
        drawFrame(mDisplay, drawFlag);
        if (frame < 2)
            mDisplay.setActiveResolution(-1, -1);
    }
}

TEST_F(Frame, StatesAreResetBeforeDrawing)
{
    drawFrame(mDisplay, [] {
        Draw::setProject(0.0f, 1.0f, 0.0f, 1.0f);
        glViewport(1, 2, 3, 4);
        glEnable(GL_LIGHTING);
        glClearDepth(0.5);
        glMatrixMode(GL_TEXTURE);
        glScalef(2.0f, 2.0f, 2.0f);
        glMatrixMode(GL_MODELVIEW);
    });
    drawFrame(mDisplay, [] {
        GLfloat matrix[16] = {};
        glGetFloatv(GL_TEXTURE_MATRIX, matrix);
        EXPECT_EQ(matrix[0], 1.0f);
        for (const bool isAskedFor : {false, true}) {
            glGetFloatv(GL_PROJECTION_MATRIX, matrix);
            EXPECT_NEAR(matrix[5], 2.4142135f, 1e-5f) << isAskedFor;
            EXPECT_NEAR(matrix[0], 2.4142135f * 48.0f / 64.0f, 1e-5f) << isAskedFor;
            Draw::setProject(0.0f, 1.0f, 0.0f, 1.0f);
            Draw::flush();
            Draw::setProject();
            Draw::flush();
        }
        GLfloat depth = 0.0f;
        glGetFloatv(GL_DEPTH_CLEAR_VALUE, &depth);
        EXPECT_EQ(depth, 1.0f);
        EXPECT_EQ(viewport()[2], 64);
        EXPECT_EQ(glIsEnabled(GL_LIGHTING), GL_FALSE);
        EXPECT_EQ(stateOf(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
        EXPECT_EQ(stateOf(GL_ATTRIB_STACK_DEPTH), 1);
    });
}

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

TEST_F(Pacing, DeltaStepsTheClockByOneFrameExactlyAndMeasuresItsRateOverASecond)
{
    open(WindowMode::FPS_DELTA, 10.0f);
    float expected = 0.0f;
    for (int frame = 0; frame < 50; ++frame) {
        EXPECT_EQ(mDisplay.getTime(), expected) << frame;
        EXPECT_NEAR(mDisplay.getFps(), frame < 10 ? 0.0f : 10.0f, 0.01f) << frame;
        mDisplay.update();
        expected += 0.1f;
    }
    EXPECT_NEAR(mDisplay.getTime(), 5.0f, 1e-5f);
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

} // namespace
} // namespace zavex::display
