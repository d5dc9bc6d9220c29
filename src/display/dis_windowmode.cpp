#include "display/dis_windowmode.h"

namespace zavex::display {

WindowMode::WindowMode(const std::string& modeTitle, int modeWidth, int modeHeight,
                       bool modeFullscreen)
{
    setDefaults();
    title = modeTitle;
    width = activeWidth = modeWidth;
    height = activeHeight = modeHeight;
    fullscreen = modeFullscreen;
    canResize = !modeFullscreen;
}

void WindowMode::setDefaults()
{
    title = "The Untitled Application";
    width = 800;
    height = 600;
    activeWidth = 800;
    activeHeight = 600;
    bitdepth = 32;
    fullscreen = false;
    canResize = true;
}

} // namespace zavex::display
