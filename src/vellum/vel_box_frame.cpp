#include "vellum/vel_box_frame.h"

namespace zavex::vellum {

BoxFrame::BoxFrame()
{
    mType = mId = "boxframe";
}

Control* BoxFrame::clone()
{
    return new BoxFrame;
}

} // namespace zavex::vellum
