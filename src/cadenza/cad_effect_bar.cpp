#include "cadenza/cad_effect.h"

#include "cadenza/cad_plugin.h"
#include "cadenza/cad_timeline.h"
#include "display/dis_font.h"
#include "vellum/vel_area.h"
#include "vellum/vel_container.h"
#include "vellum/vel_look.h"
#include "vellum/vel_render.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>

namespace zavex::cadenza {

using mathbase::Vector2f;

namespace {

constexpr float NARROWEST = toPixels(2.0f); // that a drag leaves of a bar
constexpr float HANDLE_REACH = 10.0f;       // pixels from either end of the header
constexpr float HANDLE_WIDTH = 8.0f;        // pixels
constexpr float HANDLE_MARGIN = 1.0f;       // pixels between a handle and the inside of the header
constexpr float HEADER_MARGIN = 2.0f;       // pixels between the edge of the header and its inside
constexpr float FINE = 0.1f;                // of the pointer's movement, with a shift key
constexpr float MOST_SECONDS = 1e6f;        // what a bar can show, either way

/** Where a time lies on the timeline, in pixels; a finite number for any time. */
float placeOf(float seconds)
{
    if (std::isnan(seconds))
        return 0.0f;
    return toPixels(std::clamp(seconds, -MOST_SECONDS, MOST_SECONDS));
}

} // namespace

vellum::Control::Area Effect::getOccupiedArea() const
{
    return mLocked ? vellum::topStrip(getArea(), HEADER_HEIGHT) : LayoutStack::getOccupiedArea();
}

bool Effect::acceptEvents(vellum::Event& event)
{
    return mMouseOverIndex != NOTHING || LayoutStack::acceptEvents(event);
}

void Effect::draw(Area area, Area parent, Area clip)
{
    vellum::Render& render = getRender();
    const Area header = vellum::topStrip(area, HEADER_HEIGHT);
    Area inside = header;
    inside.expand(-HEADER_MARGIN);

    vellum::fillBox(render, vellum::borderOf(mStyle.mCaption), area);
    vellum::drawBorder(render, vellum::borderOf(mStyle.mBack), area);
    render.drawBox(header, vellum::Render::GRADIENT_VERTICAL);
    drawHeader(inside);

    const float top = inside.mMin.y + HANDLE_MARGIN;
    const float bottom = inside.mMax.y - HANDLE_MARGIN;
    const float left = inside.mMin.x + HANDLE_MARGIN;
    const float right = inside.mMax.x - HANDLE_MARGIN;
    drawHandle({left, top, left + HANDLE_WIDTH, bottom}, START_HANDLE);
    drawHandle({right - HANDLE_WIDTH, top, right, bottom}, END_HANDLE);
    drawName(area, clip);
    // The children only: the stack's own background would cover the header.
    Control::draw(area, parent, clip); // NOLINT(bugprone-parent-virtual-call)
}

void Effect::setSpan(float start, float end)
{
    mStart = start;
    mEnd = end;
    for (PluginBase* plugin : mPlugin)
        plugin->setWidth(placeOf(mEnd) - placeOf(mStart));
}

void Effect::updatePlugins()
{
    const float width = mArea.mMax.x - mArea.mMin.x;
    for (PluginBase* plugin : mPlugin)
        plugin->setupControl(width);
    recalculate(true);
}

void Effect::setupControl()
{
    if (xml::IteratorConst colours = getStyle("effect"); ++colours)
        loadStyle(colours);
    setArea({0, 0, 0, 0});

    auto* header = new vellum::Container; // owned by this control from here on
    header->setCaption("hej");
    header->setArea({0, 0, HEADER_WIDTH, HEADER_HEIGHT});
    addControl(header, 0);
    for (PluginBase* plugin : mPlugin)
        addControl(plugin->getControl(), 0);

    const Area occupied = getOccupiedArea();
    setArea({placeOf(mStart), occupied.mMin.y, placeOf(mEnd), occupied.mMax.y});
    updatePlugins();
}

bool Effect::isFocusedBar() const
{
    return mParent && mParent->getFocus() == this;
}

/** What can be dragged at a point of the bar; the end handle first where a bar is narrow. */
int Effect::gripAt(Vector2f point) const
{
    const Area area = vellum::atOrigin(getArea());
    if (point.y >= HEADER_HEIGHT)
        return NOTHING;
    if (area.mMax.x - HANDLE_REACH <= point.x && vellum::contains(area, point))
        return END_HANDLE;
    if (point.x < HANDLE_REACH && vellum::contains(area, point))
        return START_HANDLE;
    return HEADER;
}

void Effect::hover(const vellum::Event& event)
{
    if (!mLocked)
        mMouseOverIndex = mMouseOver ? gripAt(event.mousePos) : NOTHING;
}

/** What is dragged stays marked. */
void Effect::endHover()
{
    if (!mMouseDown)
        mMouseOverIndex = NOTHING;
}

void Effect::drag(const vellum::Event& event)
{
    if (!mLocked)
        dragBy(-event.mouseDelta.x * (event.shift() ? FINE : 1.0f));
}

bool Effect::isOnHeader(const vellum::Event& event) const
{
    const Area header = vellum::topStrip(vellum::atOrigin(getArea()), HEADER_HEIGHT);
    return vellum::contains(header, event.mousePos);
}

/** Moves what is held by pixels, and the effect's span with it. */
void Effect::dragBy(float distance)
{
    Area area = mArea;
    if (mMouseOverIndex == START_HANDLE) {
        area.mMin.x = std::max(0.0f, std::min(area.mMin.x + distance, area.mMax.x - NARROWEST));
    } else if (mMouseOverIndex == HEADER) {
        const float start = std::max(0.0f, area.mMin.x + distance);
        area.mMax.x += start - area.mMin.x;
        area.mMin.x = start;
    } else {
        area.mMax.x = std::max(area.mMin.x + NARROWEST, area.mMax.x + distance);
    }
    if (area.mMax.x <= area.mMin.x) // the script's end lay before its start, or before 0
        area.mMax.x = area.mMin.x + NARROWEST;

    setArea(area);
    setSpan(toSeconds(area.mMin.x), toSeconds(area.mMax.x));
    updatePlugins();
}

void Effect::press(const vellum::Event& event)
{
    mMouseDown = mMouseDown || (mMouseOver && isOnHeader(event));
}

void Effect::pressOther(const vellum::Event& event)
{
    if (event.button != display::MOUSE_RIGHT || !isOnHeader(event))
        return;
    drop(); // the release goes to the menu
    mContext.setPosition(event.mousePosWorld);
    setContext(&mContext);
}

void Effect::choose(const std::string& action)
{
    if (action == "context.on/off")
        setInactive(!getInactive());
    else if (action == "context.lock/unlock")
        toggleLock();
}

void Effect::toggleLock()
{
    mLocked = !mLocked;
    mMouseOverIndex = NOTHING;
    updatePlugins();
    if (!mLocked)
        showLanes();
}

/** Makes room for the lanes of a bar that was set up while it was locked. */
void Effect::showLanes()
{
    float height = mArea.getHeight();
    for (vellum::Control* child : mChild)
        height = std::max(height, child->getArea().mMax.y);
    if (height == mArea.getHeight())
        return;

    mArea.mMax.y = mArea.mMin.y + height;
    if (mParent)
        mParent->childResized();
}

/** The header's colours say whether the effect is locked, off or the one clicked last. */
void Effect::drawHeader(const Area& inside)
{
    vellum::Render& render = getRender();
    vellum::Look look = isFocusedBar() ? vellum::Look::PRESSED : vellum::Look::NORMAL;
    if (mLocked || getInactive())
        look = vellum::Look::INACTIVE;
    vellum::fillBox(render, vellum::pairOf(mLocked ? mStyle.mCaption : mStyle.mBack, look), inside);
    if (mMouseOverIndex == HEADER)
        vellum::fillBox(render, vellum::pairOf(mStyle.mBack, vellum::partLook(true, mMouseDown)),
                        inside);
}

void Effect::drawHandle(const Area& area, Grip grip)
{
    vellum::fillBox(
        getRender(),
        vellum::pairOf(mStyle.mCaption, vellum::partLook(mMouseOverIndex == grip, mMouseDown)),
        area);
}

/** The name moves to the left where the bar is cut off on the right, so that it can be read. */
void Effect::drawName(const Area& area, const Area& clip)
{
    vellum::Render& render = getRender();
    const bool isMarked = isFocusedBar() && mMouseOverIndex != HEADER;
    const style::Color& color = isMarked ? mStyle.mText.mPushed1 : mStyle.mText.mColor1;
    const float x = std::min(area.getCenter().x, clip.mMax.x - render.getTextLength(mName));

    render.setColor(color, color);
    render.setAlign(display::Font::ALIGN_CENTER);
    render.drawText(mName, {x, area.mMin.y + HEADER_HEIGHT / 2.0f});
}

} // namespace zavex::cadenza
