#include "vellum/vel_stat.h"

#include "vellum/vel_look.h"
#include "vellum/vel_render.h"

#include "display/dis_font.h"

#include <algorithm>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float MAXIMUM_EASING = 0.04f; // of the way to the true maximum, each frame
constexpr float LINE_WIDTH = 2.0f;      // pixels
constexpr float BELOW_BOTTOM = 2.0f;    // pixels: zero lies out of sight
constexpr float HEADROOM = 4.0f;        // pixels that the graph is lower than the control
constexpr float ABOVE_POINTER = 5.0f;   // pixels between the pointer and the read-out
constexpr float NOTHING = -1.0f;
constexpr int DECIMALS = 2;

} // namespace

Stat::Stat() : mValue(HISTORY, 0.0f)
{
    mType = mId = mCaption = "stat";
    mStyle.mBack.mColor1 = style::Color(1.0f, 1.0f, 1.0f, 1.0f);
    mStyle.mBack.mColor2 = style::Color(0.7f, 0.7f, 0.7f, 1.0f);
    mStyle.mBack.mHighlight1 = mStyle.mBack.mHighlight2 = style::Color(1.0f, 1.0f, 0.0f, 1.0f);
    mStyle.mText.mColor1 = style::Color(0.0f, 0.0f, 0.0f, 1.0f);
}

bool Stat::acceptEvents(Event& event)
{
    return mCurrent > 0.0f || Pressable::acceptEvents(event);
}

void Stat::draw(Area area, Area parent, Area clip)
{
    evaluate();
    mValueMax += (mValueMaxWannabe - mValueMax) * MAXIMUM_EASING;
    fillBox(getRender(), pairOf(mStyle.mBack), clip);
    if (mValueMax > 0.0f)
        drawGraph(area, clip);
    if (mCurrent > 0.0f)
        drawReadOut(area);
    Control::draw(area, parent, clip);
}

void Stat::addValue(float value)
{
    mCurrentValue += value;
    mCurrentIndex += 1.0f;
    evaluate();
}

void Stat::setInterval(float seconds)
{
    mInterval = seconds;
}

void Stat::evaluate()
{
    if (mCurrentIndex < 1.0f)
        return;
    const float now = getRender().getTime();
    if (lTime > now)
        mStartTime = lTime;
    lTime = now;
    if (now < mStartTime + mInterval)
        return;

    store(mCurrentValue / mCurrentIndex);
    mCurrentValue = 0.0f;
    mCurrentIndex = 0.0f;
    mStartTime += mInterval;
}

void Stat::store(float sample)
{
    std::shift_right(mValue.begin(), mValue.end(), 1);
    mValue.front() = sample;
    mValueMaxWannabe = std::max(*std::ranges::max_element(mValue), 0.0f);
}

void Stat::hover(const Event& event)
{
    if (!mMouseOver) {
        mCurrent = NOTHING;
        return;
    }
    mMousePos = event.mousePosWorld - Vector2f(0.0f, ABOVE_POINTER);
    mCurrent = mValueMax - event.mousePos.y * mValueMax / getArea().getHeight();
}

void Stat::drawGraph(const Area& area, const Area& clip)
{
    Render& render = getRender();
    render.setLineWidth(LINE_WIDTH);
    render.setColor(mStyle.mBack.mHighlight1, mStyle.mBack.mHighlight2);

    const float bottom = area.mMin.y + area.getHeight() + BELOW_BOTTOM;
    const float height = area.getHeight() - HEADROOM;
    const auto pointOf = [&](std::size_t i) {
        return Vector2f(area.mMin.x + area.getWidth() - static_cast<float>(i),
                        bottom - height * mValue[i] / mValueMax);
    };
    Vector2f newer = pointOf(0);
    for (std::size_t i = 1; i < mValue.size() && newer.x > clip.mMin.x - LINE_WIDTH; ++i) {
        const Vector2f older = pointOf(i);
        render.drawLine(newer, older);
        newer = older;
    }
}

/** Keeps the read-out inside the control; the left edge counts where it is too wide. */
void Stat::drawReadOut(const Area& area)
{
    Render& render = getRender();
    const std::string& text = mNumber.write(mCurrent, DECIMALS);
    const float halfWidth = render.getTextLength(text) / 2.0f;
    mMousePos.y = std::max(mMousePos.y, area.mMin.y + render.getFontHeight() / 2.0f);
    mMousePos.x = std::min(mMousePos.x, area.mMax.x - halfWidth);
    mMousePos.x = std::max(mMousePos.x, area.mMin.x + halfWidth);

    render.setAlign(display::Font::ALIGN_CENTER);
    render.setColor(mStyle.mText.mColor1, mStyle.mText.mColor2);
    render.drawText(text, mMousePos);
}

} // namespace zavex::vellum
