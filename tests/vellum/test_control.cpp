#include "vellum/probe.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

using zavex::test::thrownMessage;

namespace {

// The focus that follows raises the child in the stacking order wherever it was put.
constexpr struct InsertCase {
    const char* name;
    int index;
    const char* stacking;
    const char* insertion;
} INSERT_CASES[] = {
    {"AtTheEndByDefault", -1, "a b new", "a b new"},
    {"AtTheStart",        0,  "a b new", "new a b"},
    {"InTheMiddle",       1,  "a b new", "a new b"},
};

TEST(ControlInsert, PutsTheChildInPlaceAndFocusesIt)
{
    for (const InsertCase& row : INSERT_CASES) {
        SCOPED_TRACE(row.name);
        Root root;
        addProbe(root, "a", Area(0, 0, 1, 1));
        addProbe(root, "b", Area(0, 0, 1, 1));
        auto* added = new Probe("new");
        root.addControl(added, row.index);

        EXPECT_EQ(stacking(root), row.stacking);
        EXPECT_EQ(insertion(root), row.insertion);
        EXPECT_EQ(root.getFocus(), added);
        EXPECT_EQ(added->getParent(), &root);
    }
}

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
    EXPECT_EQ(b.getFocus(), &b);
    send(root, "keydown", Vector2f(150, 90));
    EXPECT_EQ(b.count("keydown"), 1);
}

TEST_F(FocusTree, ShowingRaisesAndFocusesButHidingDoesNot)
{
    a.setVisible(false);
    EXPECT_EQ(stacking(root), "a c b");
    a.setVisible(true);
    EXPECT_EQ(stacking(root), "c b a");
    EXPECT_EQ(root.getFocus(), &a);
}

constexpr struct PressCase {
    const char* name;
    float x;
    bool hideC;
    bool captureA;
    const char* focus;    // child of the root that has the focus after the press
    const char* receiver; // child of the root that gets the press
} PRESS_CASES[] = {
    {"FocusesTheChildUnderThePoint",        5.0f,  false, false, "a", "a"},
    {"LeavesTheFocusWhereNothingIs",        90.0f, false, false, "b", "" },
    {"SkipsAHiddenChildButStillDispatches", 45.0f, true,  false, "b", "c"},
    {"FocusesACapturingChildElsewhere",     90.0f, false, true,  "a", "a"},
    {"TopmostDecidesBeforeACapturingOne",   25.0f, false, true,  "b", "b"},
    {"HiddenUnderThePointFallsToCapturing", 45.0f, true,  true,  "a", "a"},
};

TEST(ControlPress, FocusesAndDispatches)
{
    for (const PressCase& row : PRESS_CASES) {
        SCOPED_TRACE(row.name);
        Root root;
        Probe& a = addProbe(root, "a", Area(0, 0, 20, 20));
        Probe& c = addProbe(root, "c", Area(40, 0, 60, 20));
        Probe& b = addProbe(root, "b", Area(20, 0, 40, 20));
        c.setVisible(!row.hideC);
        b.setVisible(true);
        a.capturing = row.captureA;

        send(root, "mousedown", Vector2f(row.x, 5));

        EXPECT_EQ(root.getFocus()->getId(), row.focus);
        std::string receiver;
        for (Probe* each : {&a, &b, &c})
            receiver += each->count("mousedown") ? each->getId() : "";
        EXPECT_EQ(receiver, row.receiver);
    }
}

// Two children of a root at (100, 50)..(200, 150): "low" (10, 10)..(50, 40), "high" (30, 20)..(70,
// 60).
constexpr struct HitCase {
    const char* name;
    float x;
    float y;
    const char* expected; // the child that receives a press at (x, y); empty for none
} HIT_CASES[] = {
    {"TopLeftCornerBelongs",        110.0f, 60.0f,  "low" },
    {"LeftOfTheLeftEdge",           109.0f, 65.0f,  ""    },
    {"JustInsideTheRightEdge",      149.0f, 65.0f,  "low" },
    {"JustInsideTheBottomEdge",     115.0f, 89.0f,  "low" },
    {"TopmostWinsOnOverlap",        135.0f, 75.0f,  "high"},
    {"RootsOwnBottomRightIsBeyond", 200.0f, 150.0f, ""    },
};

TEST(ControlHit, DispatchesToTheTopmostChildUnderThePoint)
{
    for (const HitCase& row : HIT_CASES) {
        SCOPED_TRACE(row.name);
        Root root(Area(100, 50, 200, 150));
        Probe& low = addProbe(root, "low", Area(10, 10, 50, 40));
        Probe& high = addProbe(root, "high", Area(30, 20, 70, 60));

        send(root, "mousedown", Vector2f(row.x, row.y));

        const std::string expected = row.expected;
        EXPECT_EQ(low.count("mousedown"), expected == "low" ? 1 : 0);
        EXPECT_EQ(high.count("mousedown"), expected == "high" ? 1 : 0);
    }
}

TEST(ControlEvent, ReachesEachLevelInItsParentsCoordinates)
{
    Root root(Area(100, 50, 200, 150));
    Probe& middle = addProbe(root, "middle", Area(10, 20, 90, 90));
    Probe& inner = addProbe(middle, "inner", Area(5, 5, 80, 60));

    Event event = eventAt("mousewheel", Vector2f(130, 90));
    root.handleEvent(event);

    ASSERT_EQ(middle.seen.size(), 1u);
    EXPECT_EQ(middle.seen[0].position.x, 30.0f);
    EXPECT_EQ(middle.seen[0].position.y, 40.0f);
    ASSERT_EQ(inner.seen.size(), 1u);
    EXPECT_EQ(inner.seen[0].position.x, 20.0f);
    EXPECT_EQ(inner.seen[0].position.y, 20.0f);
    EXPECT_EQ(event.mousePos.x, 15.0f) << "left in the innermost control's own coordinates";
    EXPECT_EQ(event.mousePosWorld.x, 130.0f) << "never localised";
}

TEST(ControlEvent, ACapturingChildWinsOverTheOneBelowThePoint)
{
    Root root;
    Probe& dragged = addProbe(root, "dragged", Area(100, 0, 120, 20));
    Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
    root.setFocus(&dragged);

    dragged.capturing = true;
    send(root, "mouseup", Vector2f(10, 10));
    EXPECT_EQ(dragged.count("mouseup"), 1);
    EXPECT_EQ(pointed.count("mouseup"), 0);

    dragged.setVisible(false);
    send(root, "mouseup", Vector2f(10, 10));
    EXPECT_EQ(dragged.count("mouseup"), 1) << "a hidden control captures nothing";
    EXPECT_EQ(pointed.count("mouseup"), 1);
}

TEST(ControlEvent, EveryMoveResetsTheWholeSubtreeFirst)
{
    Root root;
    Probe& left = addProbe(root, "left", Area(0, 0, 50, 50));
    Probe& inner = addProbe(left, "inner", Area(10, 10, 40, 40));
    Probe& hidden = addProbe(root, "hidden", Area(60, 0, 90, 50));
    hidden.setVisible(false);

    send(root, "mousemove", Vector2f(20, 20));

    ASSERT_EQ(left.seen.size(), 2u);
    EXPECT_EQ(left.seen[0].type, "reset");
    EXPECT_EQ(left.seen[1].type, "mousemove");
    EXPECT_EQ(inner.count("reset"), 2) << "once from the root's move, once from its parent's";
    EXPECT_EQ(hidden.count("reset"), 1);
    EXPECT_EQ(root.count("reset"), 0);
}

constexpr struct KeyCase {
    const char* name;
    const char* type;
    const char* expected; // which of the two children hears it when "focused" has the focus
} KEY_CASES[] = {
    {"KeyDown",    "keydown",     "focused"},
    {"KeyUp",      "keyup",       "focused"},
    {"CharDown",   "keychardown", "focused"},
    {"CharUp",     "keycharup",   "focused"},
    {"MouseWheel", "mousewheel",  "pointed"},
    {"MouseUp",    "mouseup",     "pointed"},
};

TEST(ControlKeys, FollowTheFocusPathOnlyOrThePointerWithoutAFocus)
{
    for (const KeyCase& row : KEY_CASES) {
        SCOPED_TRACE(row.name);
        Root root;
        Probe& focused = addProbe(root, "focused", Area(100, 0, 150, 50));
        Probe& inner = addProbe(focused, "inner", Area(0, 0, 10, 10));
        Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
        focused.setFocus(&inner);
        send(root, row.type, Vector2f(5, 5));
        const int toFocus = std::string(row.expected) == "focused" ? 1 : 0;
        EXPECT_EQ(inner.count(row.type), toFocus);
        EXPECT_EQ(pointed.count(row.type), 1 - toFocus);

        root.setFocus(nullptr);
        send(root, row.type, Vector2f(5, 5));
        send(root, row.type, Vector2f(60, 5));
        EXPECT_EQ(pointed.count(row.type), 2 - toFocus);
    }
}

TEST(ControlEvent, BearsTheTreeDeletedWhileHoverIsReset)
{
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 50, 50));
    Probe& first = addProbe(outer, "first", Area(0, 0, 10, 10));
    addProbe(outer, "second", Area(0, 0, 10, 10));
    first.onEvent = [&](Event&) { root.deleteControls(); };

    EXPECT_EQ(send(root, "mousemove", Vector2f(5, 5)), 0);
    EXPECT_EQ(root.getChildCount(), 0);
}

TEST(ControlAction, BubblesToTheNearestAncestorWithObserversAndNoFurther)
{
    Observer near;
    Observer far;
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 1, 1));
    Probe& middle = addProbe(outer, "middle", Area(0, 0, 1, 1));
    Probe& source = addProbe(middle, "source", Area(0, 0, 1, 1));
    root.setCallback(&far);
    outer.setCallback(&near);

    source.sendAction(ACTION_SLIDER_CHANGED);

    ASSERT_EQ(near.heard.size(), 1u);
    EXPECT_EQ(near.heard[0].control, &source) << "the control where it started";
    EXPECT_EQ(near.heard[0].action, ACTION_SLIDER_CHANGED);
    EXPECT_TRUE(far.heard.empty());

    outer.removeCallback(near);
    source.sendAction(ACTION_COLOR, &middle);
    ASSERT_EQ(far.heard.size(), 1u);
    EXPECT_EQ(far.heard[0].control, &middle) << "the source that was named";

    root.clearCallbacks();
    source.sendAction(ACTION_COLOR);
    EXPECT_EQ(far.heard.size(), 1u) << "dropped at a root without observers";
}

TEST(ControlAction, ReachesEveryObserverInOrderOfRegistration)
{
    std::string order;
    Observer first;
    Observer second;
    first.onAction = [&] { order += "1"; };
    second.onAction = [&] { order += "2"; };
    Probe probe;
    for (Observer* each : {&second, &first, &second})
        probe.setCallback(each);

    probe.sendAction(ACTION_BUTTON_PRESSED);
    EXPECT_EQ(order, "212") << "one registered twice is called twice";
}

TEST(ControlAction, MenuChoicesDoNotBubble)
{
    Observer parents;
    Observer own;
    Root root;
    Probe& child = addProbe(root, "child", Area(0, 0, 1, 1));
    root.setCallback(&parents);
    child.sendContextAction(nullptr, "context.add");
    EXPECT_TRUE(parents.chosen.empty());
    child.setCallback(&own);
    child.sendContextAction(nullptr, "context.add");
    EXPECT_EQ(own.chosen, std::vector<std::string>{"context.add"});
}

TEST(ControlAction, AnObserverRemovedByAnEarlierOneIsNotCalled)
{
    Observer clearing;
    Observer removed;
    Probe probe;
    probe.setCallback(&clearing);
    probe.setCallback(&removed);
    clearing.onAction = [&] { probe.clearCallbacks(); };

    probe.sendAction(ACTION_BUTTON_RELEASED);
    probe.sendContextAction(nullptr, "context.add");
    EXPECT_EQ(clearing.heard.size(), 1u);
    EXPECT_TRUE(removed.heard.empty() && removed.chosen.empty());
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

TEST(ControlClip, DecidesWhetherTheChildIsDrawn)
{
    for (const ClipCase& row : CLIP_CASES) {
        SCOPED_TRACE(row.name);
        Root root(Area(0, 0, 300, 300));
        Probe& panel = addProbe(root, "panel", Area(100, 50, 200, 150));
        Probe& child = addProbe(panel, "child", row.child);

        root.draw(root.getArea(), root.getArea(), root.getArea());

        ASSERT_EQ(root.render.clips.size(), 2u) << "one for the panel, one for its child";
        EXPECT_EQ(text(root.render.clips[1]), row.clip);
        EXPECT_EQ(child.drawn.size(), row.drawn ? 1u : 0u);
    }
}

TEST(ControlClip, KeepsNothingFromAChildOfTheWorkspace)
{
    for (const ClipCase& row : CLIP_CASES) {
        SCOPED_TRACE(row.name);
        Root root(Area(100, 50, 200, 150));
        Probe& child = addProbe(root, "child", row.child);

        root.draw(root.getArea(), Area(0, 0, 300, 300), root.getArea());

        EXPECT_EQ(text(root.render.clips.at(0)), row.clip);
        EXPECT_EQ(text(child.drawn.at(0).clip), row.clip);
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

    ASSERT_EQ(root.render.clips.size(), 3u);
    EXPECT_EQ(root.render.clips[0].mMin.x, 20.0f) << "clipped although it is not drawn";
    EXPECT_EQ(root.render.clips[1].mMin.x, 40.0f);
    EXPECT_EQ(root.render.clips[2].mMin.x, 0.0f) << "the focused one is on top";
    EXPECT_TRUE(hidden.drawn.empty());
}

} // namespace

} // namespace zavex::vellum::test
