#include "e2e/screen_picture.h"

#include "common/zvx_system.h"

#include <cstdlib>
#include <memory>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace zavex::test {

ScreenPicture captureScreen(const std::string& display, int width, int height)
{
    const std::unique_ptr<Display, int (*)(Display*)> server(XOpenDisplay(display.c_str()),
                                                             XCloseDisplay);
    if (!server)
        throw Exception("No screen '%s'", display.c_str());
    XImage* const image =
        XGetImage(server.get(), XDefaultRootWindow(server.get()), 0, 0,
                  static_cast<unsigned>(width), static_cast<unsigned>(height), AllPlanes, ZPixmap);
    if (image == nullptr)
        throw Exception("Screen '%s' cannot be read", display.c_str());

    ScreenPicture picture{width, height, {}};
    picture.pixels.reserve(3 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const unsigned long pixel = XGetPixel(image, x, y);
            for (const int shift : {16, 8, 0})
                picture.pixels.push_back(static_cast<std::uint8_t>(pixel >> shift & 0xff));
        }
    }
    XDestroyImage(image);
    return picture;
}

double meanDifference(const ScreenPicture& one, const ScreenPicture& other)
{
    double sum = 0.0;
    for (std::size_t index = 0; index < one.pixels.size(); ++index)
        sum += std::abs(one.pixels[index] - other.pixels[index]);
    return sum / static_cast<double>(one.pixels.size());
}

} // namespace zavex::test
