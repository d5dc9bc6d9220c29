#pragma once

#include "display/dis_display.h"
#include "display/dis_windowmode.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

/** Whether two ways of drawing show the same. */
namespace zavex::bench {

/** What the window shows: red, green and blue bytes. */
inline std::vector<std::uint8_t> screenshot(display::DisplayGL& display)
{
    const display::WindowMode& mode = display.getWindowMode();
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(mode.width) *
                                     static_cast<std::size_t>(mode.height) * 3);
    display.getScreenShotRGB24(pixels.data());
    return pixels;
}

/** The largest difference of two pictures, in 0..255; 255 when the first of them is empty. */
inline int differenceOf(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b)
{
    if (std::all_of(a.begin(), a.end(), [](std::uint8_t value) { return value == 0; }))
        return 255;
    int largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

/** The mean difference of two pictures, in 0..255; 255 when the first of them is empty. */
inline double meanDifferenceOf(const std::vector<std::uint8_t>& a,
                               const std::vector<std::uint8_t>& b)
{
    if (std::all_of(a.begin(), a.end(), [](std::uint8_t value) { return value == 0; }))
        return 255.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += std::abs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

} // namespace zavex::bench
