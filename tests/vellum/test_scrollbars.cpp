#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

#include <cmath>

namespace zavex::vellum::test {

namespace {

/**
 * A scroll area of 212 x 212 at (20, 10): 200 x 200 of it show content of 400 x 1000. The tracks
 * are 200 long, so a handle of 30 moves over 170.
 */
struct ScrollbarsTest : testing::Test {
    ScrollbarsTest()
    {
        root.addControl(scrollbars);
        scrollbars->setMaximized(false);
        scrollbars->setCallback(&observer);
        content = &addProbe(*scrollbars, "content", Area(0, 0, 400, 1000));
        scrollbars->setArea(Area(20, 10, 232, 222));
    }

    Control& frame() { return *scrollbars->getChild(0); }
    Vector2f position() { return scrollbars->getScrollPosition(); }
    Vector2f offset() { return frame().getOffset(); }

    Observer observer;
    Root root{Area(0, 0, 500, 400)};
    Scrollbars* scrollbars = new Scrollbars;
    Probe* content = nullptr;
    Mouse mouse{root};
};

struct DirectionCase {
    const char* name;
    const char* direction;
    const char* frame;
    Vector2f wheel; // whether the bars move: horizontally, vertically

    friend void PrintTo(const DirectionCase& each, std::ostream* out) { *out << each.name; }
};

constexpr DirectionCase DIRECTION_CASES[] = {
    {"Both",         "",           "0 0 200 200", {1.0f, 1.0f}},
    {"Vertical",     "vertical",   "0 0 200 212", {0.0f, 1.0f}},
    {"Horisontal",   "horisontal", "0 0 212 200", {1.0f, 0.0f}},
    {"OtherIsNoOne", "horizontal", "0 0 200 200", {1.0f, 1.0f}},
};

class ScrollbarsDirection : public ScrollbarsTest,
                            public testing::WithParamInterface<DirectionCase> {};

TEST_P(ScrollbarsDirection, KeepsThatBarOnly)
{
    loadFrom(*scrollbars, std::string("<vellum><scrollbars direction='") + GetParam().direction +
                              "'><area x='20' y='10' w='212' h='212'/></scrollbars></vellum>");
    EXPECT_EQ(text(frame().getArea()), GetParam().frame);

    mouse.moveTo(Vector2f(100, 100));
    EXPECT_EQ(mouse.turnWheel(-1.0f), static_cast<int>(GetParam().wheel.y));
    EXPECT_EQ(mouse.turnWheel(-1.0f, display::KEYMOD_RCTRL), static_cast<int>(GetParam().wheel.x));
    EXPECT_EQ(position().x > 0.0f, GetParam().wheel.x > 0.0f);
    EXPECT_EQ(position().y > 0.0f, GetParam().wheel.y > 0.0f);
    EXPECT_EQ(observer.heard.size(),
              static_cast<std::size_t>(GetParam().wheel.x + GetParam().wheel.y));
}

INSTANTIATE_TEST_SUITE_P(Cases, ScrollbarsDirection, testing::ValuesIn(DIRECTION_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct RangeCase {
    const char* name;
    Vector2f content;
    Vector2f set;
    Vector2f position;
    Vector2f offset;

    friend void PrintTo(const RangeCase& range, std::ostream* out) { *out << range.name; }
};

constexpr RangeCase RANGE_CASES[] = {
    {"Start",           {400.0f, 1000.0f}, {0.0f, 0.0f},     {0.0f, 0.0f},     {0.0f, 0.0f}    },
    {"Negative",        {400.0f, 1000.0f}, {-5.0f, -9.0f},   {0.0f, 0.0f},     {0.0f, 0.0f}    },
    {"Middle",          {400.0f, 1000.0f}, {85.0f, 85.0f},   {85.0f, 85.0f},   {100.0f, 400.0f}},
    {"WholePixels",     {400.0f, 1000.0f}, {1.0f, 1.0f},     {1.0f, 1.0f},     {1.0f, 5.0f}    },
    {"End",             {400.0f, 1000.0f}, {170.0f, 170.0f}, {170.0f, 170.0f}, {200.0f, 800.0f}},
    {"PastTheEnd",      {400.0f, 1000.0f}, {171.0f, 999.0f}, {170.0f, 170.0f}, {200.0f, 800.0f}},
    {"ContentFitsWell", {200.0f, 200.0f},  {170.0f, 85.0f},  {170.0f, 85.0f},  {0.0f, 0.0f}    },
    {"ContentSmaller",  {50.0f, 50.0f},    {170.0f, 85.0f},  {170.0f, 85.0f},  {0.0f, 0.0f}    },
    {"NarrowButHigh",   {50.0f, 1000.0f},  {170.0f, 170.0f}, {170.0f, 170.0f}, {0.0f, 800.0f}  },
};

class ScrollbarsRange : public ScrollbarsTest, public testing::WithParamInterface<RangeCase> {};

TEST_P(ScrollbarsRange, ClampsTheHandlesAndMovesTheContent)
{
    content->setArea(Area(Vector2f(0, 0), GetParam().content));
    scrollbars->setScrollPosition(GetParam().set);
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_EQ(position(), GetParam().position);
        EXPECT_EQ(offset(), GetParam().offset) << "pass " << pass;
        scrollbars->setArea();
    }
    EXPECT_TRUE(observer.heard.empty());
}

INSTANTIATE_TEST_SUITE_P(Cases, ScrollbarsRange, testing::ValuesIn(RANGE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ScrollbarsTest, TheEndOfTheContentStaysInSightWhenTheAreaGrows)
{
    scrollbars->setScrollPosition(Vector2f(170, 170));
    scrollbars->setArea(Area(20, 10, 332, 322));
    EXPECT_EQ(position(), Vector2f(170, 170)) << "of 270";
    scrollbars->setScrollPosition(Vector2f(270, 270));
    EXPECT_EQ(offset(), Vector2f(100, 700));
    scrollbars->setArea(Area(20, 10, 432, 422));
    scrollbars->setScrollPosition(Vector2f(370, 370));
    EXPECT_EQ(offset(), Vector2f(0, 600));
}

struct PressCase {
    const char* name;
    Vector2f press; // in local coordinates; both handles stand at 85..115
    Vector2f moved; // how far the handles moved
    const char* actions;

    friend void PrintTo(const PressCase& press, std::ostream* out) { *out << press.name; }
};

constexpr PressCase PRESS_CASES[] = {
    {"BelowTheHandle",    {205.0f, 115.0f}, {0.0f, 8.5f},    "9"},
    {"HandlesLastPixel",  {205.0f, 114.0f}, {0.0f, 0.0f},    "9"},
    {"HandlesTop",        {205.0f, 85.0f},  {0.0f, 0.0f},    "9"},
    {"AboveTheHandle",    {205.0f, 84.0f},  {0.0f, -8.5f},   "9"},
    {"TracksTopLeft",     {200.0f, 0.0f},   {0.0f, -8.5f},   "9"},
    {"TracksLastPixel",   {211.0f, 199.0f}, {0.0f, 8.5f},    "9"},
    {"LeftOfTheTrack",    {199.0f, 150.0f}, {0.0f, 0.0f},    "" },
    {"TheCorner",         {200.0f, 200.0f}, {0.0f, 0.0f},    "" },
    {"RightOfTheHandle",  {115.0f, 205.0f}, {21.25f, 0.0f},  "9"},
    {"LeftOfTheHandle",   {84.0f, 205.0f},  {-21.25f, 0.0f}, "9"},
    {"OnTheOtherHandle",  {90.0f, 200.0f},  {0.0f, 0.0f},    "9"},
    {"OutsideAltogether", {212.0f, 100.0f}, {0.0f, 0.0f},    "" },
};

class ScrollbarsPress : public ScrollbarsTest, public testing::WithParamInterface<PressCase> {};

TEST_P(ScrollbarsPress, PagesBesideTheHandle)
{
    scrollbars->setScrollPosition(Vector2f(85, 85));
    mouse.click(GetParam().press + Vector2f(20, 10));
    EXPECT_FLOAT_EQ(position().x, 85.0f + GetParam().moved.x);
    EXPECT_FLOAT_EQ(position().y, 85.0f + GetParam().moved.y);
    std::string actions;
    for (const Observer::Heard& each : observer.heard)
        actions += std::to_string(each.action);
    EXPECT_EQ(actions, GetParam().actions) << "a click on a handle reports its end";
}

INSTANTIATE_TEST_SUITE_P(Cases, ScrollbarsPress, testing::ValuesIn(PRESS_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ScrollbarsTest, PagingStopsAtBothEnds)
{
    for (int i = 0; i < 30; ++i)
        mouse.click(Vector2f(225, 209));
    EXPECT_EQ(offset(), Vector2f(0, 800));
    for (int i = 0; i < 30; ++i)
        mouse.click(Vector2f(225, 10));
    EXPECT_EQ(offset(), Vector2f(0, 0));
    EXPECT_EQ(observer.heard.size(), 60u);
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

TEST_F(ScrollbarsTest, TheHandlesShowWhereThePointerIs)
{
    const auto handleRed = [this](std::size_t box) {
        root.render.boxColors.clear();
        root.draw(root.getArea(), root.getArea(), root.getArea());
        return std::lround(root.render.boxColors[box].x * 255.0f);
    };
    constexpr std::size_t verticalHandle = 3; // after the horizontal bar and the vertical track
    EXPECT_EQ(handleRed(verticalHandle), 0x38);
    mouse.moveTo(Vector2f(225, 20));
    EXPECT_EQ(handleRed(verticalHandle), 0x7b);
    mouse.press();
    EXPECT_EQ(handleRed(verticalHandle), 0xff);
    mouse.release();
    mouse.moveTo(Vector2f(400, 350));
    EXPECT_EQ(handleRed(verticalHandle), 0x38) << "also when the pointer left the whole area";
    EXPECT_EQ(text(root.render.boxes[verticalHandle]), "220 10 232 40");
}

TEST_F(ScrollbarsTest, BearsAnAreaWithoutRoom)
{
    scrollbars->setArea(Area(20, 10, 25, 14));
    scrollbars->setScrollPosition(Vector2f(50, 50));
    EXPECT_EQ(position(), Vector2f(0, 0));
    EXPECT_EQ(offset(), Vector2f(0, 0));
    EXPECT_EQ(text(frame().getArea()), "0 0 0 0");
    scrollbars->setArea(Area(20, 10, 62, 52));
    scrollbars->setScrollPosition(Vector2f(50, 50));
    EXPECT_EQ(offset(), Vector2f(0, 0)) << "the handles fill their tracks";
}

/** The scroll area as the content of a window of 300 x 326 at (50, 40), scrolled to the middle. */
struct ScrollbarsCorner : testing::Test {
    ScrollbarsCorner()
    {
        root.addControl(window);
        window->addControl(scrollbars);
        addProbe(*scrollbars, "content", Area(0, 0, 1000, 1000));
        window->setArea(Area(50, 40, 350, 366));
        scrollbars->setScrollPosition(Vector2f(129, 129));
        root.setCallback(&observer);
    }

    Observer observer;
    Root root{Area(0, 0, 800, 600)};
    Window* window = new Window;
    Scrollbars* scrollbars = new Scrollbars;
    Mouse mouse{root};
};

struct ResizeCase {
    const char* name;
    Vector2f movement;
    const char* window;
    Vector2f position; // half of what the new tracks allow

    friend void PrintTo(const ResizeCase& resize, std::ostream* out) { *out << resize.name; }
};

constexpr ResizeCase RESIZE_CASES[] = {
    {"Larger",         {100.0f, 20.0f},    "50 40 450 386", {179.0f, 139.0f}},
    {"Smaller",        {-100.0f, -20.0f},  "50 40 250 346", {79.0f, 119.0f} },
    {"DownToTheLimit", {-220.0f, -220.0f}, "50 40 130 146", {19.0f, 19.0f}  },
    {"NoFurther",      {-500.0f, -500.0f}, "50 40 130 146", {19.0f, 19.0f}  },
};

class ScrollbarsResize : public ScrollbarsCorner, public testing::WithParamInterface<ResizeCase> {};

TEST_P(ScrollbarsResize, SizesTheWindowAndKeepsTheRelativePosition)
{
    const Vector2f corner(345, 360);
    mouse.drag(corner, corner + Vector2f(-250, -250)); // by way of a small one
    mouse.moveTo(corner + GetParam().movement);
    EXPECT_EQ(text(window->getArea()), GetParam().window);
    EXPECT_EQ(scrollbars->getArea().getSize(),
              window->getArea().getSize() - Vector2f(0, Window::CAPTION_HEIGHT));
    EXPECT_FLOAT_EQ(scrollbars->getScrollPosition().x, GetParam().position.x);
    EXPECT_FLOAT_EQ(scrollbars->getScrollPosition().y, GetParam().position.y);
    ASSERT_EQ(observer.heard.size(), 2u);
    EXPECT_EQ(observer.heard[1].control, scrollbars);
    EXPECT_EQ(observer.heard[1].action, ACTION_WINDOW_RESIZE);

    mouse.release();
    mouse.moveTo(Vector2f(200, 200));
    EXPECT_EQ(text(window->getArea()), GetParam().window);
}

INSTANTIATE_TEST_SUITE_P(Cases, ScrollbarsResize, testing::ValuesIn(RESIZE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ScrollbarsCorner, AMaximizedWindowKeepsItsFormerSize)
{
    mouse.doubleClick(Vector2f(100, 50));
    mouse.drag(Vector2f(795, 595), Vector2f(700, 500));
    mouse.release();
    EXPECT_EQ(text(window->getArea()), "0 0 800 600");
    mouse.doubleClick(Vector2f(100, 10));
    EXPECT_EQ(text(window->getArea()), "50 40 350 366");
}

TEST_F(ScrollbarsTest, TheCornerDoesNothingOutsideOfWindows)
{
    mouse.drag(Vector2f(225, 215), Vector2f(100, 100));
    EXPECT_EQ(text(root.getArea()), "0 0 500 400");
    EXPECT_EQ(text(scrollbars->getArea()), "20 10 232 222");
    EXPECT_TRUE(observer.heard.empty());
}

} // namespace

} // namespace zavex::vellum::test
