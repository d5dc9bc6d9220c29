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
constexpr float DOT_RADIUS = 1.0f;     // pixels
constexpr float LIT_DOT_RADIUS = 1.6f; // pixels
constexpr float RIM = 1.25f;           // pixels
constexpr float BODY_RADIUS = 0.7f;    // of the knob's
constexpr float POINTER_AT = 0.68f;    // of the body's radius
constexpr float POINTER_SIZE = 0.16f;  // of the body's radius
constexpr float FIRST_TURN = -0.375f;  // whole turns clockwise from the top
constexpr float TURNS = 0.75f;

constexpr int EDGE_LAYERS = 4; // of a circle whose edge fades

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

/** A circle whose edge fades within a pixel: translucent layers that add up to even steps. */
void fillSmoothCircle(Render& render, style::Color color, Vector2f centre, float radius)
{
    for (int left = EDGE_LAYERS; left > 0; --left) {
        color.w = 1.0f / static_cast<float>(left);
        const float outwards = (static_cast<float>(left) - 0.5f) / EDGE_LAYERS - 0.5f;
        fillCircle(render, {color, color}, circleAround(centre, std::max(radius + outwards, 0.0f)));
    }
}

} // namespace

Knob::Knob()
{
    mType = mId = mCaption = "knob";
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
    const style::Color& mark = pick(mStyle.mCaption, state).first;

    const auto lastLit = static_cast<int>(std::lround(getValue() * LAST_DOT));
    for (int i = 0; i <= LAST_DOT; ++i) {
        const float at = static_cast<float>(i) / static_cast<float>(LAST_DOT);
        const bool lit = i <= lastLit;
        fillSmoothCircle(render, lit ? mark : mStyle.mBack.mBorder1,
                         pointAt(centre, radius - 2.0f * DOT_RADIUS, at),
                         lit ? LIT_DOT_RADIUS : DOT_RADIUS);
    }
    fillSmoothCircle(render, border.mBorder1, centre, body);
    fillSmoothCircle(render, pick(mStyle.mBack, state).first, centre, body - RIM);
    fillSmoothCircle(render, mark, pointAt(centre, POINTER_AT * body, getValue()),
                     POINTER_SIZE * body);
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
    Widget::press(event);
    mPressedY = event.mousePos.y;
    mPressedValue = getValue();
}

void Knob::drag(const Event& event)
{
    moveTo(mPressedValue + (mPressedY - event.mousePos.y) / WHOLE_DRAG);
}

/** Also at either bound, where it moves nothing. */
bool Knob::turnWheel(const Event& event)
{
    moveTo(mRange.unitAfterWheel(event.mouseDeltaWheel));
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
