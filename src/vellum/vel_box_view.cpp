#include "vellum/vel_box_view.h"

#include "vellum/vel_area.h"
#include "vellum/vel_look.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float GRID = 40.0f; // pixels between the lines of the sheet

} // namespace

BoxView::BoxView()
{
    mType = mId = "boxview";
    mStyle = widgetStyle();
}

int BoxView::handleEvent(Event& event)
{
    mOnSheet = isEmptyAt(event.mousePos - getArea().mMin);
    return Pressable::handleEvent(event);
}

void BoxView::draw(Area area, Area parent, Area clip)
{
    drawField(getRender(), mStyle, area, mInactive ? Look::INACTIVE : Look::NORMAL, false);
    drawGrid(area, clip);
    Control::draw(area, parent, clip);
}

void BoxView::drag(const Event& event)
{
    setOffset(getOffset() + event.mouseDelta);
    sendAction(ACTION_SCROLL_CHANGED);
}

/** Whether a point of the sheet has no box above it. */
bool BoxView::isEmptyAt(Vector2f point) const
{
    return contains(atOrigin(getArea()), point) &&
           std::ranges::none_of(mChild, [&](Control* child) {
               return child->getVisible() && contains(child->getArea(), point);
           });
}

/** Lines as boxes one pixel wide, fainter than the borders of what stands on them. */
void BoxView::drawGrid(const Area& area, const Area& clip)
{
    const ColorPair colors = pick(mStyle.mBack, Look::PRESSED);
    const Vector2f origin = area.mMin - mOffset;
    for (const int axis : {0, 1}) {
        const float start = std::ceil((clip.mMin[axis] - origin[axis]) / GRID);
        const int lines = static_cast<int>(clip.getSize()[axis] / GRID) + 1;
        for (int i = 0; i < lines; ++i) {
            Area line = clip;
            line.mMin[axis] = origin[axis] + (start + static_cast<float>(i)) * GRID;
            line.mMax[axis] = line.mMin[axis] + 1.0f;
            fillBox(getRender(), colors, line);
        }
    }
}

} // namespace zavex::vellum
