#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/**
 * A scroll area of 212 x 212 at (20, 10): 200 x 200 of it show content of 400 x 1000. The tracks
 * are 200 long, so a handle of 30 moves over 170.
 */
struct ScrollbarsTest : testing::Test {
    ScrollbarsTest() { reset(); }

    void reset()
    {
        root.deleteControls();
        root.addControl(scrollbars = new Scrollbars);
        scrollbars->setMaximized(false);
        scrollbars->setCallback(&observer);
        content = &addProbe(*scrollbars, "content", Area(0, 0, 400, 1000));
        scrollbars->setArea(Area(20, 10, 232, 222));
        observer.heard.clear();
    }

    Control& frame() { return *scrollbars->getChild(0); }
    Vector2f position() { return scrollbars->getScrollPosition(); }
    Vector2f offset() { return frame().getOffset(); }

    Observer observer;
    Root root{Area(0, 0, 500, 400)};
    Scrollbars* scrollbars = nullptr;
    Probe* content = nullptr;
    Mouse mouse{root};
};

constexpr struct DirectionCase {
    const char* name;
    const char* direction;
    const char* frame;
    Vector2f wheel; // whether the bars move: horizontally, vertically
} DIRECTION_CASES[] = {
    {"Both",       "",           "0 0 200 200", {1.0f, 1.0f}},
    {"Vertical",   "vertical",   "0 0 200 212", {0.0f, 1.0f}},
    {"Horisontal", "horisontal", "0 0 212 200", {1.0f, 0.0f}},
};

TEST_F(ScrollbarsTest, DirectionKeepsThatBarOnly)
{
    for (const DirectionCase& row : DIRECTION_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        loadFrom(*scrollbars, std::string("<vellum><scrollbars direction='") + row.direction +
                                  "'><area x='20' y='10' w='212' h='212'/></scrollbars></vellum>");
        EXPECT_EQ(text(frame().getArea()), row.frame);

        mouse.moveTo(Vector2f(100, 100));
        EXPECT_EQ(mouse.turnWheel(-1.0f), static_cast<int>(row.wheel.y));
        EXPECT_EQ(mouse.turnWheel(-1.0f, display::KEYMOD_RCTRL), static_cast<int>(row.wheel.x));
        EXPECT_EQ(position().x > 0.0f, row.wheel.x > 0.0f);
        EXPECT_EQ(position().y > 0.0f, row.wheel.y > 0.0f);
        EXPECT_EQ(observer.heard.size(), static_cast<std::size_t>(row.wheel.x + row.wheel.y));
    }
}

constexpr struct RangeCase {
    const char* name;
    Vector2f content;
    Vector2f set;
    Vector2f position;
    Vector2f offset;
} RANGE_CASES[] = {
    {"Start",          {400.0f, 1000.0f}, {0.0f, 0.0f},     {0.0f, 0.0f},     {0.0f, 0.0f}    },
    {"Middle",         {400.0f, 1000.0f}, {85.0f, 85.0f},   {85.0f, 85.0f},   {100.0f, 400.0f}},
    {"End",            {400.0f, 1000.0f}, {170.0f, 170.0f}, {170.0f, 170.0f}, {200.0f, 800.0f}},
    {"PastTheEnd",     {400.0f, 1000.0f}, {171.0f, 999.0f}, {170.0f, 170.0f}, {200.0f, 800.0f}},
    {"ContentSmaller", {50.0f, 50.0f},    {170.0f, 85.0f},  {170.0f, 85.0f},  {0.0f, 0.0f}    },
    {"NarrowButHigh",  {50.0f, 1000.0f},  {170.0f, 170.0f}, {170.0f, 170.0f}, {0.0f, 800.0f}  },
};

TEST_F(ScrollbarsTest, RangeClampsTheHandlesAndMovesTheContent)
{
    for (const RangeCase& row : RANGE_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        content->setArea(Area(Vector2f(0, 0), row.content));
        scrollbars->setScrollPosition(row.set);
        for (int pass = 0; pass < 2; ++pass) {
            EXPECT_EQ(position(), row.position);
            EXPECT_EQ(offset(), row.offset) << "pass " << pass;
            scrollbars->setArea();
        }
        EXPECT_TRUE(observer.heard.empty());
    }
}

constexpr struct PressCase {
    const char* name;
    Vector2f press; // in local coordinates; both handles stand at 85..115
    Vector2f moved; // how far the handles moved
    const char* actions;
} PRESS_CASES[] = {
    {"BelowTheHandle",    {205.0f, 115.0f}, {0.0f, 8.5f},   "9"},
    {"HandlesLastPixel",  {205.0f, 114.0f}, {0.0f, 0.0f},   "9"},
    {"HandlesTop",        {205.0f, 85.0f},  {0.0f, 0.0f},   "9"},
    {"AboveTheHandle",    {205.0f, 84.0f},  {0.0f, -8.5f},  "9"},
    {"LeftOfTheTrack",    {199.0f, 150.0f}, {0.0f, 0.0f},   "" },
    {"TheCorner",         {200.0f, 200.0f}, {0.0f, 0.0f},   "" },
    {"RightOfTheHandle",  {115.0f, 205.0f}, {21.25f, 0.0f}, "9"},
    {"OutsideAltogether", {212.0f, 100.0f}, {0.0f, 0.0f},   "" },
};

TEST_F(ScrollbarsTest, PressPagesBesideTheHandle)
{
    for (const PressCase& row : PRESS_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        scrollbars->setScrollPosition(Vector2f(85, 85));
        mouse.click(row.press + Vector2f(20, 10));
        EXPECT_FLOAT_EQ(position().x, 85.0f + row.moved.x);
        EXPECT_FLOAT_EQ(position().y, 85.0f + row.moved.y);
        std::string actions;
        for (const Observer::Heard& each : observer.heard)
            actions += std::to_string(each.action);
        EXPECT_EQ(actions, row.actions) << "a click on a handle reports its end";
    }
}

TEST_F(ScrollbarsTest, LeavesTheWheelToContentThatUsesIt)
{
    mouse.moveTo(Vector2f(100, 100));
    EXPECT_EQ(mouse.turnWheel(-2.0f), 1);
    EXPECT_FLOAT_EQ(position().y, 17.0f);
    EXPECT_EQ(mouse.turnWheel(1.0f), 1);
    EXPECT_FLOAT_EQ(position().y, 8.5f);
    content->result = 1;
    EXPECT_EQ(mouse.turnWheel(-2.0f), 1);
    EXPECT_FLOAT_EQ(position().y, 8.5f);
}

TEST_F(ScrollbarsTest, ADraggedHandleKeepsThePointerUntilTheRelease)
{
    mouse.drag(Vector2f(225, 20), Vector2f(480, 40));
    EXPECT_EQ(position(), Vector2f(0, 20)) << "only along its track";
    mouse.moveTo(Vector2f(5, 390));
    EXPECT_EQ(position(), Vector2f(0, 170));
    mouse.release(display::MOUSE_RIGHT);
    mouse.moveTo(Vector2f(5, 380));
    EXPECT_EQ(position(), Vector2f(0, 160));
    mouse.release();
    EXPECT_EQ(observer.heard.size(), 4u) << "three moves and the end";
    mouse.moveTo(Vector2f(225, 100));
    EXPECT_EQ(position(), Vector2f(0, 160));
}

/** The scroll area as the content of a window of 300 x 326 at (50, 40), scrolled to the middle. */
struct ScrollbarsCorner : testing::Test {
    ScrollbarsCorner()
    {
        root.setCallback(&observer);
        reset();
    }

    void reset()
    {
        root.deleteControls();
        root.addControl(window = new Window);
        window->addControl(scrollbars = new Scrollbars);
        addProbe(*scrollbars, "content", Area(0, 0, 1000, 1000));
        window->setArea(Area(50, 40, 350, 366));
        scrollbars->setScrollPosition(Vector2f(129, 129));
        observer.heard.clear();
    }

    Observer observer;
    Root root{Area(0, 0, 800, 600)};
    Window* window = nullptr;
    Scrollbars* scrollbars = nullptr;
    Mouse mouse{root};
};

constexpr struct ResizeCase {
    const char* name;
    Vector2f movement;
    const char* window;
    Vector2f position; // half of what the new tracks allow
} RESIZE_CASES[] = {
    {"Larger",         {100.0f, 20.0f},    "50 40 450 386", {179.0f, 139.0f}},
    {"Smaller",        {-100.0f, -20.0f},  "50 40 250 346", {79.0f, 119.0f} },
    {"DownToTheLimit", {-220.0f, -220.0f}, "50 40 130 146", {19.0f, 19.0f}  },
};

TEST_F(ScrollbarsCorner, SizesTheWindowAndKeepsTheRelativePosition)
{
    for (const ResizeCase& row : RESIZE_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        const Vector2f corner(345, 360);
        mouse.drag(corner, corner + Vector2f(-250, -250)); // by way of a small one
        mouse.moveTo(corner + row.movement);
        EXPECT_EQ(text(window->getArea()), row.window);
        EXPECT_EQ(scrollbars->getArea().getSize(),
                  window->getArea().getSize() - Vector2f(0, Window::CAPTION_HEIGHT));
        EXPECT_FLOAT_EQ(scrollbars->getScrollPosition().x, row.position.x);
        EXPECT_FLOAT_EQ(scrollbars->getScrollPosition().y, row.position.y);
        ASSERT_EQ(observer.heard.size(), 2u);
        EXPECT_EQ(observer.heard[1].control, scrollbars);
        EXPECT_EQ(observer.heard[1].action, ACTION_WINDOW_RESIZE);

        mouse.release();
        mouse.moveTo(Vector2f(200, 200));
        EXPECT_EQ(text(window->getArea()), row.window);
    }
}

TEST_F(ScrollbarsCorner, HidingTheWindowLetsGo)
{
    for (const Vector2f handle : {Vector2f(345, 200), Vector2f(185, 360), Vector2f(345, 360)}) {
        SCOPED_TRACE(handle.x);
        reset();
        mouse.moveTo(handle);
        mouse.press();
        window->setVisible(false);
        window->setVisible(true);
        mouse.moveTo(handle + Vector2f(20, 20));
        EXPECT_EQ(text(window->getArea()), "50 40 350 366");
        EXPECT_EQ(scrollbars->getScrollPosition(), Vector2f(129, 129));
        mouse.release();
    }
}

TEST_F(ScrollbarsCorner, AMaximizedWindowKeepsItsFormerSize)
{
    mouse.doubleClick(Vector2f(100, 50));
    mouse.drag(Vector2f(795, 595), Vector2f(700, 500));
    mouse.release();
    EXPECT_EQ(text(window->getArea()), "0 0 800 600");
    mouse.doubleClick(Vector2f(100, 10));
    EXPECT_EQ(text(window->getArea()), "50 40 350 366");
}

} // namespace

} // namespace zavex::vellum::test
