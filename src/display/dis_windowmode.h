#pragma once

#include <string>

namespace zavex::display {

/** Size, title and pacing of a window; also one of the modes that a screen offers. */
class WindowMode {
public:
    enum FpsMode : int {
        FPS_VARIABLE = 0, // no pacing, no vertical sync
        FPS_VSYNC = 1,    // vertical sync only
        FPS_FIXED = 2,    // vertical sync, and wait until 1/fps has passed since the frame before
        FPS_EVENT = 3,    // vertical sync; wait for events and redraw only when dirty
        FPS_DELTA = 4,    // vertical sync; the display's clock advances by 1/fps a frame
    };

    WindowMode() { setDefaults(); }

    /** The defaults with this title and size; resizable unless `fullscreen`. */
    WindowMode(const std::string& title, int width, int height, bool fullscreen);

    /** Back to an 800 x 600 window; `fps` and `fpsMode` are left alone. */
    void setDefaults();

    int getActiveWidth() const { return activeWidth; }
    int getActiveHeight() const { return activeHeight; }

    int activeWidth = 0;  // pixels; the area drawn into, may be smaller than the window
    int activeHeight = 0; // pixels
    std::string title;
    int width = 0;     // pixels
    int height = 0;    // pixels
    int bitdepth = 0;  // bits per pixel; informational
    float fps = 60.0f; // frames per second, for `FPS_FIXED` and `FPS_DELTA`
    FpsMode fpsMode = FPS_VSYNC;
    bool fullscreen = false;
    bool canResize = false; // by the user
};

} // namespace zavex::display
