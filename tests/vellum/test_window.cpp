#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/** A window 200 x 150 at (50, 40) of a screen 400 x 300, with one probe as its content. */
struct WindowTest : testing::Test {
    WindowTest() { reset(); }

    void reset()
    {
        root.deleteControls();
        root.addControl(window = new Window);
        window->setArea(Area(50, 40, 250, 190));
        window->setCallback(&observer);
        content = &addProbe(*window, "content", Area(10, 10, 60, 60));
        root.setOffset(Vector2f(0, 0));
    }

    std::string area() { return text(window->getArea()); }

    Observer observer;
    Root root{Area(0, 0, 400, 300)};
    Window* window = nullptr;
    Probe* content = nullptr;
    Mouse mouse{root};
};

constexpr struct DragCase {
    const char* name;
    Vector2f movement;
    const char* area;
} DRAG_CASES[] = {
    {"Freely",               {30.0f, 20.0f},   "80 60 280 210"  },
    {"PastTheTopLeft",       {-80.0f, -90.0f}, "0 0 200 150"    },
    {"PastTheBottomRight",   {900.0f, 900.0f}, "200 150 400 300"},
    {"PastOneEdgeAlongside", {-80.0f, 20.0f},  "0 60 200 210"   },
};

TEST_F(WindowTest, DragStopsAtTheParentsEdges)
{
    for (const DragCase& row : DRAG_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        const Vector2f from(100, 50);
        mouse.drag(from, from + row.movement);
        EXPECT_EQ(area(), row.area);
        mouse.moveTo(from);
        EXPECT_EQ(area(), "50 40 250 190") << "the pointer keeps hold of the same point";
    }
}

TEST_F(WindowTest, FollowsThePointerOnAScrolledParent)
{
    root.setOffset(Vector2f(10, 5));
    mouse.drag(Vector2f(100, 50), Vector2f(20, 70));
    EXPECT_EQ(text(window->getArea() + root.getOffset()), "0 60 200 210");
}

TEST_F(WindowTest, AReleaseAnywhereEndsTheDrag)
{
    mouse.drag(Vector2f(100, 50), Vector2f(390, 290));
    mouse.release(display::MOUSE_RIGHT);
    mouse.moveTo(Vector2f(110, 50));
    EXPECT_EQ(area(), "60 40 260 190") << "another button's release does not";
    mouse.moveTo(Vector2f(390, 290));
    mouse.release();
    mouse.moveTo(Vector2f(210, 160));
    mouse.moveTo(Vector2f(220, 170));
    EXPECT_EQ(area(), "200 150 400 300");
}

TEST_F(WindowTest, HidingEndsTheDrag)
{
    mouse.drag(Vector2f(100, 50), Vector2f(110, 50));
    window->setVisible(false);
    window->setVisible(true);
    mouse.moveTo(Vector2f(150, 90));
    EXPECT_EQ(area(), "60 40 260 190");
}

TEST_F(WindowTest, OnlyTheLeftButtonOnAnActiveCaptionDrags)
{
    mouse.moveTo(Vector2f(100, 50));
    mouse.press(display::MOUSE_RIGHT);
    mouse.moveTo(Vector2f(110, 60));
    window->getOrder(0)->setInactive(true);
    mouse.drag(Vector2f(100, 50), Vector2f(110, 60));
    mouse.doubleClick(Vector2f(100, 50));
    mouse.drag(Vector2f(100, 66), Vector2f(110, 76)); // the content
    EXPECT_EQ(area(), "50 40 250 190");
    EXPECT_TRUE(observer.heard.empty());
}

TEST_F(WindowTest, ADoubleClickMaximizesAndAnotherRestores)
{
    mouse.doubleClick(Vector2f(100, 50));
    EXPECT_EQ(area(), "0 0 400 300");
    EXPECT_EQ(text(window->getOrder(1)->getArea()), "0 26 400 300");
    mouse.drag(Vector2f(100, 10), Vector2f(150, 40));
    mouse.release();
    EXPECT_EQ(area(), "0 0 400 300") << "not dragged while maximized";

    mouse.doubleClick(Vector2f(100, 10));
    EXPECT_EQ(area(), "50 40 250 190");
    EXPECT_EQ(text(window->getOrder(1)->getArea()), "0 26 200 150");
    ASSERT_EQ(observer.heard.size(), 2u);
    EXPECT_EQ(observer.heard[1].control, window);
    EXPECT_EQ(observer.heard[1].action, ACTION_WINDOW_RESIZE);
}

TEST_F(WindowTest, CutsItsCaptionToItsBar)
{
    window->setCaption("a caption far too long for a window that is two hundred pixels wide");
    root.draw(root.getArea(), root.getArea(), root.getArea());
    ASSERT_EQ(root.render.texts.size(), 1u);
    EXPECT_EQ(root.render.texts[0].position, Vector2f(58, 53));
    EXPECT_EQ(root.render.texts[0].text.size(), 30u) << "184 pixels, 6 a letter";
}

} // namespace

} // namespace zavex::vellum::test
