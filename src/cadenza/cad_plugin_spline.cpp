#include "cadenza/cad_plugin_spline.h"

#include "display/dis_font.h"
#include "vellum/vel_render.h"
#include "xml/xml_iterator.h"

#include <string_view>
#include <vector>

namespace zavex::cadenza {

namespace {

using Curve = mathbase::SplineFloat;

constexpr float NAME_MIDDLE = 5.0f; // pixels above the lane's bottom edge

Curve::InterpolationMode interpolationMode(std::string_view word)
{
    if (word == "smooth")
        return Curve::SMOOTH;
    return word == "linear" ? Curve::LINEAR : Curve::SQUARE;
}

const char* extrapolationWord(Curve::ExtrapolationMode mode)
{
    switch (mode) {
        case Curve::EXT_REPEAT: return "repeat";
        case Curve::EXT_REPEAT_ADD: return "add";
        default: return "constant";
    }
}

Curve::ExtrapolationMode extrapolationMode(std::string_view word)
{
    if (word == "repeat")
        return Curve::EXT_REPEAT;
    return word == "add" ? Curve::EXT_REPEAT_ADD : Curve::EXT_CONSTANT;
}

} // namespace

Spline::Spline() : PluginBase("spline"), mSpline(Curve::SMOOTH, true)
{
    mArea = {0, 0, 100, 50};
    setSpline(&mSpline, false);
}

void Spline::load(xml::IteratorConst& it)
{
    std::vector<mathbase::SplineBaseKey<float>> keys;
    for (xml::IteratorConst key = it.createIterator("key"); ++key;)
        keys.push_back({key->getValueFloat("time"), key->getValueFloat("value"), 0.0f, 0.0f});
    mSpline.addKeys(keys);

    for (xml::IteratorConst modes = it.createIterator("attributes"); ++modes;) {
        mSpline.setInterpolation(interpolationMode(modes->getValue("type")));
        mSpline.setExtrapolationBefore(extrapolationMode(modes->getValue("before")));
        mSpline.setExtrapolationAfter(extrapolationMode(modes->getValue("after")));
    }
    curveChanged();
}

void Spline::save(xml::Iterator& it)
{
    xml::XmlTag modes("attributes");
    modes.setValue("type", vellum::getModeName(mSpline.getInterpolation()));
    modes.setValue("before", extrapolationWord(mSpline.getExtrapolationBefore()));
    modes.setValue("after", extrapolationWord(mSpline.getExtrapolationAfter()));
    it.addChild(modes);

    for (int i = 0; i < mSpline.getNumKeys(); ++i) {
        xml::XmlTag key("key");
        key.setValue("time", mSpline[i].time);
        key.setValue("value", mSpline[i].value);
        it.addChild(key);
    }
}

void Spline::setupControl(float width)
{
    fitControl(width);
}

void Spline::draw(Area area, Area parent, Area clip)
{
    vellum::Spline::draw(area, parent, clip);
    vellum::Render& render = getRender();
    render.setColor(mStyle.mText.mColor1, mStyle.mText.mColor1);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(mName, {area.mMin.x, area.mMax.y - NAME_MIDDLE});
    render.setAlign(display::Font::ALIGN_CENTER);
}

float Spline::get(float time) const
{
    return mSpline.evaluate(positionAt(mArea, time));
}

} // namespace zavex::cadenza
