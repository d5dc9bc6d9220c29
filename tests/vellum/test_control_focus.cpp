#include "vellum/probe.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/** A root with "a", "b" and "c" side by side, 20 pixels wide each, and "b1", "b2" inside "b". */
struct FocusTree : testing::Test {
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 20, 20));
    Probe& b = addProbe(root, "b", Area(20, 0, 40, 20));
    Probe& c = addProbe(root, "c", Area(40, 0, 60, 20));
    Probe& b1 = addProbe(b, "b1", Area(0, 0, 10, 20));
    Probe& b2 = addProbe(b, "b2", Area(10, 0, 20, 20));
};

TEST_F(FocusTree, FocusingRaisesButKeepsTheOrderOfInsertion)
{
    root.setFocus(&a);
    EXPECT_EQ(stacking(root), "c b a");
    EXPECT_EQ(insertion(root), "a b c");
    root.setFocus(&a);
    EXPECT_EQ(stacking(root), "c b a") << "already on top";
}

TEST_F(FocusTree, TheWholePathFromTheRootIsFocusedAndEveryOtherBranchCleared)
{
    b.setFocus(&b1);
    EXPECT_EQ(root.getFocus(), &b);
    EXPECT_EQ(b.getFocus(), &b1);
    EXPECT_EQ(stacking(root), "a c b");
    EXPECT_EQ(stacking(b), "b2 b1");

    c.setFocus(nullptr);
    EXPECT_EQ(root.getFocus(), &c);
    EXPECT_EQ(b.getFocus(), nullptr);
}

TEST_F(FocusTree, FocusingNoChildLeavesTheControlItselfOnThePath)
{
    b.setFocus(&b1);
    b.setFocus(nullptr);
    EXPECT_EQ(root.getFocus(), &b);
    EXPECT_EQ(b.getFocus(), nullptr);
    EXPECT_EQ(stacking(b), "b2 b1");
}

TEST_F(FocusTree, AControlFocusedOnItselfStillHandlesKeys)
{
    b.setFocus(&b);
    EXPECT_EQ(b.getFocus(), &b);
    send(root, "keydown", Vector2f(150, 90));
    EXPECT_EQ(b.count("keydown"), 1);
}

TEST_F(FocusTree, ClearingReachesEveryDescendant)
{
    b.setFocus(&b1);
    root.clearFocus();
    EXPECT_EQ(root.getFocus(), nullptr);
    EXPECT_EQ(b.getFocus(), nullptr);
}

TEST_F(FocusTree, ShowingRaisesAndFocusesButHidingDoesNot)
{
    a.setVisible(false);
    EXPECT_EQ(stacking(root), "a c b");
    a.setVisible(true);
    EXPECT_EQ(stacking(root), "c b a");
    EXPECT_EQ(root.getFocus(), &a);
}

struct PressCase {
    const char* name;
    float x;
    bool hideC;
    bool captureA;
    const char* focus;    // child of the root that has the focus after the press
    const char* receiver; // child of the root that gets the press

    friend void PrintTo(const PressCase& press, std::ostream* out) { *out << press.name; }
};

constexpr PressCase PRESS_CASES[] = {
    {"FocusesTheChildUnderThePoint",        5.0f,  false, false, "a", "a"},
    {"LeavesTheFocusWhereNothingIs",        90.0f, false, false, "b", "" },
    {"SkipsAHiddenChildButStillDispatches", 45.0f, true,  false, "b", "c"},
    {"FocusesACapturingChildElsewhere",     90.0f, false, true,  "a", "a"},
    {"TopmostDecidesBeforeACapturingOne",   25.0f, false, true,  "b", "b"},
    {"HiddenUnderThePointFallsToCapturing", 45.0f, true,  true,  "a", "a"},
};

class ControlPress : public testing::TestWithParam<PressCase> {};

TEST_P(ControlPress, FocusesAndDispatches)
{
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 20, 20));
    Probe& c = addProbe(root, "c", Area(40, 0, 60, 20));
    Probe& b = addProbe(root, "b", Area(20, 0, 40, 20));
    c.setVisible(!GetParam().hideC);
    b.setVisible(true);
    a.capturing = GetParam().captureA;

    send(root, "mousedown", Vector2f(GetParam().x, 5));

    EXPECT_EQ(root.getFocus()->getId(), GetParam().focus);
    std::string receiver;
    for (Probe* each : {&a, &b, &c})
        receiver += each->count("mousedown") ? each->getId() : "";
    EXPECT_EQ(receiver, GetParam().receiver);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlPress, testing::ValuesIn(PRESS_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

} // namespace

} // namespace zavex::vellum::test
