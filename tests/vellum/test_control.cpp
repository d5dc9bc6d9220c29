#include "vellum/probe.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace zavex::vellum::test {

using zavex::test::thrownMessage;

namespace {

TEST(ControlTree, KeepsItsChildrenInOrderAndRefusesOthers)
{
    Root root;
    root.addControl(new Probe("a"));
    root.addControl(new Probe("b"), 0);
    root.addControl(new Probe("c"), 1);
    EXPECT_EQ(insertion(root), "b c a");
    EXPECT_EQ(stacking(root), "a b c") << "the focus raises what was added, wherever it was put";
    EXPECT_EQ(root.getFocus(), root.findControl("c"));
    EXPECT_EQ(root.getFocus()->getParent(), &root);

    Probe probe;
    EXPECT_EQ(thrownMessage([&] { root.addControl(nullptr); }), "control!=0");
    EXPECT_EQ(thrownMessage([&] { root.addControl(&probe, 4); }), "index<=getChildCount()");
    EXPECT_EQ(thrownMessage([&] { root.addControl(&probe, -2); }), "index<=getChildCount()");
}

TEST(ControlTree, AChildMayMoveAndIsForgottenWhenItIsDeleted)
{
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 1, 1));
    Probe& b = addProbe(root, "b", Area(0, 0, 1, 1));
    a.addControl(&b);
    EXPECT_EQ(stacking(root) + ", " + stacking(a), "a, b");
    root.addControl(&b, 1);
    root.addControl(&a, 1);
    EXPECT_EQ(insertion(root), "b a") << "its own parent may add it again";

    root.deleteControl(2);
    EXPECT_EQ(stacking(root), "b a") << "out of range";
    root.deleteControl(1);
    EXPECT_EQ(stacking(root), "b");
    EXPECT_EQ(insertion(root), "b");
    EXPECT_EQ(root.getFocus(), nullptr);
    root.setFocus(&b);
    root.deleteControls();
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
    }
    EXPECT_EQ(stacking(root), "owned");
    EXPECT_EQ(insertion(root), "owned");
    EXPECT_EQ(root.getFocus(), nullptr);
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

TEST(ControlArea, IsMovedByTheParentsOffsetOrFillsTheParent)
{
    Root root;
    root.setPosition(Vector2f(100, 50));
    root.setOffset(Vector2f(3, 4));
    root.setMaximized(true);
    Probe& child = addProbe(root, "child", Area(10, 20, 30, 60));
    EXPECT_EQ(text(child.getArea()), "7 16 27 56");
    EXPECT_EQ(text(child.getAreaWorld()), "107 66 127 106");
    EXPECT_EQ(text(root.getArea()), "100 50 300 150") << "no parent moves it or is filled by it";
    EXPECT_EQ(text(root.getAreaWorld()), "100 50 300 150");
    child.setMaximized(true);
    EXPECT_EQ(text(child.getArea()), "0 0 200 100");
}

TEST(ControlTree, WithoutAWorkspaceThereIsNothingToDrawWith)
{
    Probe parent;
    Probe& child = addProbe(parent, "child", Area(0, 0, 1, 1));
    EXPECT_EQ(thrownMessage([&] { child.getRender(); }), "mParent!=0");
    EXPECT_EQ(child.getDisplay(), nullptr);
}

/** A root with "a", "b" and "c" side by side, 20 pixels wide each, and "b1", "b2" inside "b". */
struct FocusTree : testing::Test {
    Root root;
    Probe& a = addProbe(root, "a", Area(0, 0, 20, 20));
    Probe& b = addProbe(root, "b", Area(20, 0, 40, 20));
    Probe& c = addProbe(root, "c", Area(40, 0, 60, 20));
    Probe& b1 = addProbe(b, "b1", Area(0, 0, 10, 20));
    Probe& b2 = addProbe(b, "b2", Area(10, 0, 20, 20));
};

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

TEST_F(FocusTree, AControlFocusedOnItselfStillHandlesKeys)
{
    b.setFocus(&b);
    send(root, Event::KEY_DOWN, Vector2f(150, 90));
    EXPECT_EQ(b.count(Event::KEY_DOWN), 1);
}

TEST_F(FocusTree, ShowingRaisesAndFocusesButHidingDoesNot)
{
    a.setVisible(false);
    EXPECT_EQ(stacking(root), "a c b");
    a.setVisible(true);
    EXPECT_EQ(stacking(root), "c b a");
    EXPECT_EQ(root.getFocus(), &a);
}

// A root at (100, 50)..(200, 150) with "low" at (10, 10)..(50, 40), "side" at (80, 0)..(100, 20)
// and "high", which has the focus, at (30, 20)..(70, 60).
// clang-format off
constexpr struct PressCase {
    const char* name;
    Vector2f point;
    const char* receiver; // of the press; empty for none
    const char* focus;    // afterwards
    bool sideHidden = false;
    bool lowCaptures = false;
} PRESS_CASES[] = {
    {"TopLeftCornerBelongs",             {110, 60},  "low",  "low"},
    {"LeftOfTheLeftEdge",                {109, 65},  "",     "high"},
    {"JustInsideTheRightEdge",           {149, 65},  "low",  "low"},
    {"JustInsideTheBottomEdge",          {115, 89},  "low",  "low"},
    {"TopmostWinsOnOverlap",             {135, 75},  "high", "high"},
    {"RootsOwnBottomRightIsBeyond",      {200, 150}, "",     "high"},
    {"AHiddenOneIsSkippedButGetsIt",     {185, 55},  "side", "high", true},
    {"ACapturingOneElsewhere",           {120, 140}, "low",  "low",  false, true},
    {"TopmostBeforeACapturingOne",       {160, 100}, "high", "high", false, true},
    {"ACapturingOneInPlaceOfAHiddenOne", {185, 55},  "low",  "low",  true,  true},
};
// clang-format on

TEST(ControlPress, FocusesAndDispatches)
{
    for (const PressCase& row : PRESS_CASES) {
        SCOPED_TRACE(row.name);
        Root root(Area(100, 50, 200, 150));
        Probe& low = addProbe(root, "low", Area(10, 10, 50, 40));
        Probe& side = addProbe(root, "side", Area(80, 0, 100, 20));
        Probe& high = addProbe(root, "high", Area(30, 20, 70, 60));
        side.setVisible(!row.sideHidden);
        high.setFocus(nullptr);
        low.capturing = row.lowCaptures;

        send(root, Event::MOUSE_DOWN, row.point);
        EXPECT_EQ(root.getFocus()->getId(), row.focus);
        std::string receiver;
        for (Probe* each : {&low, &side, &high})
            receiver += each->count(Event::MOUSE_DOWN) ? each->getId() : "";
        EXPECT_EQ(receiver, row.receiver);
    }
}

TEST(ControlEvent, ReachesEachLevelInItsParentsCoordinates)
{
    Root root(Area(100, 50, 200, 150));
    Probe& middle = addProbe(root, "middle", Area(10, 20, 90, 90));
    Probe& inner = addProbe(middle, "inner", Area(5, 5, 80, 60));

    Event event = eventAt(Event::MOUSE_WHEEL, Vector2f(130, 90));
    root.handleEvent(event);

    EXPECT_EQ(middle.seen.at(0).position, Vector2f(30, 40));
    EXPECT_EQ(inner.seen.at(0).position, Vector2f(20, 20));
    EXPECT_EQ(event.mousePos.x, 15.0f) << "left in the innermost control's own coordinates";
    EXPECT_EQ(event.mousePosWorld.x, 130.0f) << "never localised";
}

TEST(ControlEvent, ACapturingChildWinsOverTheOneBelowThePoint)
{
    Root root;
    Probe& dragged = addProbe(root, "dragged", Area(100, 0, 120, 20));
    Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
    Probe& inner = addProbe(dragged, "inner", Area(2, 1, 5, 5));
    root.setFocus(&dragged);

    inner.capturing = true;
    send(root, Event::MOUSE_UP, Vector2f(10, 10));
    EXPECT_EQ(dragged.count(Event::MOUSE_UP), 1);
    EXPECT_EQ(inner.count(Event::MOUSE_UP), 1);
    Event elsewhere = eventAt(Event::MOUSE_UP, Vector2f(10, 10));
    EXPECT_TRUE(root.acceptEvents(elsewhere));
    EXPECT_EQ(inner.asked, Vector2f(-90, 10)) << "in its parent's coordinates";
    EXPECT_EQ(pointed.count(Event::MOUSE_UP), 0);

    dragged.setVisible(false);
    send(root, Event::MOUSE_UP, Vector2f(10, 10));
    EXPECT_EQ(dragged.count(Event::MOUSE_UP), 1) << "a hidden control captures nothing";
    EXPECT_EQ(pointed.count(Event::MOUSE_UP), 1);
}

TEST(ControlEvent, EveryMoveResetsTheWholeSubtreeFirst)
{
    Root root;
    Probe& left = addProbe(root, "left", Area(0, 0, 50, 50));
    Probe& inner = addProbe(left, "inner", Area(10, 10, 40, 40));
    Probe& hidden = addProbe(root, "hidden", Area(60, 0, 90, 50));
    hidden.setVisible(false);

    send(root, Event::MOUSE_MOVE, Vector2f(20, 20));

    ASSERT_EQ(left.seen.size(), 2u);
    EXPECT_EQ(left.seen[0].type, Event::RESET);
    EXPECT_EQ(left.seen[1].type, Event::MOUSE_MOVE);
    EXPECT_EQ(inner.count(Event::RESET), 2) << "once from the root's move, once from its parent's";
    EXPECT_EQ(hidden.count(Event::RESET), 1);
    EXPECT_EQ(root.count(Event::RESET), 0);
}

TEST(ControlKeys, FollowTheFocusPathOnlyOrThePointerWithoutAFocus)
{
    for (const char* type : {Event::KEY_DOWN, Event::KEY_UP, Event::CHAR_DOWN, Event::CHAR_UP,
                             Event::MOUSE_WHEEL, Event::MOUSE_UP}) {
        const int toFocus = type[0] == 'k' ? 1 : 0;
        SCOPED_TRACE(type);
        Root root;
        Probe& focused = addProbe(root, "focused", Area(100, 0, 150, 50));
        Probe& inner = addProbe(focused, "inner", Area(0, 0, 10, 10));
        Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
        focused.setFocus(&inner);
        send(root, type, Vector2f(5, 5));
        EXPECT_EQ(inner.count(type), toFocus);
        EXPECT_EQ(pointed.count(type), 1 - toFocus);

        root.setFocus(nullptr);
        send(root, type, Vector2f(5, 5));
        send(root, type, Vector2f(60, 5));
        EXPECT_EQ(pointed.count(type), 2 - toFocus);
    }
}

TEST(ControlEvent, BearsTheTreeDeletedWhileHoverIsReset)
{
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 50, 50));
    Probe& first = addProbe(outer, "first", Area(0, 0, 10, 10));
    addProbe(outer, "second", Area(0, 0, 10, 10));
    first.onEvent = [&](Event&) { root.deleteControls(); };

    EXPECT_EQ(send(root, Event::MOUSE_MOVE, Vector2f(5, 5)), 0);
    EXPECT_EQ(root.getChildCount(), 0);
}

TEST(ControlAction, BubblesToTheNearestAncestorWithObserversAndNoFurther)
{
    Observer near;
    Observer far;
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 1, 1));
    Probe& source = addProbe(outer, "source", Area(0, 0, 1, 1));
    root.setCallback(&far);
    outer.setCallback(&near);

    source.sendAction(ACTION_SLIDER_CHANGED);
    source.sendContextAction(nullptr, "menu choices do not bubble");
    EXPECT_EQ(near.text() + far.text(), "slider");
    EXPECT_EQ(near.heard.at(0).control, &source) << "the control where it started";

    outer.removeCallback(near);
    source.sendAction(ACTION_COLOR, &outer);
    EXPECT_EQ(far.text(), "color");
    EXPECT_EQ(far.heard.at(0).control, &outer) << "the source that was named";

    root.clearCallbacks();
    source.sendAction(ACTION_COLOR);
    EXPECT_EQ(far.heard.size(), 1u) << "dropped at a root without observers";
}

TEST(ControlAction, ReachesEveryObserverInOrderUnlessAnEarlierOneRemovedIt)
{
    std::string order;
    Observer first;
    Observer second;
    Probe probe;
    first.onAction = [&] { order += "1"; };
    second.onAction = [&] { order += "2"; };
    for (Observer* each : {&second, &first, &second})
        probe.setCallback(each);
    probe.sendAction(ACTION_BUTTON_PRESSED);
    EXPECT_EQ(order, "212") << "one registered twice is called twice";

    second.onAction = [&] { probe.clearCallbacks(); };
    probe.sendAction(ACTION_BUTTON_RELEASED);
    probe.sendContextAction(nullptr, "context.add");
    EXPECT_EQ(second.text(), "pressed pressed released");
    EXPECT_EQ(first.text(), "pressed");
    probe.setCallback(&first);
    probe.sendContextAction(nullptr, "context.add");
    EXPECT_EQ(first.text(), "pressed context.add");
}

const struct ClipCase {
    const char* name;
    Area child; // in the coordinates of a panel at (100, 50)..(200, 150)
    const char* clip;
    bool drawn;
} CLIP_CASES[] = {
    {"Inside",                 Area(10,    10,  30,  40),  "110 60 130 90",   true },
    {"CutAtTheRightAndBottom", Area(80,    90,  130, 120), "180 140 200 150", true },
    {"CutAtTheLeftAndTop",     Area(-20,   -20, 10,  5),   "100 50 110 55",   true },
    {"OnePixelLeft",           Area(99,    99,  120, 120), "199 149 200 150", true },
    {"LessThanAPixelLeft",     Area(99.5f, 10,  120, 20),  "199.5 60 200 70", false},
    {"TouchingTheEdge",        Area(100,   10,  120, 20),  "200 60 200 70",   false},
    {"Beyond",                 Area(101,   10,  120, 20),  "0 0 0 0",         false},
    {"Empty",                  Area(10,    10,  10,  10),  "110 60 110 60",   false},
};

TEST(ControlClip, DecidesWhetherTheChildIsDrawnExceptOnAWorkspace)
{
    for (const ClipCase& row : CLIP_CASES) {
        SCOPED_TRACE(row.name);
        const Area place(100, 50, 200, 150);
        for (const bool always : {false, true}) {
            Probe* const panel = always ? new Root(place) : new Probe("panel", place);
            Root root(Area(0, 0, 300, 300));
            root.addControl(panel);
            Probe& child = addProbe(*panel, "child", row.child);
            root.draw(root.getArea(), root.getArea(), root.getArea());
            EXPECT_EQ(child.drawn.size(), row.drawn || always ? 1u : 0u);
            auto& render = dynamic_cast<RecordingRender&>(panel->getRender());
            EXPECT_EQ(text(render.clips.back()), row.clip);
        }
    }
}

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
    std::string lefts; // of what was clipped, and the hidden one is
    for (const Area& clip : root.render.clips)
        lefts += std::to_string(static_cast<int>(clip.mMin.x)) + " ";
    EXPECT_EQ(lefts, "20 40 0 ") << "the focused one is on top";
    EXPECT_TRUE(hidden.drawn.empty());
}

} // namespace

} // namespace zavex::vellum::test
