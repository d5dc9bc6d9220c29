#include "vellum/user.h"
#include "vellum/vel_look.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_window.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace zavex::vellum::test {

namespace {

/** A scroll area whose handles of 30 pixels move over 170, at (20, 10). */
std::string bars(const std::string& attributes)
{
    return "<scrollbars " + attributes + "><area x='20' y='10' w='212' h='212'/></scrollbars>";
}

TEST(Scrollbars, LeaveTheContentWhatTheyDoNotNeed)
{
    for (const auto& [direction, frame] : {
             std::pair("", "0 0 200 200"),
             {"direction='vertical'",   "0 0 200 212"},
             {"direction='horisontal'", "0 0 212 200"}
    })
        EXPECT_EQ(text(Bench(bars(direction)).control.getChild(0)->getArea()), frame);
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

TEST(Scrollbars, RangeClampsTheHandlesAndMovesTheContent)
{
    for (const RangeCase& row : RANGE_CASES) {
        SCOPED_TRACE(row.name);
        Bench<Scrollbars> bench(bars(""));
        addProbe(bench.control, "content", Area(Vector2f(0, 0), row.content));
        bench.control.setScrollPosition(row.set);
        for (int pass = 0; pass < 2; ++pass) {
            EXPECT_EQ(bench.control.getScrollPosition(), row.position);
            EXPECT_EQ(bench.control.getChild(0)->getOffset(), row.offset) << "pass " << pass;
            bench.control.setArea();
        }
        EXPECT_EQ(bench.observer.text(), "");
    }
}

TEST(Scrollbars, LeaveTheWheelToContentThatUsesIt)
{
    Bench<Scrollbars> bench(bars(""));
    addProbe(bench.control, "content", Area(0, 0, 400, 1000)).result = 1;
    bench.user.does("move 100,100; wheel -2; used");
    EXPECT_EQ(bench.control.getScrollPosition(), Vector2f(0, 0));
}

TEST(Scrollbars, ShowWhichHandleThePointerIsOnOrHolds)
{
    Bench<Scrollbars> bench(bars(""));
    addProbe(bench.control, "content", Area(0, 0, 400, 1000));
    const auto looks = [&](const char* steps) {
        bench.user.does(steps);
        bench.screen.redraw();
        std::string letters; // of the horizontal and the vertical handle
        for (const std::size_t handle : {1U, 3U})
            for (const auto& [look, letter] : {
                     std::pair(Look::NORMAL, '-'), {Look::HOVERED, 'h'},
                       {Look::PRESSED, 'p'}
            })
                if (bench.screen.render.boxColors.at(handle) ==
                    pick(widgetStyle().mCaption, look).first)
                    letters += letter;
        return letters;
    };
    EXPECT_EQ(looks("move 100,100"), "--");
    EXPECT_EQ(looks("move 25,215"), "h-");
    EXPECT_EQ(looks("move 225,15"), "-h");
    EXPECT_EQ(looks("move 225,41"), "--");
    EXPECT_EQ(looks("down 25,215; move 100,100"), "p-");
}

/** The scroll area as the content of a window of 300 x 326 at (50, 40), scrolled to the middle. */
struct ScrollbarsCorner : testing::Test {
    ScrollbarsCorner()
    {
        screen.setArea(Area(0, 0, 800, 600));
        screen.setCallback(&observer);
        reset();
    }

    void reset()
    {
        screen.deleteControls();
        screen.addControl(window = new Window);
        window->setName("window");
        window->addControl(scrollbars = new Scrollbars);
        addProbe(*scrollbars, "content", Area(0, 0, 1000, 1000));
        window->setArea(Area(50, 40, 350, 366));
        scrollbars->setScrollPosition(Vector2f(129, 129));
        observer.heard.clear();
    }

    std::string state()
    {
        return text(window->getArea()) + ", " + text(scrollbars->getArea()) + ", " +
               number(scrollbars->getScrollPosition().x) + " " +
               number(scrollbars->getScrollPosition().y);
    }

    Screen screen;
    Observer observer;
    Window* window = nullptr;
    Scrollbars* scrollbars = nullptr;
    User user{screen, [this] { return state(); }};
};

// The position afterwards is half of what the new tracks allow.
// clang-format off
constexpr struct CornerCase {
    const char* name;
    const char* steps;
    const char* heard;
} CORNER_CASES[] = {
    {"Larger",         "down 345,360; move 95,110; move 445,380; = 50 40 450 386, 0 0 400 320, 179 139; up; move 200,200; = 50 40 450 386, 0 0 400 320, 179 139", "resize resize"},
    {"Smaller",        "down 345,360; move 245,340; = 50 40 250 346, 0 0 200 280, 79 119", "resize"},
    {"DownToTheLimit", "down 345,360; move 125,140; = 50 40 130 146, 0 0 80 80, 19 19", "resize"},
    {"HiddenResizing", "down 345,360; hide window; show window; move 365,380; = 50 40 350 366, 0 0 300 300, 129 129", ""},
    {"HiddenDownwards", "down 345,200; hide window; show window; move 365,220; = 50 40 350 366, 0 0 300 300, 129 129", ""},
    {"HiddenSideways", "down 185,360; hide window; show window; move 205,380; = 50 40 350 366, 0 0 300 300, 129 129", ""},
    {"Maximized",      "double 100,50; up; down 795,595; move 700,500; up; = 0 0 800 600, 0 0 800 574, 129 129; double 100,10; = 50 40 350 366, 0 0 300 300, 129 129", "resize resize"},
};
// clang-format on

TEST_F(ScrollbarsCorner, SizesTheWindowAndKeepsTheRelativePosition)
{
    for (const CornerCase& row : CORNER_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        user.does(row.steps);
        EXPECT_EQ(observer.text(), row.heard);
    }
}

} // namespace

} // namespace zavex::vellum::test
