// One picture of every control, the values in each of their states.

#include "vellum/mouse.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_stat.h"
#include "vellum/vel_vellum.h"

#include "am/am.h"
#include "common/zvx_system.h"
#include "support/gl_display.h"
#include "support/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>

namespace zavex::vellum::test {
namespace {

constexpr int WIDTH = 1024; // pixels
constexpr int HEIGHT = 768;
constexpr float FRINGE = 3.0f; // pixels around a control that are copied with it

/** The rows of the panel in which each column is a state. */
const char* const VALUES[] = {"button", "toggle",    "checkbox", "radiobutton", "slider",
                              "knob",   "textinput", "number",   "password",    "drop-down"};

constexpr Vector2f NOWHERE(576, 600); // between controls

/** Copies what lies in `area` and a little around it. */
void copy(const zavex::test::Picture& from, const Control::Area& area, zavex::test::Picture& to)
{
    const auto left = static_cast<std::size_t>(area.mMin.x - FRINGE);
    const auto right = static_cast<std::size_t>(area.mMax.x + FRINGE);
    const auto bottom = static_cast<std::size_t>(area.mMax.y + FRINGE);
    for (auto y = static_cast<std::size_t>(area.mMin.y - FRINGE); y < bottom; ++y) {
        const auto row = from.rgb.begin() + static_cast<std::ptrdiff_t>(y * WIDTH * 3);
        std::copy(row + static_cast<std::ptrdiff_t>(left * 3),
                  row + static_cast<std::ptrdiff_t>(right * 3),
                  to.rgb.begin() + static_cast<std::ptrdiff_t>((y * WIDTH + left) * 3));
    }
}

class GalleryPicture : public testing::Test {
protected:
    GalleryPicture()
    {
        mArchive.addArchive(CADENZA_TEST_SOURCE_DIR "/../../demo/");
        mWindow->setArchive(&mArchive);
        mVellum.load("gallery.xml");
    }

    Control& control(const std::string& name)
    {
        Control* const found = mVellum.findControl(name);
        if (!found)
            throw Exception("There is no '%s' in the gallery", name.c_str());
        return *found;
    }

    Vector2f middleOf(const std::string& name) { return control(name).getAreaWorld().getCenter(); }

    zavex::test::Picture frame()
    {
        return zavex::test::pictureOf(*mWindow, [] {});
    }

    am::ArchiveManager mArchive;
    zavex::test::GlDisplay mWindow{WIDTH, HEIGHT};
    Vellum mVellum{&*mWindow};
};

TEST_F(GalleryPicture, ShowsEveryControlInEveryState)
{
    constexpr int FRAMES = 60; // until the graph has its height and the real pointer was told
    Mouse mouse(control("gallery"));
    auto& ruler = dynamic_cast<Ruler&>(control("ruler"));
    ruler.setShadow(150.0f);
    ruler.setShadow2(420.0f);
    auto& stat = dynamic_cast<Stat&>(control("stat"));
    stat.setInterval(0.0f); // every value is a sample, whatever the clock says
    for (int i = 0; i < 200; ++i)
        stat.addValue(16.0f + 5.0f * std::sin(0.1f * static_cast<float>(i)) +
                      static_cast<float>(i % 7));
    for (int i = 0; i < FRAMES; ++i)
        mWindow->update();
    mouse.click(middleOf("picker") + Vector2f(30.0f, -40.0f));

    mouse.click(control("tree").getAreaWorld().mMin + Vector2f(60.0f, 24.0f));
    mouse.click(NOWHERE);
    mouse.moveTo(middleOf("ruler") + Vector2f(110.0f, 0.0f));
    for (const std::string row : VALUES)
        control(row + ".inactive").setInactive(true);
    zavex::test::Picture gallery = frame();

    for (const std::string row : VALUES) {
        mouse.moveTo(middleOf(row + ".hovered"));
        copy(frame(), control(row + ".hovered").getAreaWorld(), gallery);

        mouse.moveTo(middleOf(row + ".pressed"));
        mouse.press();
        copy(frame(), control(row + ".pressed").getAreaWorld(), gallery);
        mouse.moveTo(NOWHERE);
        mouse.release();
        mouse.click(NOWHERE);

        control(row + ".focused").setFocus(nullptr);
        copy(frame(), control(row + ".focused").getAreaWorld(), gallery);
    }
    EXPECT_TRUE(LOOKS_LIKE(gallery, "gallery"));
}

} // namespace
} // namespace zavex::vellum::test
