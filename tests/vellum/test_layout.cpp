#include "vellum/user.h"
#include "vellum/vel_layout_stack.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace zavex::vellum::test {

namespace {

/** A stack under a root with "a" 10 x 20, "b" 30 x 5 and "c" 7 x 40, added in this order. */
struct LayoutStackTest : testing::Test {
    LayoutStackTest() { root.addControl(stack); }

    std::string areas()
    {
        return text(a.getArea()) + ", " + text(b.getArea()) + ", " + text(c.getArea());
    }

    Root root;
    LayoutStack* stack = new LayoutStack;
    Probe& a = addProbe(*stack, "a", Area(1, 50, 11, 70));
    Probe& b = addProbe(*stack, "b", Area(2, 60, 32, 65));
    Probe& c = addProbe(*stack, "c", Area(3, 70, 10, 110));
};

TEST_F(LayoutStackTest, StacksSidewaysWhenHorizontal)
{
    stack->setHorisontal();
    EXPECT_EQ(areas(), "37 45 47 65, 7 40 37 45, 0 0 7 40");
    stack->setVertical();
    EXPECT_EQ(areas(), "37 45 47 65, 7 40 37 45, 0 0 7 40") << "heights are what they were";
}

TEST_F(LayoutStackTest, ForwardsFollowsTheStackingOrder)
{
    stack->recalculate(false);
    EXPECT_EQ(areas(), "1 0 11 20, 2 20 32 25, 3 25 10 65");
    stack->setFocus(&a);
    stack->recalculate(false);
    EXPECT_EQ(areas(), "1 45 11 65, 2 0 32 5, 3 5 10 45") << "the focused one is last";
    stack->recalculate(true);
    EXPECT_EQ(areas(), "1 45 11 65, 2 40 32 45, 3 0 10 40") << "focus does not matter";
}

TEST_F(LayoutStackTest, DeletingClosesTheGap)
{
    stack->deleteControl(1);
    EXPECT_EQ(text(a.getArea()), "1 40 11 60");
    EXPECT_EQ(text(c.getArea()), "3 0 10 40");
}

TEST(LayoutStackLoad, ReadsItsDirection)
{
    for (const auto& [direction, second] : {
             std::pair("horisontal", "0 0 10 10"), {"horizontal", "5 0 15 10"}
    }) {
        Screen screen;
        addLoaded(screen, std::string("<layoutstack direction='") + direction +
                              "'><area w='50' h='50'/><child><container><area w='10' h='10'/>"
                              "</container><container id='second'><area x='5' w='10' h='10'/>"
                              "</container></child></layoutstack>")
            .setArea();
        EXPECT_EQ(text(screen.findControl("second")->getArea()), second) << direction;
    }
}

TEST(FlowLayout, AChildStartsTenPixelsLong)
{
    Bench bench(
        "<flow><child><container><area/></container><container id='second'><area/></container>"
        "</child></flow>");
    bench.control.setArea();
    EXPECT_EQ(text(bench.screen.findControl("second")->getArea()), "0 10 400 20");
}

} // namespace

} // namespace zavex::vellum::test
