#include "vellum/vel_ruler.h"

#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float SMALL_TICK_TOP = 0.8f;    // of the strip's height
constexpr float LABELLED_TICK_TOP = 0.6f; // of the strip's height
constexpr int DECIMALS = 1;

// A label's alpha grows with its distance from the pointer: none at 30 pixels, all of it at 50.
constexpr float FADE_PER_PIXEL = 0.05f;
constexpr float FADE_START = -1.5f;

constexpr double CLOSEST_TICKS = 1.0; // pixels
constexpr double LABEL_REACH = 64.0;  // pixels by which a label may stick out from its tick

/** Stands in front of what the ruler itself draws. */
class Content final : public Frame {
public:
    Content() { mStyle = style(); }

    Control* clone() override { return new Content; }
};

/** Calls `draw` with the distance of every tick from the left edge that the clip may show. */
template <typename Draw>
void forEachTick(const Render::Area& area, const Render::Area& clip, float step, Draw draw)
{
    if (!(step > 0.0f))
        return;
    const double spacing = std::max(static_cast<double>(step), CLOSEST_TICKS);
    const double left = area.mMin.x;
    const double from = static_cast<double>(clip.mMin.x) - left - LABEL_REACH;
    const double to = std::min(static_cast<double>(area.getWidth()),
                               static_cast<double>(clip.mMax.x) - left + LABEL_REACH);
    double i = std::max(std::ceil(from / spacing), 0.0);
    while (i * spacing < to)
        draw(static_cast<float>(i++ * spacing));
}

} // namespace

Ruler::Ruler()
{
    mFrame = addOwn(std::make_unique<Content>());
    mType = mId = "ruler";
    const style::colorInfo text = mStyle.mText;
    mStyle.mBack.mInactive1 = mStyle.mBack.mInactive2 = text.mInactive1;
    mStyle.mBack.mHighlight1 = mStyle.mBack.mHighlight2 = text.mInactive1;
    mStyle.mText.mHighlight1 = mStyle.mText.mHighlight2 = mStyle.mCaption.mHighlight1;
}

void Ruler::load(xml::IteratorConst& element)
{
    Frame::load(element);
    setArea();
}

void Ruler::setArea()
{
    const Area area = getArea();
    mFrame->setArea(Area(0.0f, mHeight, area.getWidth(), area.getHeight()));
}

void Ruler::draw(Area area, Area parent, Area clip)
{
    fillBox(getRender(), pairOf(mStyle.mBack), area);

    const float step = mInterval / mScale;
    forEachTick(area, clip, step / mSubIntervals,
                [&](float x) { drawTick(area, x, SMALL_TICK_TOP); });
    forEachTick(area, clip, step, [&](float x) {
        drawTick(area, x, LABELLED_TICK_TOP);
        if (x > 0.0f)
            drawLabel(area, x);
    });
    drawReadOut(area);

    // The look of a frame is not the ruler's.
    Control::draw(area, parent, clip); // NOLINT(bugprone-parent-virtual-call)
    getRender().setClipArea(clip);
    drawMarkers(area);
}

void Ruler::setScale(float scale)
{
    mScale = scale;
}

void Ruler::setInterval(float interval)
{
    mInterval = interval;
}

void Ruler::setSubIntervals(float count)
{
    mSubIntervals = count;
}

void Ruler::setShadow(float x)
{
    mShadowX = x;
}

void Ruler::setShadow2(float x)
{
    mShadowX2 = x;
}

/** @param top  Where the tick begins, as a part of the strip's height. */
void Ruler::drawTick(const Area& area, float x, float top)
{
    const float center = area.mMin.x + x;
    fillBox(getRender(), pairOf(mStyle.mBack, Look::INACTIVE),
            {center - 1.0f, area.mMin.y + top * mHeight, center + 1.0f, area.mMin.y + mHeight});
}

void Ruler::drawLabel(const Area& area, float x)
{
    style::Color color = mStyle.mText.mColor1;
    color.w = std::min(FADE_PER_PIXEL * std::abs(mX - x) + FADE_START, 1.0f);
    if (color.w <= 0.0f)
        return;
    Render& render = getRender();
    render.setColor(color, color);
    render.drawText(mNumber.write(x * mScale, DECIMALS),
                    Vector2f(area.mMin.x + x, labelMiddle(area)));
}

void Ruler::drawReadOut(const Area& area)
{
    Render& render = getRender();
    render.setColor(mStyle.mText.mHighlight1, mStyle.mText.mHighlight1);
    render.drawText(mNumber.write(mX * mScale, DECIMALS),
                    Vector2f(std::round(area.mMin.x + mX), labelMiddle(area)));
}

/** The lines that cross the content. */
void Ruler::drawMarkers(const Area& area)
{
    const auto drawLine = [&](float x, const ColorPair& colors) {
        const float left = area.mMin.x + x;
        fillBox(getRender(), colors, {left, area.mMin.y + mHeight, left + 1.0f, area.mMax.y});
    };
    if (mShadowX > 0.0f)
        drawLine(mShadowX, pairOf(mStyle.mCaption, Look::HOVERED));
    if (mShadowX2 > 0.0f)
        drawLine(mShadowX2, pairOf(mStyle.mCaption, Look::PRESSED));
    if (mMouseOver)
        drawLine(mX, pairOf(mStyle.mBack, Look::HOVERED));
}

/** Where labels have their middle: they stand on their ticks, but do not leave the strip. */
float Ruler::labelMiddle(const Area& area) const
{
    const float half = getRender().getFontHeight() / 2.0f;
    const float tick = area.mMin.y + LABELLED_TICK_TOP * mHeight;
    return std::max(std::trunc(tick - half), area.mMin.y + half);
}

} // namespace zavex::vellum
