#include "vellum/vel_tab_view.h"

#include "vellum/vel_tab_caption.h"

#include <algorithm>
#include <memory>

namespace zavex::vellum {

TabView::TabView() : mTabs(addOwn(std::make_unique<TabCaption>(this)))
{
    mType = mId = mCaption = "tabview";
}

void TabView::load(xml::IteratorConst& element)
{
    Flow::load(element);
    select(0);
}

void TabView::addControl(Control* control, int index)
{
    Control* shown = getPage(getSelected());
    Flow::addControl(control, index);
    if (shown) {
        control->setVisible(false);
        setFocus(shown);
    }
    setArea();
}

void TabView::deleteControl(unsigned index)
{
    if (getChild(static_cast<int>(index)) == mTabs)
        return;
    const std::int32_t shown = getSelected();
    Flow::deleteControl(index);
    if (getSelected() < 0)
        select(std::min(shown, getPageCount() - 1));
}

void TabView::deleteControls()
{
    for (int i = getChildCount(); i-- > 0;)
        if (getChild(i) != mTabs)
            Flow::deleteControl(static_cast<unsigned>(i));
}

void TabView::setArea()
{
    const Area area = getArea();
    const float width = area.getWidth();
    const float top = std::min(CAPTION_HEIGHT, area.getHeight());
    mTabs->setArea(Area(0.0f, 0.0f, width, top));
    for (std::int32_t i = 0; i < getPageCount(); ++i) {
        getPage(i)->setMaximized(false);
        getPage(i)->setArea(Area(0.0f, top, width, area.getHeight()));
    }
}

std::int32_t TabView::getPageCount() const
{
    return getChildCount() - 1;
}

Control* TabView::getPage(std::int32_t page) const
{
    if (page < 0)
        return nullptr;
    const bool behindTabs = std::ranges::find(mOrder, mTabs) - mOrder.begin() <= page;
    return getOrder(behindTabs ? page + 1 : page);
}

std::int32_t TabView::getSelected() const
{
    for (std::size_t i = mChild.size(); i-- > 0;) {
        if (mChild[i] == mTabs || !mChild[i]->getVisible())
            continue;
        for (std::int32_t page = 0; page < getPageCount(); ++page)
            if (getPage(page) == mChild[i])
                return page;
    }
    return -1;
}

void TabView::select(std::int32_t page)
{
    Control* shown = getPage(page);
    if (!shown)
        return;
    for (std::int32_t i = 0; i < getPageCount(); ++i)
        if (i != page)
            getPage(i)->setVisible(false);
    shown->setVisible(true);
}

} // namespace zavex::vellum
