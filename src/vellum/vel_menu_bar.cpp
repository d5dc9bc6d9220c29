#include "vellum/vel_menu_bar.h"

#include "vellum/vel_area.h"
#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <utility>

namespace zavex::vellum {

using mathbase::Vector2f;

MenuBar::MenuBar()
{
    mType = mId = mCaption = "menubar";
    mStyle = widgetStyle();
}

void MenuBar::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    for (xml::IteratorConst item = element.createIterator("item"); ++item;)
        if (!item->getValue("caption").empty())
            addItem(item);
}

void MenuBar::resetContext()
{
    mMouseOverIndex = -1;
    Control::resetContext();
}

void MenuBar::draw(Area area, Area parent, Area clip)
{
    drawField(getRender(), mStyle, area, mInactive ? Look::INACTIVE : Look::NORMAL, false);
    for (std::size_t i = 0; i < mMenu.size(); ++i)
        drawTitle(i, area);
    Control::draw(area, parent, clip);
}

void MenuBar::addItem(xml::IteratorConst& item)
{
    auto menu = std::make_unique<ContextData>();
    menu->setCaption(item->getValue("caption"));
    menu->setColors(mStyle);
    menu->load(item);
    menu->setParent(this);
    mMenu.push_back(std::move(menu));
}

void MenuBar::setMenuContext(std::int32_t index)
{
    mMouseOverIndex = index;
    Context& menu = *mMenu.at(static_cast<std::size_t>(index));
    const Area world = getAreaWorld();
    menu.setPosition(
        Vector2f(world.mMin.x + titleArea(static_cast<std::size_t>(index)).mMin.x, world.mMax.y));
    setContext(&menu);
}

/** The title at a point of the bar; -1 when there is none. */
std::int32_t MenuBar::titleAt(Vector2f point) const
{
    for (std::size_t i = 0; i < mMenu.size(); ++i)
        if (contains(titleArea(i), point))
            return static_cast<std::int32_t>(i);
    return -1;
}

/** The rectangle of a title's text, as high as the bar, in the bar's coordinates. */
Control::Area MenuBar::titleArea(std::size_t index) const
{
    const Render& render = getRender();
    float left = mBarOffset;
    for (std::size_t i = 0; i < index; ++i)
        left += render.getTextLength(mMenu[i]->getCaption()) + mBarSpacing;
    const float width = render.getTextLength(mMenu[index]->getCaption());
    return {left, 0.0f, left + width, getArea().getHeight()};
}

/** Takes note of the title under the pointer, none at -1; an open menu moves along to it. */
void MenuBar::mark(std::int32_t index)
{
    for (std::size_t i = 0; i < mMenu.size(); ++i)
        mMenu[i]->mMouseOver = static_cast<std::int32_t>(i) == index;
    mMouseInsideIndex = index >= 0;
    if (!mClicked)
        mMouseOverIndex = mInactive ? -1 : index;
    else if (mMouseInsideIndex && mMouseOverIndex >= 0 && index != mMouseOverIndex)
        setMenuContext(index);
}

void MenuBar::press(const Event& event)
{
    hover(event);
    if (const std::int32_t index = titleAt(event.mousePos); index >= 0 && !mInactive) {
        mFirstHit = !mClicked;
        mClicked = true;
        setMenuContext(index);
    }
}

void MenuBar::pressOther(const Event& event)
{
    hover(event);
    if (mClicked)
        close();
}

bool MenuBar::release(const Event&)
{
    if (mFirstHit && mMouseInsideIndex)
        mFirstHit = false;
    else
        close();
    return false;
}

void MenuBar::drop()
{
    mClicked = mFirstHit = false;
    mMouseOverIndex = -1;
}

void MenuBar::close()
{
    drop();
    resetContext();
}

void MenuBar::drawTitle(std::size_t index, const Area& area)
{
    Render& render = getRender();
    const Area title = titleArea(index) + area.mMin;
    const bool marked = static_cast<std::int32_t>(index) == mMouseOverIndex;
    const Look look = mInactive ? Look::INACTIVE : marked ? Look::HOVERED : Look::NORMAL;
    if (marked) {
        const float margin = std::min(mBarOffset, mBarSpacing / 2.0f);
        fillBox(render, pick(mStyle.mBack, mClicked ? Look::PRESSED : look),
                {title.mMin.x - margin, title.mMin.y, title.mMax.x + margin, title.mMax.y});
    }
    // As a row of a menu: text on the mark has a colour of its own, where there is one.
    const ColorPair text = pick(mStyle.mText, mInactive ? Look::INACTIVE : Look::NORMAL);
    const bool onMark = marked && mStyle.mText.mHighlight2.w > 0.0f;
    const style::Color& color = onMark ? mStyle.mText.mHighlight2 : text.first;
    render.setColor(color, color);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(mMenu[index]->getCaption(), Vector2f(title.mMin.x, title.getCenter().y));
    render.setAlign(display::Font::ALIGN_CENTER);
}

} // namespace zavex::vellum
