#pragma once

#include "mathbase/mb_box.h"

#include <algorithm>

namespace zavex::vellum {

/** Whether a point belongs to a rectangle: its top and left edges do, its bottom and right do not.
 */
inline bool contains(const mathbase::Box2& area, mathbase::Vector2f point)
{
    return area.mMin.x <= point.x && point.x < area.mMax.x && area.mMin.y <= point.y &&
           point.y < area.mMax.y;
}

/** What two rectangles share; width or height is negative where they lie apart. */
inline mathbase::Box2 sharedArea(const mathbase::Box2& a, const mathbase::Box2& b)
{
    return {std::max(a.mMin.x, b.mMin.x), std::max(a.mMin.y, b.mMin.y),
            std::min(a.mMax.x, b.mMax.x), std::min(a.mMax.y, b.mMax.y)};
}

/** The smallest rectangle around both. */
inline mathbase::Box2 boundingArea(const mathbase::Box2& a, const mathbase::Box2& b)
{
    return {std::min(a.mMin.x, b.mMin.x), std::min(a.mMin.y, b.mMin.y),
            std::max(a.mMax.x, b.mMax.x), std::max(a.mMax.y, b.mMax.y)};
}

/** Whether any of a rectangle, be it a line or a point, lies in `clip`; false for what is no
 * number.
 */
inline bool isInSight(const mathbase::Box2& bounds, const mathbase::Box2& clip)
{
    const mathbase::Box2 shared = sharedArea(bounds, clip);
    return shared.getWidth() >= 0.0f && shared.getHeight() >= 0.0f;
}

inline mathbase::Box2 squareAround(mathbase::Vector2f centre, float halfSize)
{
    mathbase::Box2 square(centre, centre);
    square.expand(halfSize);
    return square;
}

/** The strip of `height` along the top of a rectangle, as a caption takes. */
inline mathbase::Box2 topStrip(const mathbase::Box2& area, float height)
{
    return {area.mMin.x, area.mMin.y, area.mMax.x, area.mMin.y + height};
}

/** What the strip of `height` along the top leaves; empty where it takes everything. */
inline mathbase::Box2 belowTopStrip(const mathbase::Box2& area, float height)
{
    const float top = area.mMin.y + height;
    return {area.mMin.x, top, area.mMax.x, std::max(top, area.mMax.y)};
}

/** A rectangle's own coordinates: its size at (0, 0). */
inline mathbase::Box2 atOrigin(const mathbase::Box2& area)
{
    return {mathbase::Vector2f(0.0f, 0.0f), area.getSize()};
}

} // namespace zavex::vellum
