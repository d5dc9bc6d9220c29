#include "cadenza/cad_plugin.h"

#include "cadenza/cad_timeline.h"
#include "xml/xml_iteratorconst.h"

#include <utility>

namespace zavex::cadenza {

PluginBase::PluginBase(std::string type) : mType(std::move(type)) {}

void PluginBase::fitControl(float width)
{
    vellum::Control& control = *getControl();
    if (xml::IteratorConst colours = control.getStyle(mType); ++colours)
        control.loadStyle(colours);
    setWidth(width);
}

void PluginBase::setWidth(float width)
{
    vellum::Control& control = *getControl();
    vellum::Control::Area area = control.getArea();
    area.mMax.x = area.mMin.x + width;
    control.setArea(area);
}

float PluginBase::duration(const vellum::Control::Area& area)
{
    return toSeconds(area.mMax.x - area.mMin.x);
}

float PluginBase::positionAt(const vellum::Control::Area& area, float time)
{
    const float whole = duration(area);
    return whole != 0.0f ? (time - PIXELS_PER_SECOND * area.mMin.x) / whole : 0.0f;
}

} // namespace zavex::cadenza
