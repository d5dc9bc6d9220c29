#include "vellum/vel_label.h"

#include "vellum/vel_look.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

namespace {

Label::Align alignOf(const std::string& word)
{
    if (word == "center" || word == "middle")
        return Label::Align::MIDDLE;
    return word == "right" || word == "bottom" ? Label::Align::END : Label::Align::START;
}

int fontAlign(Label::Align align)
{
    switch (align) {
        case Label::Align::MIDDLE: return display::Font::ALIGN_CENTER;
        case Label::Align::END: return display::Font::ALIGN_RIGHT;
        default: return display::Font::ALIGN_LEFT;
    }
}

/** The point of [low, high] that belongs to an alignment. */
float placeOf(Label::Align align, float low, float high)
{
    switch (align) {
        case Label::Align::MIDDLE: return (low + high) / 2.0f;
        case Label::Align::END: return high;
        default: return low;
    }
}

} // namespace

Label::Label()
{
    mType = mId = mCaption = "label";
    mStyle = widgetStyle();
    mStyle.mBack = style::colorInfo{};
}

void Label::load(xml::IteratorConst& element)
{
    Control::load(element);
    if (element->hasValue("text"))
        setCaption(element->getValue("text"));
    if (element->hasValue("align"))
        mAcross = alignOf(element->getValue("align"));
    if (element->hasValue("valign"))
        mDown = alignOf(element->getValue("valign"));
    if (element->hasValue("inactive"))
        setInactive(element->getValue("inactive") == "true");
}

void Label::draw(Area area, Area parent, Area clip)
{
    Render& render = getRender();
    const Look look = mInactive ? Look::INACTIVE : Look::NORMAL;
    if (const ColorPair body = pick(mStyle.mBack, look); body.first.w > 0.0f)
        fillBox(render, body, area);

    const float halfLine = render.getFontHeight() / 2.0f;
    const mathbase::Vector2f position(
        placeOf(mAcross, area.mMin.x, area.mMax.x),
        placeOf(mDown, area.mMin.y + halfLine, area.mMax.y - halfLine));
    drawLabel(render, mStyle, mCaption, {position, area.getWidth(), fontAlign(mAcross)}, look);
    Control::draw(area, parent, clip);
}

void Label::setAlign(Align across, Align down)
{
    mAcross = across;
    mDown = down;
}

} // namespace zavex::vellum
