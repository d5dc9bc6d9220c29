#include "vellum/probe.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

using zavex::test::thrownMessage;

namespace {

struct InsertCase {
    const char* name;
    int index;
    const char* stacking;
    const char* insertion;

    friend void PrintTo(const InsertCase& insert, std::ostream* out) { *out << insert.name; }
};

constexpr InsertCase INSERT_CASES[] = {
  // The focus that follows raises the child in the stacking order wherever it was put.
    {"AtTheEndByDefault", -1, "a b new", "a b new"},
    {"AtTheEndByCount",   2,  "a b new", "a b new"},
    {"AtTheStart",        0,  "a b new", "new a b"},
    {"InTheMiddle",       1,  "a b new", "a new b"},
};

class ControlInsert : public testing::TestWithParam<InsertCase> {};

TEST_P(ControlInsert, PutsTheChildInPlaceAndFocusesIt)
{
    Root root;
    addProbe(root, "a", Area(0, 0, 1, 1));
    addProbe(root, "b", Area(0, 0, 1, 1));
    auto* added = new Probe("new");
    root.addControl(added, GetParam().index);

    EXPECT_EQ(stacking(root), GetParam().stacking);
    EXPECT_EQ(insertion(root), GetParam().insertion);
    EXPECT_EQ(root.getFocus(), added);
    EXPECT_EQ(added->getParent(), &root);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlInsert, testing::ValuesIn(INSERT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(ControlTree, RefusesWhatCannotBeAChild)
{
    Root root;
    Probe probe;
    EXPECT_EQ(thrownMessage([&] { root.addControl(nullptr); }), "control!=0");
    EXPECT_EQ(thrownMessage([&] { root.addControl(&probe, 1); }), "index<=getChildCount()");
    EXPECT_EQ(thrownMessage([&] { root.addControl(&probe, -2); }), "index<=getChildCount()");
}

TEST(ControlTree, AddingAChildElsewhereMovesIt)
{
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 1, 1));
    Probe& b = addProbe(root, "b", Area(0, 0, 1, 1));
    a.addControl(&b);
    EXPECT_EQ(stacking(root), "a");
    EXPECT_EQ(stacking(a), "b");
    root.addControl(&a, 1);
    EXPECT_EQ(insertion(root), "a") << "its own parent may add it again";
}

TEST(ControlTree, DeletingForgetsTheChildEverywhere)
{
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 1, 1));
    addProbe(root, "b", Area(0, 0, 1, 1));

    root.deleteControl(2);
    EXPECT_EQ(stacking(root), "a b") << "out of range";
    root.deleteControl(1);
    EXPECT_EQ(stacking(root), "a");
    EXPECT_EQ(insertion(root), "a");
    EXPECT_EQ(root.getFocus(), nullptr);

    root.setFocus(&a);
    root.deleteControls();
    EXPECT_EQ(root.getChildCount(), 0);
    EXPECT_EQ(root.getOrder(0), nullptr);
    EXPECT_EQ(root.getFocus(), nullptr);
}

TEST(ControlTree, AChildThatIsAMemberElsewhereTakesItselfOut)
{
    Root root;
    addProbe(root, "owned", Area(0, 0, 1, 1));
    {
        Probe member("member");
        root.addControl(&member);
        EXPECT_EQ(root.getChildCount(), 2);
    }
    EXPECT_EQ(stacking(root), "owned");
    EXPECT_EQ(insertion(root), "owned");
    EXPECT_EQ(root.getFocus(), nullptr);
}

TEST(ControlTree, OutOfRangeIndicesAreAnsweredWithNull)
{
    Root root;
    Probe& child = addProbe(root, "child", Area(0, 0, 1, 1));
    EXPECT_EQ(root.getChild(0), &child);
    EXPECT_EQ(root.getChild(1), nullptr);
    EXPECT_EQ(root.getChild(-1), nullptr);
    EXPECT_EQ(root.getOrder(0), &child);
    EXPECT_EQ(root.getOrder(1), nullptr);
    EXPECT_EQ(root.getOrder(-1), nullptr);
}

TEST(ControlTree, FindsByExactNameParentsFirstAndInStackingOrder)
{
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 1, 1));
    Probe& deepTwin = addProbe(a, "twin", Area(0, 0, 1, 1));
    Probe& twin = addProbe(root, "twin", Area(0, 0, 1, 1));

    EXPECT_EQ(root.findControl("root"), &root);
    EXPECT_EQ(root.findControl("twin"), &deepTwin);
    root.setFocus(&a);
    EXPECT_EQ(root.findControl("twin"), &twin) << "the other branch is the lower one by now";
    EXPECT_EQ(root.findControl("Twin"), nullptr);
    EXPECT_EQ(deepTwin.getRoot(), &root);
}

TEST(ControlArea, IsMovedByTheParentsOffset)
{
    Root root;
    root.setPosition(Vector2f(100, 50));
    root.setOffset(Vector2f(3, 4));
    Probe& child = addProbe(root, "child", Area(10, 20, 30, 60));

    EXPECT_EQ(text(child.getArea()), "7 16 27 56");
    EXPECT_EQ(text(child.getAreaWorld()), "107 66 127 106");
    EXPECT_EQ(text(root.getArea()), "100 50 300 150") << "a root has no parent to move it";
    EXPECT_EQ(text(root.getAreaWorld()), "100 50 300 150");
}

TEST(ControlArea, MaximizedFillsTheParentWhateverWasStored)
{
    Root root(Area(10, 10, 110, 60));
    root.setOffset(Vector2f(5, 5));
    root.setMaximized(true);
    Probe& child = addProbe(root, "child", Area(1, 2, 3, 4));
    child.setMaximized(true);

    EXPECT_EQ(text(child.getArea()), "0 0 100 50");
    EXPECT_EQ(text(root.getArea()), "10 10 110 60") << "nothing to fill";
    child.setMaximized(false);
    EXPECT_EQ(text(child.getArea()), "-4 -3 -2 -1");
}

TEST(ControlArea, PositionKeepsTheSize)
{
    Probe probe("probe", Area(1, 2, 31, 42));
    probe.setPosition(Vector2f(10, 20));
    EXPECT_EQ(text(probe.getArea()), "10 20 40 60");
}

TEST(ControlArea, OccupiedIsTheBoundingBoxOfItsOwnAndTheChildrensRectangles)
{
    Probe probe("probe", Area(10, 10, 50, 50));
    EXPECT_EQ(text(probe.getOccupiedArea()), "10 10 50 50");
    addProbe(probe, "below", Area(20, 40, 30, 90));
    addProbe(probe, "left", Area(-5, 12, 8, 14));
    EXPECT_EQ(text(probe.getOccupiedArea()), "-5 10 50 90");
}

TEST(ControlArea, LayoutReachesEveryDescendantOnce)
{
    struct Counting : Control {
        using Control::setArea;
        void setArea() override
        {
            ++count;
            Control::setArea();
        }
        int count = 0;
    };
    Root root;
    auto* outer = new Counting;
    auto* inner = new Counting;
    root.addControl(outer);
    outer->addControl(inner);

    root.setArea(Area(0, 0, 10, 10));
    EXPECT_EQ(outer->count, 1);
    EXPECT_EQ(inner->count, 1);
}

TEST(ControlTree, WithoutAWorkspaceThereIsNothingToDrawWith)
{
    Probe parent;
    Probe& child = addProbe(parent, "child", Area(0, 0, 1, 1));
    EXPECT_EQ(thrownMessage([&] { child.getRender(); }), "mParent!=0");
    EXPECT_EQ(child.getDisplay(), nullptr);

    Root root;
    root.addControl(new Probe("other"));
    EXPECT_EQ(&root.getChild(0)->getRender(), &root.render);
}

} // namespace

} // namespace zavex::vellum::test
