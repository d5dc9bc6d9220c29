#include "vellum/probe.h"
#include "vellum/vel_flow.h"
#include "vellum/vel_layout_stack.h"

#include <gtest/gtest.h>

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

constexpr struct FlowCase {
    const char* name;
    float size; // of the first child, pixels; the others share 1 to 3
    bool horizontal;
    const char* expected;
} FLOW_CASES[] = {
    {"FixedThenShares",       100.0f, false, "0 0 40 100, 0 100 40 150, 0 150 40 300"   },
    {"FractionsAreRounded",   99.0f,  false, "0 0 40 99, 0 99 40 149, 0 149 40 300"     },
    {"FixedTakesMoreThanAll", 400.0f, false, "0 0 40 400, 0 400 40 400, 0 400 40 400"   },
    {"SidewaysLeavesNothing", 100.0f, true,  "0 0 100 300, 100 0 100 300, 100 0 100 300"},
    {"SidewaysShares",        20.0f,  true,  "0 0 20 300, 20 0 25 300, 25 0 40 300"     },
};

TEST(FlowLayout, DividesItsRectangle)
{
    for (const FlowCase& row : FLOW_CASES) {
        SCOPED_TRACE(row.name);
        struct DirectedFlow : Flow {
            explicit DirectedFlow(Direction direction) { mDirection = direction; }
        };
        DirectedFlow flow(row.horizontal ? Flow::DIRECTION_HORISONTAL : Flow::DIRECTION_VERTICAL);
        Probe& fixed = addProbe(flow, "fixed", Area(0, 0, 0, 0));
        Probe& one = addProbe(flow, "one", Area(0, 0, 0, 0));
        Probe& three = addProbe(flow, "three", Area(0, 0, 0, 0));
        flow.setSize(&fixed, row.size);
        flow.setPercent(&one, 1.0f);
        flow.setPercent(&three, 3.0f);
        flow.setFocus(&fixed);

        flow.setArea(Area(5, 5, 45, 305));
        EXPECT_EQ(text(fixed.getArea()) + ", " + text(one.getArea()) + ", " + text(three.getArea()),
                  row.expected);
    }
}

TEST(FlowLayoutDefaults, AChildStartsTenPixelsLong)
{
    Flow flow;
    addProbe(flow, "first", Area(0, 0, 0, 0));
    Probe& second = addProbe(flow, "second", Area(0, 0, 0, 0));
    flow.setArea(Area(0, 0, 40, 300));
    EXPECT_EQ(text(second.getArea()), "0 10 40 20");
}

} // namespace

} // namespace zavex::vellum::test
