#include "vellum/vel_window_frame.h"

namespace zavex::vellum {

WindowFrame::WindowFrame()
{
    mType = mId = "windowframe";
}

Control* WindowFrame::clone()
{
    return new WindowFrame;
}

} // namespace zavex::vellum
