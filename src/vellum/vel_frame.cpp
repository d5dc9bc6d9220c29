#include "vellum/vel_frame.h"

#include "vellum/vel_render.h"

#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

Frame::Frame()
{
    mType = "frame";
    mId = "frame";
}

Control* Frame::clone()
{
    return new Frame;
}

void Frame::draw(Area area, Area parent, Area clip)
{
    Render& render = getRender();
    render.setColor(mStyle.mBack.mColor1, mStyle.mBack.mColor2);
    render.drawBox(area, Render::GRADIENT_VERTICAL);
    render.setColor(mStyle.mBack.mBorder1, mStyle.mBack.mBorder2);
    render.drawBorder(area);
    Control::draw(area, parent, clip);
}

void loadStyleClass(Control& control, const std::string& styleClass)
{
    xml::IteratorConst element = control.getStyle(styleClass);
    if (++element)
        control.loadStyle(element);
}

} // namespace zavex::vellum
