#include "vellum/vel_knob.h"

#include "vellum/vel_attribute.h"

#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float WHOLE_DRAG = 100.0f; // pixels from 0 to 1

// A ring of dots shows the value, a larger dot on the body points at it.
constexpr int LAST_DOT = 10;
constexpr float DOT_SIZE = 2.0f;      // pixels
constexpr float BODY_RADIUS = 0.7f;   // of the knob's
constexpr float POINTER_AT = 0.68f;   // of the body's radius
constexpr float POINTER_SIZE = 0.16f; // of the body's radius
constexpr float FIRST_TURN = -0.375f; // whole turns clockwise from the top
constexpr float TURNS = 0.75f;

Render::Area circleAround(Vector2f centre, float radius)
{
    return {centre.x - radius, centre.y - radius, centre.x + radius, centre.y + radius};
}

/** The point at the knob's angle for a value in 0..1. */
Vector2f pointAt(Vector2f centre, float radius, float value)
{
    const float angle = (FIRST_TURN + TURNS * value) * 2.0f * std::numbers::pi_v<float>;
    return {centre.x + radius * std::sin(angle), centre.y - radius * std::cos(angle)};
}

/** A small square on whole pixels. */
Render::Area dotAt(Vector2f point)
{
    const Vector2f corner(std::round(point.x - DOT_SIZE / 2.0f),
                          std::round(point.y - DOT_SIZE / 2.0f));
    return {corner.x, corner.y, corner.x + DOT_SIZE, corner.y + DOT_SIZE};
}

} // namespace

Knob::Knob()
{
    mType = "knob";
    mId = "knob";
    mCaption = "knob";
}

Control* Knob::clone()
{
    return new Knob;
}

void Knob::load(xml::IteratorConst& element)
{
    Widget::load(element);
    setValue(numberAttribute(element, "value").value_or(getValue()));
}

void Knob::draw(Area area, Area parent, Area clip)
{
    Render& render = getRender();
    const Look state = look();
    const style::colorInfo& border = hasKeyboardFocus(*this) ? mStyle.mCaption : mStyle.mBack;
    const Vector2f centre = area.getCenter();
    const float radius = std::min(area.getWidth(), area.getHeight()) / 2.0f;
    const float body = BODY_RADIUS * radius;

    const auto lastLit = static_cast<int>(std::lround(getValue() * LAST_DOT));
    for (int i = 0; i <= LAST_DOT; ++i) {
        const float at = static_cast<float>(i) / static_cast<float>(LAST_DOT);
        fillBox(render, pick(mStyle.mCaption, i <= lastLit ? state : Look::INACTIVE),
                dotAt(pointAt(centre, radius - DOT_SIZE, at)));
    }
    fillCircle(render, {border.mBorder1, border.mBorder2}, circleAround(centre, body));
    fillCircle(render, pick(mStyle.mBack, state),
               circleAround(centre, std::max(body - 1.0f, 0.0f)));
    fillCircle(render, pick(mStyle.mCaption, state),
               circleAround(pointAt(centre, POINTER_AT * body, getValue()), POINTER_SIZE * body));
    Widget::draw(area, parent, clip);
}

void Knob::setValue(float value)
{
    mRange.setUnit(value);
}

float Knob::getValue() const
{
    return mRange.unit();
}

void Knob::press(const Event& event)
{
    mPressedY = event.mousePos.y;
    mPressedValue = getValue();
}

void Knob::drag(const Event& event)
{
    moveTo(mPressedValue + (mPressedY - event.mousePos.y) / WHOLE_DRAG);
}

/** Also at either bound, where it moves nothing. */
bool Knob::turnWheel(float steps)
{
    moveTo(mRange.unitAfterWheel(steps));
    return true;
}

bool Knob::pressKey(const Event& event)
{
    const std::optional<float> value = mRange.unitAfterKey(event.key);
    if (value)
        moveTo(*value);
    return value.has_value();
}

/** Reports a change, after which this control may be gone. */
void Knob::moveTo(float value)
{
    if (mRange.setUnit(value))
        sendAction(ACTION_KNOB_CHANGED);
}

} // namespace zavex::vellum
