#include "vellum/vel_tab_caption.h"

#include "vellum/vel_area.h"
#include "vellum/vel_render.h"
#include "vellum/vel_tab_view.h"

#include "display/dis_font.h"

#include <algorithm>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float PADDING = 10.0f;    // pixels on both sides of a tab's text
constexpr float MARK_HEIGHT = 2.0f; // pixels of the line above the selected tab

} // namespace

TabCaption::TabCaption(TabView* view) : mView(view)
{
    mType = mId = mCaption = "tabcaption";
}

void TabCaption::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pick(mStyle.mBack, Look::INACTIVE), area);
    const std::int32_t selected = mView ? mView->getSelected() : -1;
    const float common = commonWidth();
    float left = area.mMin.x;
    for (std::int32_t page = 0; page < pageCount(); ++page) {
        const float right = left + (common >= 0.0f ? common : wantedWidth(page));
        drawTab(page, Area(left, area.mMin.y, right, area.mMax.y), page == selected);
        left = right;
    }
    Control::draw(area, parent, clip);
}

void TabCaption::hover(const Event& event)
{
    mHovered = tabAt(event.mousePos);
}

void TabCaption::press(const Event& event)
{
    Widget::press(event);
    show(tabAt(event.mousePos));
}

bool TabCaption::pressKey(const Event& event)
{
    if (event.key != display::KEY_LEFT && event.key != display::KEY_RIGHT)
        return false;
    if (mView)
        show(mView->getSelected() + (event.key == display::KEY_LEFT ? -1 : 1));
    return true;
}

std::int32_t TabCaption::pageCount() const
{
    return mView ? mView->getPageCount() : 0;
}

/** Width of the tab of a page that exists, in pixels, where there is room for all. */
float TabCaption::wantedWidth(std::int32_t page) const
{
    return getRender().getTextLength(mView->getPage(page)->getCaption()) + 2.0f * PADDING;
}

/** What every tab is as wide as, in pixels; -1 where each is as wide as it wants to be. */
float TabCaption::commonWidth() const
{
    float width = 0.0f;
    for (std::int32_t page = 0; page < pageCount(); ++page)
        width += wantedWidth(page);
    const float space = getArea().getWidth();
    return width > space ? space / static_cast<float>(pageCount()) : -1.0f;
}

/** The page whose tab is at a point of this control; -1 when there is none. */
std::int32_t TabCaption::tabAt(Vector2f point) const
{
    const float common = commonWidth();
    const float height = getArea().getHeight();
    float left = 0.0f;
    for (std::int32_t page = 0; page < pageCount(); ++page) {
        const float right = left + (common >= 0.0f ? common : wantedWidth(page));
        if (contains(Area(left, 0.0f, right, height), point))
            return page;
        left = right;
    }
    return -1;
}

/** Shows a page, if there is such a one, and keeps the keyboard. */
void TabCaption::show(std::int32_t page)
{
    if (page < 0 || page >= pageCount())
        return;
    mView->select(page);
    setFocus(nullptr);
}

void TabCaption::drawTab(std::int32_t page, const Area& tab, bool selected)
{
    Render& render = getRender();
    if (selected || page == mHovered)
        fillBox(render, pick(mStyle.mBack, selected ? Look::NORMAL : Look::HOVERED), tab);
    if (selected)
        fillBox(render,
                pick(mStyle.mCaption, hasKeyboardFocus(*this) ? Look::HOVERED : Look::NORMAL),
                {tab.mMin.x, tab.mMin.y, tab.mMax.x, tab.mMin.y + MARK_HEIGHT});
    drawLabel(mView->getPage(page)->getCaption(),
              {tab.getCenter(), tab.getWidth() - PADDING, display::Font::ALIGN_CENTER},
              mInactive ? Look::INACTIVE : Look::NORMAL);
}

} // namespace zavex::vellum
