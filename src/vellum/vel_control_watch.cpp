#include "vellum/vel_control_watch.h"

#include "vellum/vel_control.h"

namespace zavex::vellum {

ControlWatch::ControlWatch(Control& control) : mControl(&control), mOuter(control.mWatch)
{
    control.mWatch = this;
}

ControlWatch::~ControlWatch()
{
    if (mControl)
        mControl->mWatch = mOuter;
}

} // namespace zavex::vellum
