#include "cadenza/cad_plugin_trigger.h"

#include "cadenza/cad_timeline.h"
#include "display/dis_font.h"
#include "vellum/vel_render.h"
#include "xml/xml_iterator.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zavex::cadenza {

using mathbase::Vector2f;

namespace {

constexpr float FLASH_FALL = 5.0f; // per second

// Of a series, or passed in one step; it keeps the conversions to integers defined.
constexpr float MOST_FIRINGS = 1e9f;

constexpr float SHORTEST_DELAY = 0.01f;      // seconds, that a drag leaves
constexpr float FINE = 0.1f;                 // of the pointer's movement, with a shift key
constexpr float BAR_WIDTH = 1.0f;            // pixels
constexpr float REACH = 5.0f;                // pixels around the only bar of a series without delay
constexpr float FIRINGS_END = 4294967296.0f; // more than any series has
constexpr float CLOSEST_BARS = 0.05f;        // pixels from one bar that is drawn to the next
constexpr float FAINTEST_FLASH = 0.01f;

const vellum::style::Color FLAT(0.0f, 0.0f, 0.0f, -1.0f); // second colour: there is none

/** How many firings lie before `elapsed` seconds (positive) since the first. */
std::uint32_t firingsBefore(const Trigger::ActionData& action, float elapsed)
{
    if (!(action.mDelay > 0.0f))
        return action.mRepeat;
    return 1 + static_cast<std::uint32_t>(std::min(elapsed / action.mDelay, MOST_FIRINGS));
}

/** Seconds from one bar to the next; 0 where all firings fall on the start. */
float shownDelay(const Trigger::ActionData& action)
{
    return action.mDelay > 0.0f && std::isfinite(action.mDelay) ? action.mDelay : 0.0f;
}

/**
 * The firing nearest to a point of the lane, with a fraction that is to be cut off; -1 or less, or
 * no number, when there is none.
 *
 * @param x  Pixels from the lane's left edge.
 */
float nearestFiring(const Trigger::ActionData& action, float x)
{
    const float distance = x - toPixels(action.mStart);
    const float delay = toPixels(shownDelay(action));
    if (delay > 0.0f)
        return (distance + delay / 2.0f) / delay;
    return std::abs(distance) < REACH ? 0.0f : -1.0f;
}

/** Every `step`th firing in [first, end). */
struct Bars {
    std::int64_t first = 0;
    std::int64_t end = 0;
    std::int64_t step = 1;
};

/** The bars to draw between two places. @param left, right  Pixels from the lane's left edge. */
Bars barsBetween(const Trigger::ActionData& action, float left, float right)
{
    const float start = toPixels(action.mStart);
    const float distance = toPixels(shownDelay(action));
    const std::int64_t count = action.mRepeat;
    if (!std::isfinite(start))
        return {};
    if (distance == 0.0f)
        return {0, std::min<std::int64_t>(count, 1), 1};

    const auto firstFrom = [&](float x) {
        return static_cast<std::int64_t>(std::clamp(std::ceil(x / distance), 0.0f, FIRINGS_END));
    };
    Bars bars;
    bars.step = std::max<std::int64_t>(firstFrom(CLOSEST_BARS), 1);
    bars.first = firstFrom(left - BAR_WIDTH - start) / bars.step * bars.step;
    bars.end = std::min(firstFrom(right - start), count);
    return bars;
}

} // namespace

Trigger::Trigger() : PluginBase("trigger")
{
    Control::mType = PluginBase::mType;
    mArea = {0, 0, 100, 20};
    mContext.setCaption("trigger");
    mContext.deleteOptions();
    mContext.addOption("adjust", "");
}

void Trigger::load(xml::IteratorConst& it)
{
    for (xml::IteratorConst tag = it.createIterator("action"); ++tag;) {
        auto action = std::make_unique<ActionData>();
        action->mStart = tag->getValueFloat("start");
        if (!tag->getValue("delay").empty())
            action->mDelay = tag->getValueFloat("delay");
        if (!tag->getValue("repeat").empty())
            action->mRepeat = static_cast<std::uint32_t>(std::max(tag->getValueInt("repeat"), 0));
        mAction.push_back(std::move(action));
    }

    if (mAction.empty()) {
        mAction.push_back(std::make_unique<ActionData>());
        mAction.back()->mCount = 1;
    }
}

void Trigger::save(xml::Iterator& it) const
{
    for (const auto& action : mAction) {
        xml::XmlTag tag("action");
        tag.setValue("start", action->mStart);
        tag.setValue("delay", action->mDelay);
        tag.setValue("repeat", static_cast<int>(action->mRepeat));
        it.addChild(tag);
    }
}

void Trigger::setupControl(float width)
{
    fitControl(width);
}

void Trigger::update(float time)
{
    mCurrent = 0;
    if (mLastTime > time) {
        restart(time);
        return;
    }

    mDiff = std::max(mDiff - FLASH_FALL * (time - mHit), 0.0f);
    mHit = time;
    for (const auto& action : mAction)
        mCurrent += fire(*action, time);
    if (mCurrent != 0)
        mDiff = 1.0f;
    mLastTime = time;
}

void Trigger::restart(float time)
{
    mHit = time;
    mDiff = 0.0f;
    for (const auto& action : mAction)
        action->mCount = 0;
    mLastTime = time;
}

std::uint32_t Trigger::fire(ActionData& action, float time)
{
    const float elapsed = time - action.mStart;
    if (!(elapsed > 0.0f) || action.mCount >= action.mRepeat)
        return 0;

    const std::uint32_t counted = action.mCount;
    action.mCount = firingsBefore(action, elapsed);
    return action.mCount > counted ? action.mCount - counted : 0;
}

std::uint32_t Trigger::get(float time) const
{
    return mLastTime <= time ? mCurrent : 0;
}

bool Trigger::acceptEvents(vellum::Event& event)
{
    return mHighlight >= 0 || Pressable::acceptEvents(event);
}

void Trigger::draw(Area area, Area, Area clip)
{
    drawBack(area);

    vellum::Render& render = getRender();
    const Vector2f middle(clip.getCenter().x, area.getCenter().y);
    render.setColor(mStyle.mText.mColor1, FLAT);
    render.setAlign(display::Font::ALIGN_CENTER);
    render.drawText(mName, middle);

    for (const auto& action : mAction)
        drawBars(*action, area, clip);
}

void Trigger::hover(const vellum::Event& event)
{
    mHighlight = -1;
    if (mAction.empty())
        return;
    const ActionData& action = *mAction.front();
    const float firing = nearestFiring(action, event.mousePos.x);
    const float end = std::min(static_cast<float>(action.mRepeat), MOST_FIRINGS);
    if (mMouseOver && firing > -1.0f && firing < end)
        mHighlight = static_cast<std::int32_t>(firing);
}

/** The bar that is dragged stays marked. */
void Trigger::endHover()
{
    if (!mPushed)
        mHighlight = -1;
}

void Trigger::drag(const vellum::Event& event)
{
    const bool isFine = event.leftShift() || event.rightShift();
    const float moved = toSeconds(-event.mouseDelta.x) * (isFine ? FINE : 1.0f);
    ActionData& action = *mAction.front();
    if (mHighlight == 0) {
        action.mStart += moved;
        return;
    }
    const float delay = action.mDelay + moved / static_cast<float>(mHighlight);
    action.mDelay = delay > SHORTEST_DELAY ? delay : SHORTEST_DELAY;
}

void Trigger::press(const vellum::Event&)
{
    mPushed = mHighlight >= 0;
}

void Trigger::pressOther(const vellum::Event& event)
{
    if (event.button != display::MOUSE_RIGHT || mAction.empty())
        return;
    drop(); // the release goes to the menu
    mStretchPos = event.mousePos;
    mContext.setPosition(getAreaWorld().mMin + event.mousePos);
    setContext(&mContext);
}

void Trigger::choose(const std::string& action)
{
    if (action == "trigger.adjust" && !mAction.empty())
        adjustRepeat();
}

void Trigger::adjustRepeat()
{
    ActionData& action = *mAction.front();
    const float repeat = nearestFiring(action, mStretchPos.x) + 1.0f;
    action.mRepeat = repeat > 1.0f ? static_cast<std::uint32_t>(std::min(repeat, MOST_FIRINGS)) : 1;
}

void Trigger::drawBack(const Area& area)
{
    style::Color first = mStyle.mBack.mColor1;
    style::Color second = mStyle.mBack.mColor2;
    if (mDiff >= FAINTEST_FLASH) {
        first = first * (1.0f - mDiff) + mStyle.mBack.mHighlight1 * mDiff;
        second = second * (1.0f - mDiff) + mStyle.mBack.mHighlight2 * mDiff;
    }
    vellum::Render& render = getRender();
    vellum::fillBox(render, {first, second}, area);
    vellum::drawBorder(render, vellum::borderOf(mStyle.mBack), area);
}

/** Where bars lie closer than pixels do, not every one is drawn. */
void Trigger::drawBars(const ActionData& action, const Area& area, const Area& clip)
{
    const float delay = shownDelay(action);
    const std::int32_t highlight = &action == mAction.front().get() ? mHighlight : -1;
    const Bars bars = barsBetween(action, clip.mMin.x - area.mMin.x, clip.mMax.x - area.mMin.x);
    for (std::int64_t j = bars.first; j < bars.end; j += bars.step) {
        const float time = action.mStart + static_cast<float>(j) * delay;
        const float x = area.mMin.x + toPixels(time);
        const bool isHighlighted = j <= highlight && highlight < j + bars.step;
        vellum::fillBox(getRender(),
                        vellum::pairOf(mStyle.mCaption, vellum::partLook(isHighlighted, mPushed)),
                        {x, area.mMin.y + 1.0f, x + BAR_WIDTH, area.mMax.y - 1.0f});
    }
}

} // namespace zavex::cadenza
