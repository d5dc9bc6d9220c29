#include "cadenza/cad_plugin.h"

#include "xml/xml_iteratorconst.h"

#include <utility>

namespace zavex::cadenza {

PluginBase::PluginBase(std::string type) : mType(std::move(type)) {}

void PluginBase::fitControl(float width)
{
    vellum::Control& control = *getControl();
    if (xml::IteratorConst colours = control.getStyle(mType); ++colours)
        control.loadStyle(colours);

    vellum::Control::Area area = control.getArea();
    area.mMax.x = area.mMin.x + width;
    control.setArea(area);
}

float PluginBase::positionAt(const vellum::Control::Area& area, float time)
{
    const float duration = (area.mMax.x - area.mMin.x) * SECONDS_PER_UNIT;
    if (duration == 0.0f)
        return 0.0f;
    return (time - UNITS_PER_SECOND * area.mMin.x) / duration;
}

} // namespace zavex::cadenza
