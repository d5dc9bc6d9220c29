#include "vellum/vel_button.h"

#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr Vector2f PUSHED_OFFSET{2.0f, 2.0f}; // pixels by which a button that is down moves
constexpr float PUSHED_SHADE = 0.9f;          // brightness of the top of the pushed gradient

} // namespace

Button::Button()
{
    mType = mId = mCaption = "button";
    style::colorInfo& back = mStyle.mBack;
    back.mColor1 = style::Color(1.0f, 1.0f, 1.0f, 1.0f);
    back.mColor2 = style::Color(0.7f, 0.7f, 0.7f, 1.0f);
    back.mHighlight1 = style::Color(1.0f, 0.96f, 0.96f, 1.0f);
    back.mHighlight2 = style::Color(0.8f, 0.8f, 0.8f, 1.0f);
    back.mPushed2 = style::Color(0.97f, 0.97f, 0.97f, 1.0f);
    back.mPushed1 = style::Color(PUSHED_SHADE * back.mPushed2.x, PUSHED_SHADE * back.mPushed2.y,
                                 PUSHED_SHADE * back.mPushed2.z, 1.0f);
    mStyle.mText.mColor1 = style::Color(0.0f, 0.0f, 0.0f, 1.0f);
}

void Button::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    setCaption(element->getValue("caption"));
    if (element->getValue("toggled") == "true")
        setToggleMode(true);
}

void Button::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), borderOf(mStyle.mBack), clip);
    Area inner = clip;
    inner.expand(-1.0f);
    if (inner.getWidth() > 0.0f && inner.getHeight() > 0.0f) {
        drawFace(inner);
        drawCaption(area.getCenter());
    }
    if (hasKeyboardFocus(*this) && mStyle.mCaption.mBorder1.w > 0.0f)
        drawBorder(getRender(), borderOf(mStyle.mCaption), clip);
    Control::draw(area, parent, clip);
}

void Button::setToggleMode(bool toggle)
{
    mToggle = toggle;
}

bool Button::getToggled() const
{
    return mToggleState;
}

void Button::press(const Event& event)
{
    if (mInactive || !isInside(event))
        return;
    mClicked = true;
    if (!mToggle)
        sendAction(ACTION_BUTTON_PRESSED);
}

bool Button::release(const Event& event)
{
    drop();
    if (!isInside(event))
        return false;
    if (mToggle)
        mToggleState = !mToggleState;
    sendAction(mToggle && mToggleState ? ACTION_BUTTON_PRESSED : ACTION_BUTTON_RELEASED);
    return false;
}

bool Button::looksPushed() const
{
    return mToggleState || (mClicked && mMouseOver);
}

void Button::drawFace(const Area& face)
{
    if (looksPushed()) {
        fillBox(getRender(), pairOf(mStyle.mBack, Look::PRESSED),
                {face.mMin + PUSHED_OFFSET, face.mMax});
        return;
    }
    const Look look = mMouseOver && !mInactive ? Look::HOVERED : Look::NORMAL;
    fillBox(getRender(), pairOf(mStyle.mBack, look), face);
}

void Button::drawCaption(Vector2f center)
{
    const style::Color& color = mInactive ? mStyle.mText.mInactive1 : mStyle.mText.mColor1;
    Render& render = getRender();
    render.setColor(color, color);
    render.setAlign(display::Font::ALIGN_CENTER);
    render.drawText(mCaption, looksPushed() ? center + PUSHED_OFFSET : center);
}

} // namespace zavex::vellum
