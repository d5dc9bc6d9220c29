#include "vellum/vel_context.h"

#include "vellum/vel_area.h"
#include "vellum/vel_control_watch.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include "display/dis_display.h"
#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr const char* SUBMENU_MARKER = ">";
constexpr float SUBMENU_GAP = 1.0f; // pixels

Control::style standardStyle()
{
    Control::style colors;
    colors.mBack.mColor1 = style::Color(0.0f, 0.0f, 0.0f, 0.8f);
    colors.mBack.mColor2 = style::Color(0.1f, 0.15f, 0.1f, 0.8f);
    colors.mBack.mHighlight1 = style::Color(1.0f, 1.0f, 1.0f, 1.0f);
    colors.mBack.mHighlight2 = style::Color(1.0f, 1.0f, 1.0f, 0.8f);
    colors.mText.mColor1 = style::Color(1.0f, 1.0f, 1.0f, 1.0f);
    colors.mText.mHighlight1 = style::Color(0.0f, 0.0f, 0.0f, 1.0f);
    colors.mText.mHighlight2 = style::Color(1.0f, 1.0f, 0.7f, 1.0f);
    return colors;
}

} // namespace

Context::Context()
{
    mType = mId = mCaption = "context";
    mStyle = standardStyle();
}

void Context::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    loadItems(element);
}

bool Context::acceptEvents(Event& event)
{
    return Pressable::acceptEvents(event);
}

int Context::handleEvent(Event& event)
{
    Event own = event; // others go on with theirs
    own.mousePos = event.mousePos - getArea().mMin;
    return route(own, 0);
}

void Context::draw(Area area, Area, Area clip)
{
    Render& render = getRender();
    fillBox(render, pairOf(mStyle.mBack), area);
    drawBorder(render, borderOf(mStyle.mBack), area);
    for (std::int32_t i = 0; i < getChildCount(); ++i)
        drawRow(area, i);
    render.setAlign(display::Font::ALIGN_CENTER);
    if (Control* submenu = getOrder(mExpanded))
        submenu->draw(submenu->getArea() + area.mMin, area, clip);
}

void Context::deleteOptions()
{
    deleteControls();
    mSelected = -1;
    mExpanded = -1;
    mHighlighted.clear();
}

Context* Context::addOption(const std::string& caption, const std::string& id)
{
    auto option = std::make_unique<Context>();
    option->setCaption(caption);
    option->setName(id);
    option->mStyle = mStyle;
    addControl(option.get(), -1);
    return option.release();
}

void Context::setOption(const std::string& caption, std::int32_t index)
{
    if (index < 0)
        index = std::max(mSelected, 0);
    if (Control* option = getOrder(index))
        option->setCaption(caption);
}

std::int32_t Context::setHighlight(const std::string& caption)
{
    const auto found = std::ranges::find(mOrder, caption, &Control::getCaption);
    if (found == mOrder.end())
        return -1;
    mHighlighted = caption;
    return static_cast<std::int32_t>(found - mOrder.begin());
}

void Context::setFixedWidth(float width)
{
    mFixedWidth = width;
}

void Context::resize(Vector2f origin)
{
    mOrigin = origin;
    setMaximized(false);
    const float rows = static_cast<float>(getChildCount());
    const float height = (mRowSpacing + ROW_HEIGHT) * rows - mRowSpacing + 2.0f * mBorder;
    const float width =
        mFixedWidth > 0.0f ? mFixedWidth : captionWidth() + 2.0f * mBorder + mUnfoldSpace;

    Vector2f topLeft = mArea.mMin;
    if (display::DisplayGL* display = getDisplay()) {
        const auto windowHeight = static_cast<float>(display->getWindowMode().height);
        topLeft.y -= std::max(origin.y + topLeft.y + height - windowHeight, 0.0f);
    }
    setArea(Area(std::trunc(topLeft.x), std::trunc(topLeft.y), std::trunc(topLeft.x + width),
                 std::trunc(topLeft.y + height)));
    mSelected = -1;
    mExpanded = -1;
}

void Context::open()
{
    takeStyle();
    resize(Vector2f(0.0f, 0.0f));
    setPosition({std::max(mArea.mMin.x - excessAtRight(), 0.0f), mArea.mMin.y});
}

void Context::sendContextEvent(Event& event)
{
    event.action = mCaption + "." + event.action;
    if (mParent)
        mParent->takeChoice(*this, event);
}

void Context::loadItems(xml::IteratorConst& element)
{
    for (xml::IteratorConst item = element.createIterator("item"); ++item;)
        addOption(item->getValue("caption"), "")->load(item);
}

void Context::setColors(const style& owner)
{
    mStyle = owner;
    if (owner.mText.mHighlight1.w == 0.0f)
        mStyle.mText.mHighlight1 = owner.mCaption.mColor1;
    if (owner.mText.mHighlight2.w == 0.0f && owner.mCaption.mColor1.w > 0.0f) {
        mStyle.mBack.mHighlight1 = owner.mCaption.mColor1;
        mStyle.mBack.mHighlight2 = owner.mCaption.mColor2;
        mStyle.mText.mHighlight2 = owner.mBack.mColor1;
    }
    for (Control* option : mOrder)
        if (auto* submenu = dynamic_cast<Context*>(option))
            submenu->setColors(owner);
}

void Context::hover(const Event& event)
{
    hoverRow(rowAt(event.mousePos));
    passToSubmenu(event);
}

void Context::press(const Event& event)
{
    const ControlWatch self(*this);
    if (!passToSubmenu(event) && !self.isGone() && mSelected < 0)
        resetContext();
}

bool Context::release(const Event& event)
{
    const ControlWatch self(*this);
    if (passToSubmenu(event))
        return true;
    return !self.isGone() && getOrder(mSelected) && chooseRow();
}

bool Context::endsOn(display::MouseButton button) const
{
    return button == display::MOUSE_LEFT;
}

float Context::rowOffset(std::int32_t index) const
{
    return static_cast<float>(index) * (mRowSpacing + ROW_HEIGHT);
}

std::int32_t Context::rowAt(Vector2f point) const
{
    const float width = getArea().getWidth();
    for (std::int32_t i = 0; i < getChildCount(); ++i) {
        const float top = mBorder + rowOffset(i);
        if (contains(Area(0.0f, top, width, top + ROW_HEIGHT), point))
            return i;
    }
    return -1;
}

/** For the submenus too; each that was given colours of its own keeps them. */
void Context::takeStyle()
{
    static const style standard = standardStyle();
    if (mStyle == standard)
        loadStyleClass(*this, "context");
    for (Control* option : mOrder)
        if (auto* submenu = dynamic_cast<Context*>(option))
            submenu->takeStyle();
}

/** How far the menu reaches beyond the window's right edge, in pixels; 0 where it does not. */
float Context::excessAtRight() const
{
    display::DisplayGL* const display = getDisplay();
    if (!display)
        return 0.0f;
    const auto windowWidth = static_cast<float>(display->getWindowMode().width);
    return std::max(mOrigin.x + mArea.mMax.x - windowWidth, 0.0f);
}

/** Width of the widest caption in pixels; 0 without rows. */
float Context::captionWidth() const
{
    float width = 0.0f;
    for (Control* option : mOrder)
        width = std::max(width, getRender().getTextLength(option->getCaption()));
    return width;
}

/** Marks a row, or none at -1; between rows an unfolded submenu stays as it is. */
void Context::hoverRow(std::int32_t index)
{
    mSelected = index;
    if (index >= 0 && index != mExpanded) {
        mExpanded = -1;
        unfold(index);
    }
}

void Context::unfold(std::int32_t index)
{
    auto* submenu = dynamic_cast<Context*>(getOrder(index));
    if (!submenu || submenu->getChildCount() == 0)
        return;
    const Area area = getArea();
    mExpanded = index;
    submenu->setPosition(Vector2f(area.getWidth() + SUBMENU_GAP, rowOffset(index)));
    if (!submenu->getParent())
        submenu->setParent(this);
    submenu->resize(mOrigin + area.mMin);

    const float left = -submenu->mArea.getWidth() - SUBMENU_GAP;
    if (submenu->excessAtRight() > 0.0f && mOrigin.x + area.mMin.x + left >= 0.0f)
        submenu->setPosition(Vector2f(left, submenu->mArea.mMin.y));
}

/** Whether the unfolded submenu used the event. */
bool Context::passToSubmenu(const Event& event)
{
    Control* submenu = getOrder(mExpanded);
    if (!submenu)
        return false;
    mSelected = mExpanded;
    Event local = event;
    return submenu->handleEvent(local) != 0;
}

bool Context::chooseRow()
{
    Event choice;
    choice.type = Event::CONTEXT;
    choice.action = getOrder(mSelected)->getCaption();
    // The owner may delete this menu, or itself, on hearing of the choice.
    Control* parent = mParent ? mParent : this;
    const ControlWatch watch(*parent);
    sendContextEvent(choice);
    if (!watch.isGone())
        parent->resetContext();
    return true;
}

void Context::drawRow(const Area& area, std::int32_t index)
{
    Render& render = getRender();
    Control& option = *getOrder(index);
    const float left = area.mMin.x + mBorder;
    const float right = area.mMax.x - mBorder;
    const float top = area.mMin.y + mBorder + rowOffset(index);
    const float middle = top + ROW_HEIGHT / 2.0f;
    if (right <= left)
        return; // narrower than its own border
    if (index == mSelected)
        fillBox(render, pairOf(mStyle.mBack, Look::HOVERED), {left, top, right, top + ROW_HEIGHT});

    const style::Color& color = rowColor(option, index);
    render.setColor(color, color);
    render.setAlign(display::Font::ALIGN_LEFT);
    render.drawText(render.fittingText(option.getCaption(), right - left), Vector2f(left, middle));
    if (option.getChildCount() > 0) {
        render.setAlign(display::Font::ALIGN_RIGHT);
        render.drawText(SUBMENU_MARKER, Vector2f(right, middle));
    }
}

const style::Color& Context::rowColor(const Control& option, std::int32_t index) const
{
    if (index == mSelected)
        return mStyle.mText.mHighlight2;
    return option.getCaption() == mHighlighted ? mStyle.mText.mHighlight1 : mStyle.mText.mColor1;
}

} // namespace zavex::vellum
