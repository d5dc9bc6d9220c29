#include "vellum/vel_slider.h"

#include "vellum/vel_attribute.h"

#include "xml/xml_iteratorconst.h"

#include <algorithm>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float BORDER = 1.0f;          // pixels
constexpr float SHORTEST_HANDLE = 4.0f; // pixels
constexpr float PERCENT = 0.01f;

} // namespace

Slider::Slider()
{
    mType = mId = mCaption = "slider";
}

void Slider::load(xml::IteratorConst& element)
{
    Widget::load(element);
    mRange.setBounds(numberAttribute(element, "min").value_or(mRange.lower()),
                     numberAttribute(element, "max").value_or(mRange.upper()));
    if (const std::optional<float> percent = numberAttribute(element, "percent"))
        mRange.setUnit(*percent * PERCENT);
    mSize = std::max(numberAttribute(element, "size").value_or(mSize), SHORTEST_HANDLE);
    if (const std::string& direction = element->getValue("direction"); !direction.empty())
        mHorisontal = direction == "horisontal";
}

void Slider::draw(Area area, Area parent, Area clip)
{
    const Look state = look();
    drawField(area, state == Look::PRESSED ? Look::HOVERED : state);

    Render& render = getRender();
    const float start = handleStart();
    fillBox(render, pick(mStyle.mBack, Look::PRESSED), stretch(area, 0.0f, start));
    fillBox(render, pick(mStyle.mCaption, state), stretch(area, start, start + handleLength()));
    Widget::draw(area, parent, clip);
}

void Slider::setBounds(float first, float second)
{
    mRange.setBounds(first, second);
}

void Slider::setValue(float value, bool unit)
{
    unit ? mRange.setUnit(value) : mRange.setValue(value);
}

float Slider::getValue(bool unit) const
{
    return unit ? mRange.unit() : mRange.value();
}

/** A press beside the handle brings its middle there. */
void Slider::press(const Event& event)
{
    Widget::press(event);
    mGrip = along(event.mousePos) - handleStart();
    if (mGrip >= 0.0f && mGrip < handleLength())
        return;
    mGrip = handleLength() / 2.0f;
    drag(event);
}

void Slider::drag(const Event& event)
{
    const float way = trackLength() - handleLength();
    if (way > 0.0f)
        moveTo((along(event.mousePos) - mGrip) / way);
}

/** Also at either bound, where it moves nothing. */
bool Slider::turnWheel(const Event& event)
{
    moveTo(mRange.unitAfterWheel(event.mouseDeltaWheel));
    return true;
}

bool Slider::pressKey(const Event& event)
{
    const std::optional<float> unit = mRange.unitAfterKey(event.key);
    if (unit)
        moveTo(*unit);
    return unit.has_value();
}

/** Distance of a point of the control from where the track starts, in pixels. */
float Slider::along(Vector2f point) const
{
    return (mHorisontal ? point.x : getArea().getHeight() - point.y) - BORDER;
}

float Slider::trackLength() const
{
    const Area area = getArea();
    return std::max((mHorisontal ? area.getWidth() : area.getHeight()) - 2.0f * BORDER, 0.0f);
}

float Slider::handleLength() const
{
    return std::min(mSize, trackLength());
}

float Slider::handleStart() const
{
    return mRange.unit() * (trackLength() - handleLength());
}

/** Reports a change, after which this control may be gone. */
void Slider::moveTo(float unit)
{
    if (mRange.setUnit(unit))
        sendAction(ACTION_SLIDER_CHANGED);
}

/** The part of the track between two distances from its start. */
Slider::Area Slider::stretch(const Area& area, float from, float to) const
{
    Area track = area;
    track.expand(-BORDER);
    if (mHorisontal)
        return {track.mMin.x + from, track.mMin.y, track.mMin.x + to, track.mMax.y};
    return {track.mMin.x, track.mMax.y - to, track.mMax.x, track.mMax.y - from};
}

} // namespace zavex::vellum
