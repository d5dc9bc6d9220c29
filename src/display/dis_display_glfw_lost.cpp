// When the X server goes away, or takes the window away, the library that talks to it ends the
// process. It asks here before, out of any request to the display.

#include "display/dis_display_glfw.h"

#include "common/zvx_process.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <X11/Xlib.h>

namespace zavex::display {

namespace {

constexpr std::chrono::seconds PATIENCE{10}; // with the display's thread, to meet the loss itself

} // namespace

struct DisplayGLFW::LostScreen {
    /** Saving needs a state that no other thread is changing. */
    [[noreturn]] static void end(const char* reason)
    {
        DisplayGLFW* const display = Live::sDisplay;
        if (display && display->mThread != std::this_thread::get_id())
            std::this_thread::sleep_for(PATIENCE);
        else if (display)
            display->mListeners.forEach([](Listener& listener) { listener.onLost(); });
        reportFailure("the screen is lost: %s", reason);
        std::_Exit(EXIT_FAILURE); // what is destroyed at an exit would ask the display again
    }

    static int onDisconnect(::Display*) { end("the connection to the X server is broken"); }

    static int onError(::Display*, XErrorEvent* error)
    {
        std::array<char, 100> reason{};
        std::snprintf(reason.data(), reason.size(), "error %d of the X server in request %d.%d",
                      error->error_code, error->request_code, error->minor_code);
        end(reason.data());
    }
};

void DisplayGLFW::watchScreen()
{
    XSetIOErrorHandler(&LostScreen::onDisconnect);
    XSetErrorHandler(&LostScreen::onError);
}

} // namespace zavex::display
