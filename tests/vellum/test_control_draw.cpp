#include "vellum/probe.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

struct ClipCase {
    const char* name;
    Area child; // in the coordinates of a panel at (100, 50)..(200, 150)
    const char* clip;
    bool drawn;

    friend void PrintTo(const ClipCase& clipping, std::ostream* out) { *out << clipping.name; }
};

const ClipCase CLIP_CASES[] = {
    {"Inside",                 Area(10,    10,  30,  40),  "110 60 130 90",   true },
    {"CutAtTheRightAndBottom", Area(80,    90,  130, 120), "180 140 200 150", true },
    {"CutAtTheLeftAndTop",     Area(-20,   -20, 10,  5),   "100 50 110 55",   true },
    {"OnePixelLeft",           Area(99,    99,  120, 120), "199 149 200 150", true },
    {"LessThanAPixelLeft",     Area(99.5f, 10,  120, 20),  "199.5 60 200 70", false},
    {"TouchingTheEdge",        Area(100,   10,  120, 20),  "200 60 200 70",   false},
    {"Beyond",                 Area(101,   10,  120, 20),  "0 0 0 0",         false},
    {"BeyondInOneDirection",   Area(10,    -30, 20,  -1),  "0 0 0 0",         false},
    {"Empty",                  Area(10,    10,  10,  10),  "110 60 110 60",   false},
    {"Reversed",               Area(30,    10,  10,  20),  "0 0 0 0",         false},
};

class ControlClip : public testing::TestWithParam<ClipCase> {};

TEST_P(ControlClip, DecidesWhetherTheChildIsDrawn)
{
    Root root(Area(0, 0, 300, 300));
    Probe& panel = addProbe(root, "panel", Area(100, 50, 200, 150));
    Probe& child = addProbe(panel, "child", GetParam().child);

    root.draw(root.getArea(), root.getArea(), root.getArea());

    ASSERT_EQ(root.render.clips.size(), 2u) << "one for the panel, one for its child";
    EXPECT_EQ(text(root.render.clips[1]), GetParam().clip);
    EXPECT_EQ(child.drawn.size(), GetParam().drawn ? 1u : 0u);
}

TEST_P(ControlClip, KeepsNothingFromAChildOfTheWorkspace)
{
    Root root(Area(100, 50, 200, 150));
    Probe& child = addProbe(root, "child", GetParam().child);

    root.draw(root.getArea(), Area(0, 0, 300, 300), root.getArea());

    EXPECT_EQ(text(root.render.clips.at(0)), GetParam().clip);
    EXPECT_EQ(text(child.drawn.at(0).clip), GetParam().clip);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlClip, testing::ValuesIn(CLIP_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(ControlDraw, HandsDownWorldRectanglesAndTheVisiblePart)
{
    Root root(Area(0, 0, 300, 300));
    Probe& panel = addProbe(root, "panel", Area(100, 50, 200, 150));
    panel.setOffset(Vector2f(5, 30));
    Probe& child = addProbe(panel, "child", Area(10, 20, 60, 60));
    Probe& leaf = addProbe(child, "leaf", Area(1, 2, 200, 30));

    root.draw(root.getArea(), root.getArea(), root.getArea());

    ASSERT_EQ(child.drawn.size(), 1u);
    EXPECT_EQ(text(child.drawn[0].area), "105 40 155 80");
    EXPECT_EQ(text(child.drawn[0].parent), "100 50 200 150");
    EXPECT_EQ(text(child.drawn[0].clip), "105 50 155 80") << "the panel's top cuts it";
    ASSERT_EQ(leaf.drawn.size(), 1u);
    EXPECT_EQ(text(leaf.drawn[0].area), "106 42 305 70");
    EXPECT_EQ(text(leaf.drawn[0].parent), "105 40 155 80");
    EXPECT_EQ(text(leaf.drawn[0].clip), "106 50 155 70");
}

TEST(ControlDraw, GoesFromTheBottomToTheTopAndLeavesHiddenOnesOut)
{
    Root root;
    Probe& low = addProbe(root, "low", Area(0, 0, 10, 10));
    Probe& hidden = addProbe(root, "hidden", Area(20, 0, 30, 10));
    addProbe(root, "high", Area(40, 0, 50, 10));
    hidden.setVisible(false);
    root.setFocus(&low);

    root.draw(root.getArea(), root.getArea(), root.getArea());

    ASSERT_EQ(root.render.clips.size(), 3u);
    EXPECT_EQ(root.render.clips[0].mMin.x, 20.0f) << "clipped although it is not drawn";
    EXPECT_EQ(root.render.clips[1].mMin.x, 40.0f);
    EXPECT_EQ(root.render.clips[2].mMin.x, 0.0f) << "the focused one is on top";
    EXPECT_TRUE(hidden.drawn.empty());
}

} // namespace

} // namespace zavex::vellum::test
