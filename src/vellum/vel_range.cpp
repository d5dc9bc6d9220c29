#include "vellum/vel_range.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

namespace {

constexpr float LARGEST_BOUND = 1e9f;
constexpr float STEP = 0.05f; // of the range
constexpr float PAGE = 0.2f;  // of the range

float boundOf(float number)
{
    return std::clamp(number, -LARGEST_BOUND, LARGEST_BOUND);
}

} // namespace

void Range::setBounds(float first, float second)
{
    mLower = boundOf(std::min(first, second));
    mUpper = boundOf(std::max(first, second));
}

bool Range::setUnit(float unit)
{
    const float cut = std::clamp(unit, 0.0f, 1.0f);
    if (std::isnan(cut) || cut == mUnit)
        return false;
    mUnit = cut;
    return true;
}

bool Range::setValue(float value)
{
    const float extent = mUpper - mLower;
    return setUnit(extent > 0.0f ? (value - mLower) / extent : 0.0f);
}

float Range::value() const
{
    return std::lerp(mLower, mUpper, mUnit);
}

std::optional<float> Range::unitAfterKey(display::Key key) const
{
    switch (key) {
        case display::KEY_UP:
        case display::KEY_RIGHT: return mUnit + STEP;
        case display::KEY_DOWN:
        case display::KEY_LEFT: return mUnit - STEP;
        case display::KEY_PAGEUP: return mUnit + PAGE;
        case display::KEY_PAGEDOWN: return mUnit - PAGE;
        case display::KEY_HOME: return 0.0f;
        case display::KEY_END: return 1.0f;
        default: return std::nullopt;
    }
}

float Range::unitAfterWheel(float steps) const
{
    return mUnit + STEP * steps;
}

} // namespace zavex::vellum
