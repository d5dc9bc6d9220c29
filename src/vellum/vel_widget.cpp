#include "vellum/vel_widget.h"

#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

Widget::Widget()
{
    mStyle = widgetStyle();
}

void Widget::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    if (const std::string& inactive = element->getValue("inactive"); !inactive.empty())
        setInactive(inactive == "true");
}

void Widget::press(const Event&)
{
    mPressed = true;
}

Look Widget::look() const
{
    if (mInactive)
        return Look::INACTIVE;
    if (mPressed)
        return Look::PRESSED;
    return mMouseOver ? Look::HOVERED : Look::NORMAL;
}

void Widget::drawField(const Area& area, Look look)
{
    vellum::drawField(getRender(), mStyle, area, look, hasKeyboardFocus(*this));
}

void Widget::drawLabel(const std::string& text, const TextPlace& place, Look look)
{
    vellum::drawLabel(getRender(), mStyle, text, place, look);
}

} // namespace zavex::vellum
