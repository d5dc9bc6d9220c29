#include "vellum/vel_look.h"

#include "vellum/vel_control.h"

#include "display/dis_font.h"

namespace zavex::vellum {

namespace {

constexpr int SEGMENTS_BY_SIZE = -1;

/** An opaque colour from 0xRRGGBB. */
style::Color rgb(unsigned code)
{
    const auto component = [code](unsigned shift) {
        return static_cast<float>(code >> shift & 0xffu) / 255.0f;
    };
    return {component(16), component(8), component(0), 1.0f};
}

void setFlat(style::Color& first, style::Color& second, unsigned code)
{
    first = second = rgb(code);
}

} // namespace

ColorPair pairOf(const style::colorInfo& set, Look look)
{
    switch (look) {
        case Look::HOVERED: return {set.mHighlight1, set.mHighlight2};
        case Look::PRESSED: return {set.mPushed1, set.mPushed2};
        case Look::INACTIVE: return {set.mInactive1, set.mInactive2};
        default: return {set.mColor1, set.mColor2};
    }
}

ColorPair pick(const style::colorInfo& set, Look look)
{
    const ColorPair pair = pairOf(set, look);
    return pair.first.w != 0.0f ? pair : pairOf(set);
}

ColorPair borderOf(const style::colorInfo& set)
{
    return {set.mBorder1, set.mBorder2};
}

Look partLook(bool pointedAt, bool held)
{
    if (!pointedAt)
        return Look::NORMAL;
    return held ? Look::PRESSED : Look::HOVERED;
}

style widgetStyle()
{
    style colors;
    style::colorInfo& body = colors.mBack;
    setFlat(body.mBorder1, body.mBorder2, 0x6f7788);
    setFlat(body.mColor1, body.mColor2, 0x1b1e26);
    setFlat(body.mHighlight1, body.mHighlight2, 0x242833);
    setFlat(body.mPushed1, body.mPushed2, 0x2f3542);
    setFlat(body.mInactive1, body.mInactive2, 0x16181e);

    style::colorInfo& mark = colors.mCaption;
    setFlat(mark.mBorder1, mark.mBorder2, 0x38d6ff);
    setFlat(mark.mColor1, mark.mColor2, 0x38d6ff);
    setFlat(mark.mHighlight1, mark.mHighlight2, 0x7be5ff);
    setFlat(mark.mPushed1, mark.mPushed2, 0xff9a3c);
    setFlat(mark.mInactive1, mark.mInactive2, 0x828a9a);

    setFlat(colors.mText.mColor1, colors.mText.mColor2, 0xd7dbe6);
    setFlat(colors.mText.mInactive1, colors.mText.mInactive2, 0x828a9a);
    return colors;
}

bool hasKeyboardFocus(const Control& control)
{
    const Control* child = &control;
    for (const Control* parent = child->getParent(); parent; parent = child->getParent()) {
        if (parent->getFocus() != child)
            return false;
        child = parent;
    }
    return child != &control;
}

bool isShown(const Control& control)
{
    for (const Control* each = &control; each; each = each->getParent())
        if (!each->getVisible())
            return false;
    return true;
}

void fillBox(Render& render, const ColorPair& colors, const Render::Area& area, int gradient)
{
    render.setColor(colors.first, colors.second);
    render.drawBox(area, gradient);
}

void drawBorder(Render& render, const ColorPair& colors, const Render::Area& area)
{
    render.setColor(colors.first, colors.second);
    render.drawBorder(area);
}

void fillCircle(Render& render, const ColorPair& colors, const Render::Area& area)
{
    render.setColor(colors.first, colors.second);
    render.drawCircle(area, SEGMENTS_BY_SIZE, 0.0f);
}

void drawField(Render& render, const style& colors, const Render::Area& area, Look look,
               bool focused)
{
    fillBox(render, borderOf(focused ? colors.mCaption : colors.mBack), area);

    Render::Area body = area;
    body.expand(-1.0f);
    if (body.getWidth() > 0.0f && body.getHeight() > 0.0f)
        fillBox(render, pick(colors.mBack, look), body);
}

void drawLabel(Render& render, const style& colors, const std::string& text, const TextPlace& place,
               Look look)
{
    const ColorPair pair = pick(colors.mText, look);
    render.setColor(pair.first, pair.second);
    render.setAlign(place.align);
    render.drawText(render.fittingText(text, place.width), place.position);
    render.setAlign(display::Font::ALIGN_CENTER);
}

} // namespace zavex::vellum
