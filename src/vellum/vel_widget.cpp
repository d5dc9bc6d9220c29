#include "vellum/vel_widget.h"

#include "vellum/vel_area.h"

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

bool Widget::isInside(const Event& event) const
{
    const Area area = getArea();
    return contains(Area(0.0f, 0.0f, area.getWidth(), area.getHeight()), event.mousePos);
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
