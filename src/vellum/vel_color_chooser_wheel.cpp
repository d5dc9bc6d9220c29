#include "vellum/vel_color_chooser_wheel.h"

#include "vellum/vel_area.h"
#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include "mathbase/mb_vector4.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr int COLUMNS = 6;
constexpr Vector3f HUES[COLUMNS + 1] = {
    {1, 0, 0},
    {1, 0, 1},
    {0, 0, 1},
    {0, 1, 1},
    {0, 1, 0},
    {1, 1, 0},
    {1, 0, 0}
};
constexpr Vector4f WHITE{1, 1, 1, 1};
constexpr Vector4f BLACK{0, 0, 0, 1};
constexpr float RIM_RADIUS = 10.0f;   // pixels
constexpr float SAMPLE_RADIUS = 8.0f; // pixels

/** @param fraction  Of the way from the left to the right edge of the column. */
Vector3f hueAt(int column, float fraction)
{
    return HUES[column] * (1.0f - fraction) + HUES[column + 1] * fraction;
}

float columnWidth(float fieldWidth)
{
    return fieldWidth / static_cast<float>(COLUMNS);
}

float columnStart(float fieldWidth, int column)
{
    return std::round(static_cast<float>(column) * columnWidth(fieldWidth));
}

} // namespace

ColorChooserWheel::ColorChooserWheel()
{
    mType = mId = "colorchooserwheel";
}

void ColorChooserWheel::draw(Area area, Area parent, Area clip)
{
    for (int column = 0; column < COLUMNS; ++column)
        drawColumn(area, clip, column);
    if (mClickedPos.x >= 0.0f) {
        // A field that became smaller keeps the cross-hair on its edge.
        const Vector2f position = mClickedPos.min(area.getSize());
        mCurrentColor = colorAt(position, area.getSize());
        drawCrossHair(area, position);
    }
    Control::draw(area, parent, clip);
}

void ColorChooserWheel::setIntensity(float intensity)
{
    mIntensity = std::clamp(intensity, 0.0f, 1.0f);
}

void ColorChooserWheel::press(const Event& event)
{
    mClicked = true;
    chooseAt(event.mousePos);
}

/** All edges belong to the field, so that a drag reaches the pure grey and the last red. */
bool ColorChooserWheel::isInField(Vector2f position) const
{
    return Area({0.0f, 0.0f}, getArea().getSize()).isInside(position);
}

/** Reports a click or drag, after which this control may be gone. */
void ColorChooserWheel::chooseAt(Vector2f position)
{
    if (isInField(position))
        mClickedPos = position;
    sendAction(ACTION_BUTTON_PRESSED);
}

/** Draws the pixels of a column that the clip may show. */
void ColorChooserWheel::drawColumn(const Area& area, const Area& clip, int column)
{
    Render& render = getRender();
    const float width = columnWidth(area.getWidth());
    const float start = area.mMin.x + columnStart(area.getWidth(), column);
    const float end = std::min(start + std::round(width), clip.mMax.x);
    const Vector4f grey(mIntensity, mIntensity, mIntensity, 1.0f);

    float x = std::max(std::round(start), std::floor(clip.mMin.x));
    while (x < end) {
        render.setColor(Vector4f(hueAt(column, (x - start) / width)), grey);
        render.drawBox(Area(x, area.mMin.y, x + 1.0f, area.mMax.y), Render::GRADIENT_VERTICAL);
        x += 1.0f;
    }
}

/** @param size  Of the field; must be positive. */
Vector3f ColorChooserWheel::colorAt(Vector2f position, Vector2f size) const
{
    const float width = columnWidth(size.x);
    const int column =
        static_cast<int>(std::min(std::round(position.x / width), static_cast<float>(COLUMNS - 1)));
    const Vector3f hue = hueAt(column, (position.x - columnStart(size.x, column)) / width);
    const Vector3f grey(mIntensity, mIntensity, mIntensity);
    const float depth = position.y / size.y;
    const Vector3f color = hue * (1.0f - depth) + grey * depth;
    return color.max({0.0f, 0.0f, 0.0f}).min({1.0f, 1.0f, 1.0f});
}

void ColorChooserWheel::drawCrossHair(const Area& area, Vector2f position)
{
    Render& render = getRender();
    const Vector2f center = area.mMin + position;
    const auto drawDisc = [&](const Vector4f& color, float radius) {
        Area disc(center, center);
        disc.expand(radius);
        fillCircle(render, {color, color}, disc);
    };
    render.setLineWidth(1.0f);
    render.setColor(WHITE, WHITE);
    render.drawLine({area.mMin.x, center.y}, {area.mMax.x, center.y});
    render.drawLine({center.x, area.mMin.y}, {center.x, area.mMax.y});
    drawDisc(BLACK, RIM_RADIUS);
    drawDisc(Vector4f(mCurrentColor), SAMPLE_RADIUS);
}

} // namespace zavex::vellum
