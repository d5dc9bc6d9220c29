#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_color_chooser.h"
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
        root.setCallback(&observer);
        reset();
    }

    void reset()
    {
        root.deleteControls();
        root.addControl(chooser = new ColorChooser);
        chooser->setArea(Area(20, 10, 156, 110));
        root.render.clear();
    }

    Control& control(const char* name) { return *chooser->findControl(name); }

    void draw()
    {
        root.render.clear();
        chooser->draw(chooser->getArea(), root.getArea(), chooser->getArea());
    }

    Root root{Area(0, 0, 400, 200)};
    Observer observer;
    ColorChooser* chooser = nullptr;
    Mouse mouse{root};
};

void expectNear(Vector3f actual, Vector3f expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f) << "red";
    EXPECT_NEAR(actual.y, expected.y, 1e-5f) << "green";
    EXPECT_NEAR(actual.z, expected.z, 1e-5f) << "blue";
}

constexpr struct PickCase {
    const char* name;
    Vector2f point; // in the field
    float slider;
    Vector3f color;
} PICK_CASES[] = {
    {"TopLeft",        {0, 0},     1.0f,  {1, 0, 0}            },
    {"RightOfAnEdge",  {25, 0},    1.0f,  {0.75f, 0, 1}        },
    {"LeftOfAnEdge",   {35, 0},    1.0f,  {0, 0, 1}            },
    {"LastHalfColumn", {115, 0},   1.0f,  {1, 0.25f, 0}        },
    {"Corner",         {120, 100}, 0.75f, {0.25f, 0.25f, 0.25f}},
    {"HalfWayDown",    {60, 50},   0.5f,  {0.25f, 0.75f, 0.75f}},
    {"BottomWhite",    {60, 100},  0.0f,  {1, 1, 1}            },
    {"BottomBlack",    {60, 100},  1.0f,  {0, 0, 0}            },
};

TEST_F(ChooserTest, PickIsKnownAfterTheNextDrawing)
{
    for (const PickCase& row : PICK_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        auto& slider = dynamic_cast<Slider&>(control("slider"));
        slider.setValue(row.slider, true);
        chooser->controlAction(&slider, ACTION_SLIDER_CHANGED);
        mouse.drag(Vector2f(30, 30), Vector2f(20, 10) + row.point);
        draw();
        expectNear(chooser->getColor(), row.color);
    }
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

} // namespace

} // namespace zavex::vellum::test
