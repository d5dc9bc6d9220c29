#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_color_chooser_wheel.h"
#include "vellum/vel_slider.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

/** A chooser at (20, 10) whose field is 120 x 100 pixels, with its slider right of it. */
struct ChooserTest : testing::Test {
    ChooserTest()
    {
        root.addControl(chooser);
        chooser->setArea(Area(20, 10, 156, 110));
        root.setCallback(&observer);
    }

    Control& control(const char* name) { return *chooser->findControl(name); }

    void draw()
    {
        root.render.clear();
        chooser->draw(chooser->getArea(), root.getArea(), chooser->getArea());
    }

    Root root{Area(0, 0, 400, 200)};
    Observer observer;
    ColorChooser* chooser = new ColorChooser;
    Mouse mouse{root};
};

void expectNear(Vector3f actual, Vector3f expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f) << "red";
    EXPECT_NEAR(actual.y, expected.y, 1e-5f) << "green";
    EXPECT_NEAR(actual.z, expected.z, 1e-5f) << "blue";
}

TEST_F(ChooserTest, GivesTheSliderSixteenPixels)
{
    EXPECT_EQ(text(control("colorchooserwheel").getAreaWorld()), "20 10 140 110");
    EXPECT_EQ(text(control("slider").getAreaWorld()), "140 10 156 110");
    EXPECT_EQ(dynamic_cast<Slider&>(control("slider")).getValue(true), 1.0f);
}

struct HueCase {
    const char* name;
    float width;       // of the field
    std::size_t count; // of the pixel columns drawn
    std::size_t index; // of one of them
    float left;        // its distance from the field's left edge
    Vector3f hue;

    friend void PrintTo(const HueCase& hue, std::ostream* out) { *out << hue.name; }
};

constexpr HueCase HUE_CASES[] = {
    {"Red",                      120, 120, 0,   0,   {1, 0, 0}    },
    {"TowardsMagenta",           120, 120, 5,   5,   {1, 0, 0.25f}},
    {"Magenta",                  120, 120, 20,  20,  {1, 0, 1}    },
    {"Blue",                     120, 120, 40,  40,  {0, 0, 1}    },
    {"Cyan",                     120, 120, 60,  60,  {0, 1, 1}    },
    {"Green",                    120, 120, 80,  80,  {0, 1, 0}    },
    {"Yellow",                   120, 120, 100, 100, {1, 1, 0}    },
    {"AlmostRed",                120, 120, 115, 115, {1, 0.25f, 0}},
    {"BlueOfColumnsRoundedDown", 26,  24,  8,   9,   {0, 0, 1}    },
    {"BlueOfColumnsRoundedUp",   28,  30,  10,  9,   {0, 0, 1}    },
    {"OnePixelEach",             6,   6,   5,   5,   {1, 1, 0}    },
};

class ChooserHue : public ChooserTest, public testing::WithParamInterface<HueCase> {};

TEST_P(ChooserHue, FadesToGreyInItsColumnOfPixels)
{
    auto& wheel = dynamic_cast<ColorChooserWheel&>(control("colorchooserwheel"));
    wheel.setIntensity(0.5f);
    const float right = 20.0f + GetParam().width;
    wheel.draw(Area(20, 10, right, 110), root.getArea(), root.getArea());

    ASSERT_EQ(root.render.boxes.size(), GetParam().count);
    const std::size_t i = GetParam().index;
    const float left = 20.0f + GetParam().left;
    EXPECT_EQ(root.render.boxes[i], Area(left, 10, left + 1, 110));
    const Vector4f hue = root.render.boxColors[i];
    expectNear(Vector3f(hue.x, hue.y, hue.z), GetParam().hue);
    EXPECT_EQ(root.render.boxEndColors[i], Vector4f(0.5f, 0.5f, 0.5f, 1.0f));
}

INSTANTIATE_TEST_SUITE_P(Cases, ChooserHue, testing::ValuesIn(HUE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct PickCase {
    const char* name;
    Vector2f point; // in the field
    float slider;
    Vector3f color;

    friend void PrintTo(const PickCase& pick, std::ostream* out) { *out << pick.name; }
};

constexpr PickCase PICK_CASES[] = {
    {"TopLeft",           {0, 0},     1.0f,  {1, 0, 0}            },
    {"ThirdColumnStarts", {40, 0},    1.0f,  {0, 0, 1}            },
    {"RightOfAnEdge",     {25, 0},    1.0f,  {0.75f, 0, 1}        },
    {"LeftOfAnEdge",      {35, 0},    1.0f,  {0, -0.25f, 1}       },
    {"LastHalfColumn",    {115, 0},   1.0f,  {1, 0.25f, 0}        },
    {"Corner",            {120, 100}, 0.75f, {0.25f, 0.25f, 0.25f}},
    {"TopRight",          {120, 0},   1.0f,  {1, 0, 0}            },
    {"HalfWayDown",       {60, 50},   0.5f,  {0.25f, 0.75f, 0.75f}},
    {"BottomWhite",       {60, 100},  0.0f,  {1, 1, 1}            },
    {"BottomBlack",       {60, 100},  1.0f,  {0, 0, 0}            },
};

class ChooserPick : public ChooserTest, public testing::WithParamInterface<PickCase> {};

TEST_P(ChooserPick, IsKnownAfterTheNextDrawing)
{
    auto& slider = dynamic_cast<Slider&>(control("slider"));
    slider.setValue(GetParam().slider, true);
    chooser->controlAction(&slider, ACTION_SLIDER_CHANGED);
    mouse.drag(Vector2f(30, 30), Vector2f(20, 10) + GetParam().point);
    draw();
    expectNear(chooser->getColor(), GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Cases, ChooserPick, testing::ValuesIn(PICK_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ChooserTest, DrawsACrossHairAfterTheFirstClick)
{
    draw();
    EXPECT_TRUE(root.render.lines.empty());
    EXPECT_TRUE(root.render.circles.empty());
    expectNear(chooser->getColor(), Vector3f(0, 0, 0));

    mouse.click(Vector2f(60, 30));
    draw();
    ASSERT_EQ(root.render.lines.size(), 2u);
    EXPECT_EQ(root.render.lines[0].from, Vector2f(20, 30));
    EXPECT_EQ(root.render.lines[0].to, Vector2f(140, 30));
    EXPECT_EQ(root.render.lines[1].from, Vector2f(60, 10));
    EXPECT_EQ(root.render.lines[1].to, Vector2f(60, 110));
    ASSERT_EQ(root.render.circles.size(), 2u);
    EXPECT_EQ(text(root.render.circles[0]), "50 20 70 40");
    EXPECT_EQ(root.render.circleColors[0], Vector4f(0, 0, 0, 1));
    EXPECT_EQ(text(root.render.circles[1]), "52 22 68 38");
    EXPECT_EQ(root.render.circleColors[1], Vector4f(chooser->getColor(), 1.0f));
}

TEST_F(ChooserTest, KeepsTheCrossHairOnAFieldThatShrinks)
{
    mouse.click(Vector2f(130, 100));
    chooser->setArea(Area(20, 10, 96, 60));
    draw();
    ASSERT_EQ(root.render.circles.size(), 2u);
    EXPECT_EQ(root.render.circles[0].getCenter(), Vector2f(80, 60));
    expectNear(chooser->getColor(), Vector3f(0, 0, 0));
}

TEST_F(ChooserTest, ReportsEveryMoveOfADrag)
{
    mouse.moveTo(Vector2f(60, 10));
    EXPECT_EQ(observer.heard.size(), 0u);
    mouse.press();
    mouse.moveTo(Vector2f(80, 10));
    mouse.moveTo(Vector2f(300, 190));
    EXPECT_EQ(observer.heard.size(), 3u);
    mouse.release();
    mouse.moveTo(Vector2f(100, 10));
    draw();
    expectNear(chooser->getColor(), Vector3f(0, 1, 1)); // the last point inside
    mouse.click(Vector2f(148, 60));                     // beside the slider's handle
    ASSERT_EQ(observer.heard.size(), 4u);
    for (const Observer::Heard& heard : observer.heard) {
        EXPECT_EQ(heard.control, chooser);
        EXPECT_EQ(heard.action, ACTION_COLOR);
    }
}

TEST_F(ChooserTest, IgnoresClicksWhileHiddenOrInactiveAndLetsGo)
{
    mouse.moveTo(Vector2f(60, 10));
    chooser->setVisible(false);
    mouse.press();
    chooser->setVisible(true);
    control("colorchooserwheel").setInactive(true);
    mouse.press();
    EXPECT_TRUE(observer.heard.empty());

    control("colorchooserwheel").setInactive(false);
    mouse.press();
    chooser->setVisible(false);
    mouse.moveTo(Vector2f(61, 10));
    chooser->setVisible(true);
    mouse.moveTo(Vector2f(62, 10));
    EXPECT_EQ(observer.heard.size(), 1u);
}

TEST_F(ChooserTest, MayBeDestroyedByItsObserver)
{
    observer.onAction = [this] { root.deleteControls(); };
    mouse.click(Vector2f(60, 30));
    EXPECT_EQ(root.getChildCount(), 0);
}

} // namespace

} // namespace zavex::vellum::test
