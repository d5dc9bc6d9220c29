#include "vellum/vel_panel_frame.h"

#include "vellum/vel_look.h"

namespace zavex::vellum {

PanelFrame::PanelFrame()
{
    mType = mId = "panelframe";
    mStyle = widgetStyle();
}

Control* PanelFrame::clone()
{
    return new PanelFrame;
}

void PanelFrame::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pick(mStyle.mBack, Look::NORMAL), area);
    Control::draw(area, parent, clip);
}

} // namespace zavex::vellum
