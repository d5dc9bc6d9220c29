#include "vellum/vel_widget.h"

#include "vellum/vel_area.h"
#include "vellum/vel_control_watch.h"

#include "display/dis_listener.h"
#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

Widget::Widget()
{
    mStyle = widgetStyle();
}

void Widget::load(xml::IteratorConst& element)
{
    Control::load(element);
    if (const std::string& inactive = element->getValue("inactive"); !inactive.empty())
        setInactive(inactive == "true");
}

void Widget::setInactive(bool inactive)
{
    Control::setInactive(inactive);
    mPressed = mPressed && !inactive;
}

bool Widget::acceptEvents(Event& event)
{
    return mPressed || Control::acceptEvents(event);
}

int Widget::handleEvent(Event& event)
{
    const ControlWatch self(*this);
    const int handled = Control::handleEvent(event);
    if (self.isGone())
        return handled;
    if (mInactive || !isShown(*this)) {
        mPressed = false;
        return handled;
    }

    const bool left = event.button == display::MOUSE_LEFT;
    if (event.type == Event::MOUSE_DOWN && left) {
        mPressed = true;
        press(event);
    } else if (event.type == Event::MOUSE_MOVE)
        mPressed ? drag(event) : hover(event);
    else if (event.type == Event::MOUSE_UP && left && mPressed) {
        mPressed = false;
        release(event);
    } else if (event.type == Event::MOUSE_WHEEL)
        return turnWheel(event.mouseDeltaWheel) ? display::Listener::BLOCK : handled;
    else if (event.type == Event::KEY_DOWN && hasKeyboardFocus(*this))
        return pressKey(event) ? display::Listener::BLOCK : handled;
    else if (event.type == Event::CHAR_DOWN && hasKeyboardFocus(*this))
        return typeCharacter(event) ? display::Listener::BLOCK : handled;
    return handled;
}

void Widget::letGo()
{
    mPressed = false;
    Control::letGo();
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
