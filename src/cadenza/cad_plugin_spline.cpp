#include "cadenza/cad_plugin_spline.h"

#include "display/dis_font.h"
#include "vellum/vel_curve.h"
#include "vellum/vel_render.h"
#include "xml/xml_iterator.h"

#include <string>
#include <vector>

namespace zavex::cadenza {

namespace {

using Curve = mathbase::SplineFloat;

constexpr float NAME_MIDDLE = 5.0f; // pixels above the lane's bottom edge

Curve::InterpolationMode interpolationOf(const std::string& word)
{
    return vellum::modeOf(vellum::INTERPOLATIONS, word).value_or(Curve::SQUARE);
}

Curve::ExtrapolationMode extrapolationOf(const std::string& word)
{
    return vellum::modeOf(vellum::EXTRAPOLATIONS, word).value_or(Curve::EXT_CONSTANT);
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
        mSpline.setInterpolation(interpolationOf(modes->getValue("type")));
        mSpline.setExtrapolationBefore(extrapolationOf(modes->getValue("before")));
        mSpline.setExtrapolationAfter(extrapolationOf(modes->getValue("after")));
    }
    curveChanged();
}

void Spline::save(xml::Iterator& it) const
{
    using vellum::EXTRAPOLATIONS;
    using vellum::savedWord;
    xml::XmlTag modes("attributes");
    modes.setValue("type", savedWord(vellum::INTERPOLATIONS, mSpline.getInterpolation()));
    modes.setValue("before", savedWord(EXTRAPOLATIONS, mSpline.getExtrapolationBefore()));
    modes.setValue("after", savedWord(EXTRAPOLATIONS, mSpline.getExtrapolationAfter()));
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
