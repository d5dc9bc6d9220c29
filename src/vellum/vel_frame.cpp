#include "vellum/vel_frame.h"

#include "vellum/vel_look.h"

#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

Frame::Frame()
{
    mType = mId = "frame";
    mStyle = widgetStyle();
}

void Frame::draw(Area area, Area parent, Area clip)
{
    drawField(getRender(), mStyle, area, Look::NORMAL, false);
    Control::draw(area, parent, clip);
}

void loadStyleClass(Control& control, const std::string& styleClass)
{
    xml::IteratorConst element = control.getStyle(styleClass);
    if (++element)
        control.loadStyle(element);
}

} // namespace zavex::vellum
