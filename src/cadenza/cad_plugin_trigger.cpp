#include "cadenza/cad_plugin_trigger.h"

#include "xml/xml_iterator.h"

#include <algorithm>
#include <utility>

namespace zavex::cadenza {

namespace {

constexpr float FLASH_FALL = 5.0f; // per second

// Passed in one step; far beyond any series, it keeps the conversion to an integer defined.
constexpr float MOST_FIRINGS = 1e9f;

/** How many firings lie before `elapsed` seconds (positive) since the first. */
std::uint32_t firingsBefore(const Trigger::ActionData& action, float elapsed)
{
    if (!(action.mDelay > 0.0f))
        return action.mRepeat;
    return 1 + static_cast<std::uint32_t>(std::min(elapsed / action.mDelay, MOST_FIRINGS));
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

void Trigger::save(xml::Iterator& it)
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
    return Control::acceptEvents(event) || mPushed || mHighlight >= 0;
}

} // namespace zavex::cadenza
