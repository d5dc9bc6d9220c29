#include "vellum/vel_flow.h"

#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

namespace {

constexpr float INITIAL_EXTENT = 10.0f; // pixels

} // namespace

Flow::Flow()
{
    mType = "flow";
}

void Flow::load(xml::IteratorConst& element)
{
    Control::load(element);
    mDirection =
        element->getValue("direction") == "horisontal" ? DIRECTION_HORISONTAL : DIRECTION_VERTICAL;
    setArea();
}

void Flow::addControl(Control* control, int index)
{
    mExtent[control] = INITIAL_EXTENT;
    Control::addControl(control, index);
}

void Flow::setArea()
{
    float fixed = 0.0f;
    float shares = 0.0f;
    for (Control* child : mOrder) {
        const float extent = extentOf(child);
        (extent > 0.0f ? fixed : shares) += std::abs(extent);
    }

    const Area area = getArea();
    const bool vertical = mDirection == DIRECTION_VERTICAL;
    const float along = vertical ? area.getHeight() : area.getWidth();
    const float free = std::max(along - fixed, 0.0f);
    float position = 0.0f;
    for (Control* child : std::vector<Control*>(mOrder)) {
        float extent = extentOf(child);
        if (extent <= 0.0f)
            extent = shares > 0.0f ? std::floor(-extent * free / shares + 0.5f) : 0.0f;
        const float end = position + extent;
        child->setArea(vertical ? Area(0.0f, position, area.getWidth(), end)
                                : Area(position, 0.0f, end, area.getHeight()));
        position = end;
    }
}

void Flow::setSize(Control* child, float size)
{
    mExtent[child] = size;
}

void Flow::setPercent(Control* child, float percent)
{
    mExtent[child] = -percent;
}

void Flow::loadChildArea(Control& child, xml::IteratorConst& area)
{
    if (!area->getValue("size").empty())
        setSize(&child, area->getValueFloat("size"));
    if (!area->getValue("percent").empty())
        setPercent(&child, area->getValueFloat("percent"));
}

float Flow::extentOf(Control* child) const
{
    const auto found = mExtent.find(child);
    return found == mExtent.end() ? INITIAL_EXTENT : found->second;
}

} // namespace zavex::vellum
