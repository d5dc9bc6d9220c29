#pragma once

// How long a time is on the timeline: ruler, markers, bars, lanes and what is hit on them all ask
// here. Nothing else knows the scale.

namespace zavex::cadenza {

inline constexpr float PIXELS_PER_SECOND = 10.0f;
inline constexpr float SECONDS_PER_PIXEL = 1.0f / PIXELS_PER_SECOND;

constexpr float toPixels(float seconds)
{
    return PIXELS_PER_SECOND * seconds;
}

constexpr float toSeconds(float pixels)
{
    return SECONDS_PER_PIXEL * pixels;
}

} // namespace zavex::cadenza
