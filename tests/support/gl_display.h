#pragma once

#include "display/dis_display_glfw.h"
#include "display/dis_listener.h"
#include "support/log_capture.h"
#include "support/picture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

namespace zavex::test {

/** A small window in `FPS_VARIABLE`, so that frames come as fast as they are asked for. */
inline display::WindowMode smallMode(int width = 64, int height = 48)
{
    display::WindowMode mode{"test", width, height, false};
    mode.fpsMode = display::WindowMode::FPS_VARIABLE;
    return mode;
}

/** Runs one frame in which `draw` draws, after the listeners that are there, and nothing is
 * checked. */
inline bool drawFrame(display::DisplayGL& display, std::function<void()> draw)
{
    struct Painter : display::Listener {
        explicit Painter(std::function<void()> action) : mDraw{std::move(action)} {}
        void onDraw() override { mDraw(); }

        std::function<void()> mDraw;
    };
    Painter painter{std::move(draw)};
    painter.attachToDisplay(&display);
    return display.update();
}

/** What has been drawn into the window since the last frame. */
inline Picture screenshot(display::DisplayGL& display)
{
    Picture picture;
    picture.width = display.getWindowMode().width;
    picture.height = display.getWindowMode().height;
    picture.rgb.resize(static_cast<std::size_t>(picture.width) *
                       static_cast<std::size_t>(picture.height) * 3);
    display.getScreenShotRGB24(picture.rgb.data());
    return picture;
}

/** Runs one frame in which `draw` draws and returns the picture at the end of it. */
inline Picture pictureOf(display::DisplayGL& display, const std::function<void()>& draw)
{
    Picture picture;
    drawFrame(display, [&] {
        draw();
        picture = screenshot(display);
    });
    return picture;
}

/** A display with a small window on the virtual screen. */
class GlDisplay {
public:
    explicit GlDisplay(int width = 64, int height = 48) { mDisplay.open(smallMode(width, height)); }

    display::DisplayGLFW& operator*() { return mDisplay; }
    display::DisplayGLFW* operator->() { return &mDisplay; }

    Picture screenshot() { return test::screenshot(mDisplay); }

private:
    display::DisplayGLFW mDisplay;
};

/** Opens a small window for each test. */
class GlDisplayTest : public testing::Test {
protected:
    explicit GlDisplayTest(int width = 64, int height = 48) : mWindow(width, height) { clearLog(); }

    Picture pictureOf(const std::function<void()>& draw) { return test::pictureOf(mDisplay, draw); }

    GlDisplay mWindow;
    display::DisplayGLFW& mDisplay{*mWindow};
};

} // namespace zavex::test
