#include "vellum/vel_scrollbars.h"

#include "vellum/vel_area.h"
#include "vellum/vel_frame.h"
#include "vellum/vel_look.h"

#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float STEP = 50.0f;            // pixels of content that a page or a wheel notch scrolls
constexpr float SMALLEST_PARENT = 80.0f; // pixels, width and height

Look handleLook(bool down, bool highlighted)
{
    if (down)
        return Look::PRESSED;
    return highlighted ? Look::HOVERED : Look::NORMAL;
}

} // namespace

/** The state of the bar along one axis. */
struct Scrollbars::Bar {
    bool exists;
    bool& down;
    bool& highlighted;
    Area& track;
    Area& handle;
};

ScrollbarsFrame::ScrollbarsFrame()
{
    mType = mId = "scrollbarsframe";
    mStyle.mBack = style::colorInfo{};
}

void ScrollbarsFrame::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pairOf(mStyle.mBack), area);
    Control::draw(area, parent, clip);
}

Scrollbars::Scrollbars()
{
    mFrame = addOwn(std::make_unique<ScrollbarsFrame>());
    mType = mId = "scrollbars";
    mMaximized = true;
    mStyle = widgetStyle();
    // Tracks lie deeper than the bodies that they border on.
    mStyle.mBack.mColor1 = mStyle.mBack.mInactive1;
    mStyle.mBack.mColor2 = mStyle.mBack.mInactive2;
}

void Scrollbars::load(xml::IteratorConst& element)
{
    Pressable::load(element);
    const std::string& direction = element->getValue("direction");
    if (direction == "horisontal" || direction == "vertical") {
        mHorisontal = direction == "horisontal";
        mVertical = !mHorisontal;
    }
    loadStyleClass(*mFrame, "scrollbarsframe");
    setArea();
}

void Scrollbars::setArea()
{
    const Area area = atOrigin(getArea());
    const Vector2f corner = area.mMax - Vector2f(mBarWidth, mBarWidth);
    mVerticalArea = {mVertical ? corner.x : 0.0f, 0.0f, area.mMax.x, corner.y};
    mHorisontalArea = {0.0f, mHorisontal ? corner.y : 0.0f, corner.x, area.mMax.y};
    mFillerArea = mVertical || mHorisontal ? Area(corner, area.mMax) : Area();

    // The frame is laid out before the bars are: what scrolls depends on its size.
    mFrame->setArea(Area(0.0f, 0.0f, std::max(mVertical ? corner.x : area.mMax.x, 0.0f),
                         std::max(mHorisontal ? corner.y : area.mMax.y, 0.0f)));
    buildScrollbars();
}

void Scrollbars::draw(Area area, Area parent, Area clip)
{
    drawBar(AXIS_X, area.mMin);
    drawBar(AXIS_Y, area.mMin);
    drawCorner(area.mMin);
    Control::draw(area, parent, clip);
}

void Scrollbars::buildScrollbars()
{
    const Vector2f hidden = contentSize() - mFrame->getArea().getSize();
    Vector2f offset(0.0f, 0.0f);
    for (const int axis : {AXIS_X, AXIS_Y}) {
        const Bar bar = barOf(axis);
        const float range = rangeOf(axis);
        float& position = mScrollPosition[axis];
        if (bar.exists) {
            position = std::max(std::min(position, range), 0.0f);
            bar.handle = bar.track;
            bar.handle.mMin[axis] += position;
            bar.handle.mMax[axis] = bar.handle.mMin[axis] + mBarLength;
        }
        if (range > 0.0f)
            offset[axis] = std::round(position / range * std::max(hidden[axis], 0.0f));
    }
    mFrame->setOffset(offset);
}

void Scrollbars::setVertical(bool vertical)
{
    mVertical = vertical;
    setArea();
}

void Scrollbars::setHorisontal(bool horisontal)
{
    mHorisontal = horisontal;
    setArea();
}

Vector2f Scrollbars::getScrollPosition() const
{
    return mScrollPosition;
}

void Scrollbars::setScrollPosition(Vector2f position)
{
    mScrollPosition = position;
    buildScrollbars();
}

Scrollbars::Bar Scrollbars::barOf(int axis)
{
    if (axis == AXIS_X)
        return {mHorisontal, mHorisontalDown, mHorisontalBarHighlight, mHorisontalArea,
                mHorisontalBarArea};
    return {mVertical, mVerticalDown, mVerticalBarHighlight, mVerticalArea, mVerticalBarArea};
}

/** How far the handle of an axis can move, in pixels. */
float Scrollbars::rangeOf(int axis)
{
    return std::max(barOf(axis).track.getSize()[axis] - mBarLength, 0.0f);
}

/** The size of what the frame and its content occupy, wherever the content is scrolled to. */
Vector2f Scrollbars::contentSize()
{
    const Vector2f offset = mFrame->getOffset();
    mFrame->setOffset(Vector2f(0.0f, 0.0f));
    const Vector2f size = mFrame->getOccupiedArea().getSize();
    mFrame->setOffset(offset);
    return size;
}

/** Moves a handle by as much of its range as `contentPixels` are of the content. */
void Scrollbars::scroll(int axis, float contentPixels)
{
    const float content = contentSize()[axis];
    if (content > 0.0f)
        mScrollPosition[axis] += contentPixels * rangeOf(axis) / content;
    reportScroll();
}

void Scrollbars::reportScroll()
{
    buildScrollbars();
    sendAction(ACTION_SCROLL_CHANGED);
}

void Scrollbars::press(const Event& event)
{
    if (mInactive)
        return;
    const Vector2f point = event.mousePos;
    for (const int axis : {AXIS_X, AXIS_Y}) {
        const Bar bar = barOf(axis);
        if (!bar.exists || !contains(bar.track, point))
            continue;
        if (contains(bar.handle, point))
            bar.down = true;
        else
            scroll(axis, point[axis] >= bar.handle.mMax[axis] ? STEP : -STEP);
        return;
    }
    if (mParent && contains(mFillerArea, point))
        beginResize(event.mousePosWorld);
}

void Scrollbars::beginResize(Vector2f pointer)
{
    mResize = true;
    mMousePos = pointer;
    mOldAreaMax = mParent->getArea().mMax;
    for (const int axis : {AXIS_X, AXIS_Y})
        mResizePercent[axis] = rangeOf(axis) > 0.0f ? mScrollPosition[axis] / rangeOf(axis) : 0.0f;
}

bool Scrollbars::release(const Event&)
{
    const bool scrolled = mVerticalDown || mHorisontalDown;
    drop();
    if (scrolled)
        sendAction(ACTION_SCROLL_CHANGED);
    return false;
}

/** False when there is no bar to move. */
bool Scrollbars::turnWheel(const Event& event)
{
    const int axis = event.ctrl() ? AXIS_X : AXIS_Y;
    if (!barOf(axis).exists)
        return false;
    scroll(axis, -STEP * event.mouseDeltaWheel);
    return true;
}

void Scrollbars::hover(const Event& event)
{
    mHorisontalBarHighlight = mHorisontal && contains(mHorisontalBarArea, event.mousePos);
    mVerticalBarHighlight = mVertical && contains(mVerticalBarArea, event.mousePos);
}

void Scrollbars::endHover()
{
    mVerticalBarHighlight = mHorisontalBarHighlight = false;
}

void Scrollbars::drag(const Event& event)
{
    hover(event);
    for (const int axis : {AXIS_X, AXIS_Y}) {
        if (!barOf(axis).down)
            continue;
        mScrollPosition[axis] -= event.mouseDelta[axis];
        reportScroll();
        return;
    }
    if (mResize && mParent)
        resizeParent(event.mousePosWorld);
}

void Scrollbars::resizeParent(Vector2f pointer)
{
    const Area frame = mParent->getArea();
    Vector2f corner = frame.mMin + Vector2f(SMALLEST_PARENT, SMALLEST_PARENT);
    corner.maxi(mOldAreaMax + pointer - mMousePos);
    if (!mParent->moveCorner(corner))
        return;
    mScrollPosition = {mResizePercent.x * rangeOf(AXIS_X), mResizePercent.y * rangeOf(AXIS_Y)};
    buildScrollbars();
    sendAction(ACTION_WINDOW_RESIZE);
}

void Scrollbars::drawBar(int axis, Vector2f origin)
{
    const Bar bar = barOf(axis);
    if (!bar.exists)
        return;
    // The gradients run across the bars.
    const int gradient = axis == AXIS_X ? Render::GRADIENT_VERTICAL : Render::GRADIENT_HORISONTAL;
    fillBox(getRender(), pick(mStyle.mBack, Look::NORMAL), bar.track + origin, gradient);
    fillBox(getRender(), pick(mStyle.mCaption, handleLook(bar.down, bar.highlighted)),
            bar.handle + origin, gradient);
}

void Scrollbars::drawCorner(Vector2f origin)
{
    if (!mVertical && !mHorisontal)
        return;
    fillBox(getRender(), pick(mStyle.mBack, mResize ? Look::PRESSED : Look::HOVERED),
            mFillerArea + origin);
}

} // namespace zavex::vellum
