#include "vellum/vel_interval.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zavex::vellum {

void Interval::setSpeed(float rate)
{
    if (rate > 0.0f)
        mSpeed = 1.0f / rate;
}

void Interval::set(float target, bool immediate)
{
    mValue2 = target;
    if (immediate)
        value = target;
    mValue1 = value;
    mSetTime = immediate ? mLasttime : AT_NEXT_GET;
}

float Interval::get(float time, bool immediate)
{
    if (!mSetup) {
        mLasttime = time;
        mSetup = true;
    }
    if (mSetTime < 0.0f)
        mSetTime = time;
    if (immediate || time >= mSetTime + mSpeed)
        return value = mValue2;

    const float progress = std::max((time - mSetTime) / mSpeed, 0.0f);
    const float way = std::sin(progress * std::numbers::pi_v<float> / 2.0f);
    return value = mValue1 + (mValue2 - mValue1) * way;
}

} // namespace zavex::vellum
