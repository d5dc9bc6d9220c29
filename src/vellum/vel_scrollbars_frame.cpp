#include "vellum/vel_scrollbars_frame.h"

#include "vellum/vel_look.h"

namespace zavex::vellum {

ScrollbarsFrame::ScrollbarsFrame()
{
    mType = mId = "scrollbarsframe";
    mStyle.mBack = style::colorInfo{};
}

Control* ScrollbarsFrame::clone()
{
    return new ScrollbarsFrame;
}

void ScrollbarsFrame::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pairOf(mStyle.mBack), area);
    Control::draw(area, parent, clip);
}

} // namespace zavex::vellum
