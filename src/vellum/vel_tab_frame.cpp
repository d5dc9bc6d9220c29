#include "vellum/vel_tab_frame.h"

#include "vellum/vel_look.h"

#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

TabFrame::TabFrame()
{
    mType = mId = mCaption = "tabframe";
    mStyle = widgetStyle();
}

void TabFrame::load(xml::IteratorConst& element)
{
    Frame::load(element);
    setCaption(element->getValue("caption"));
}

} // namespace zavex::vellum
