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

} // namespace zavex::vellum
