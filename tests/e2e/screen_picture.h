#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zavex::test {

/** What a screen shows: rows from the top, 3 bytes a pixel (red, green, blue). */
struct ScreenPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    const std::uint8_t* at(int x, int y) const
    {
        return &pixels[3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x))];
    }
};

/** Takes the upper left part of a screen as it is shown. */
ScreenPicture captureScreen(const std::string& display, int width, int height);

/** Mean absolute difference per channel, in 0..255, of two pictures of one size. */
double meanDifference(const ScreenPicture& one, const ScreenPicture& other);

} // namespace zavex::test
