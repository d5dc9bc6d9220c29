#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_caption.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/** A window 200 x 150 at (50, 40) of a screen 400 x 300, with one probe as its content. */
struct WindowTest : testing::Test {
    WindowTest()
    {
        root.addControl(window);
        window->setArea(Area(50, 40, 250, 190));
        window->setCallback(&observer);
        content = &addProbe(*window, "content", Area(10, 10, 60, 60));
    }

    std::string area() { return text(window->getArea()); }

    Observer observer;
    Root root{Area(0, 0, 400, 300)};
    Window* window = new Window;
    Probe* content = nullptr;
    Mouse mouse{root};
};

TEST_F(WindowTest, PutsTheCaptionAboveTheFrameAndContentInside)
{
    EXPECT_EQ(text(window->getOrder(0)->getArea()), "0 0 200 26");
    EXPECT_EQ(text(window->getOrder(1)->getArea()), "0 26 200 150");
    EXPECT_EQ(text(content->getAreaWorld()), "60 76 110 126");
    window->setCaption("tools");
    EXPECT_EQ(window->getOrder(0)->getCaption(), "tools");
}

struct GripCase {
    const char* name;
    Vector2f press;
    bool moves;

    friend void PrintTo(const GripCase& grip, std::ostream* out) { *out << grip.name; }
};

constexpr GripCase GRIP_CASES[] = {
    {"TopLeftCorner",   {50.0f, 40.0f},  true },
    {"LeftOfIt",        {49.0f, 50.0f},  false},
    {"AboveIt",         {60.0f, 39.0f},  false},
    {"LastPixel",       {249.0f, 65.0f}, true },
    {"RightEdge",       {250.0f, 50.0f}, false},
    {"TopOfTheContent", {100.0f, 66.0f}, false},
};

class WindowGrip : public WindowTest, public testing::WithParamInterface<GripCase> {};

TEST_P(WindowGrip, IsTheCaption)
{
    mouse.drag(GetParam().press, GetParam().press + Vector2f(7, 5));
    EXPECT_EQ(area(), GetParam().moves ? "57 45 257 195" : "50 40 250 190");
}

INSTANTIATE_TEST_SUITE_P(Cases, WindowGrip, testing::ValuesIn(GRIP_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct DragCase {
    const char* name;
    Vector2f movement;
    const char* area;

    friend void PrintTo(const DragCase& drag, std::ostream* out) { *out << drag.name; }
};

constexpr DragCase DRAG_CASES[] = {
    {"Freely",               {30.0f, 20.0f},   "80 60 280 210"  },
    {"ToTheTopLeft",         {-50.0f, -40.0f}, "0 0 200 150"    },
    {"PastTheTopLeft",       {-80.0f, -90.0f}, "0 0 200 150"    },
    {"ToTheBottomRight",     {150.0f, 110.0f}, "200 150 400 300"},
    {"PastTheBottomRight",   {900.0f, 900.0f}, "200 150 400 300"},
    {"PastOneEdgeAlongside", {-80.0f, 20.0f},  "0 60 200 210"   },
};

class WindowDrag : public WindowTest, public testing::WithParamInterface<DragCase> {};

TEST_P(WindowDrag, StopsAtTheParentsEdges)
{
    const Vector2f from(100, 50);
    mouse.drag(from, from + GetParam().movement);
    EXPECT_EQ(area(), GetParam().area);
    mouse.moveTo(from);
    EXPECT_EQ(area(), "50 40 250 190") << "the pointer keeps hold of the same point";
}

TEST_P(WindowDrag, FollowsThePointerOnAScrolledParent)
{
    root.setOffset(Vector2f(10, 5));
    const Vector2f from(100, 50);
    mouse.drag(from, from + GetParam().movement);
    EXPECT_EQ(text(window->getArea() + root.getOffset()), GetParam().area);
}

INSTANTIATE_TEST_SUITE_P(Cases, WindowDrag, testing::ValuesIn(DRAG_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(WindowTest, OneLargerThanItsParentStaysAtTheTopLeft)
{
    window->setArea(Area(0, 0, 500, 400));
    window->setPosition(Vector2f(-30, 20));
    EXPECT_EQ(area(), "0 0 500 400");
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

TEST_F(WindowTest, OnlyTheLeftButtonOnAnActiveCaptionDrags)
{
    mouse.moveTo(Vector2f(100, 50));
    mouse.press(display::MOUSE_RIGHT);
    mouse.moveTo(Vector2f(110, 60));
    window->getOrder(0)->setInactive(true);
    mouse.drag(Vector2f(100, 50), Vector2f(110, 60));
    mouse.doubleClick(Vector2f(100, 50));
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

TEST_F(WindowTest, AnObserverMayDeleteItWhenItIsResized)
{
    observer.onAction = [this] { root.deleteControls(); };
    mouse.doubleClick(Vector2f(100, 50));
    EXPECT_EQ(root.getChildCount(), 0);
}

TEST_F(WindowTest, DrawsItsCaptionWithinItsBar)
{
    window->setCaption("a caption far too long for a window that is two hundred pixels wide");
    root.draw(root.getArea(), root.getArea(), root.getArea());
    ASSERT_EQ(root.render.texts.size(), 1u);
    EXPECT_EQ(root.render.texts[0].position, Vector2f(58, 53));
    EXPECT_EQ(root.render.texts[0].text.size(), 30u) << "184 pixels, 6 a letter";
    EXPECT_EQ(content->drawn.size(), 1u);
    EXPECT_EQ(text(root.render.borders.back()), "50 40 250 190");
}

TEST(CaptionAlone, ShowsTextAndMovesNothing)
{
    Root root;
    auto* caption = new Caption;
    root.addControl(caption);
    caption->setArea(Area(0, 0, 100, 20));
    Mouse mouse(root);
    mouse.drag(Vector2f(10, 10), Vector2f(60, 15));
    mouse.release();
    mouse.doubleClick(Vector2f(10, 10));
    EXPECT_EQ(text(root.getArea()), "0 0 200 100");
    EXPECT_FALSE(root.getMaximized());
}

} // namespace

} // namespace zavex::vellum::test
