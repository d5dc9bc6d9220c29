#include "vellum/vel_layout_stack.h"

#include "vellum/vel_look.h"

#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

LayoutStack::LayoutStack()
{
    mType = "layoutstack";
}

void LayoutStack::load(xml::IteratorConst& element)
{
    Control::load(element);
    setDirection(element->getValue("direction") == "horisontal" ? DIRECTION_HORISONTAL
                                                                : DIRECTION_VERTICAL);
}

void LayoutStack::addControl(Control* control, int index)
{
    Control::addControl(control, index);
    recalculate(true);
}

void LayoutStack::deleteControl(unsigned index)
{
    Control::deleteControl(index);
    recalculate(true);
}

void LayoutStack::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pairOf(mStyle.mBack), area);
    Control::draw(area, parent, clip);
}

void LayoutStack::setVertical()
{
    setDirection(DIRECTION_VERTICAL);
}

void LayoutStack::setHorisontal()
{
    setDirection(DIRECTION_HORISONTAL);
}

void LayoutStack::recalculate(bool reverse)
{
    const std::vector<Control*> children =
        reverse ? std::vector<Control*>(mOrder.rbegin(), mOrder.rend()) : mChild;
    float position = 0.0f; // pixels
    for (Control* child : children) {
        const Area area = child->getArea();
        if (mDirection == DIRECTION_VERTICAL) {
            const float end = position + area.getHeight();
            child->setArea(Area(area.mMin.x, position, area.mMax.x, end));
            position = end;
        } else {
            const float end = position + area.getWidth();
            child->setArea(Area(position, area.mMin.y, end, area.mMax.y));
            position = end;
        }
    }
}

void LayoutStack::setDirection(Direction direction)
{
    mDirection = direction;
    recalculate(true);
}

} // namespace zavex::vellum
