#include "vellum/probe.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

struct HitCase {
    const char* name;
    float x;
    float y;
    const char* expected; // the child that receives a press at (x, y); empty for none

    friend void PrintTo(const HitCase& hit, std::ostream* out) { *out << hit.name; }
};

// Two children of a root at (100, 50)..(200, 150): "low" (10, 10)..(50, 40), "high" (30, 20)..(70,
// 60).
constexpr HitCase HIT_CASES[] = {
    {"TopLeftCornerBelongs",        110.0f, 60.0f,  "low" },
    {"LeftOfTheLeftEdge",           109.0f, 65.0f,  ""    },
    {"AboveTheTopEdge",             115.0f, 59.0f,  ""    },
    {"JustInsideTheRightEdge",      149.0f, 65.0f,  "low" },
    {"RightEdgeDoesNotBelong",      150.0f, 65.0f,  ""    },
    {"JustInsideTheBottomEdge",     115.0f, 89.0f,  "low" },
    {"BottomEdgeDoesNotBelong",     115.0f, 90.0f,  ""    },
    {"TopmostWinsOnOverlap",        135.0f, 75.0f,  "high"},
    {"OnlyTheUpperOne",             165.0f, 105.0f, "high"},
    {"NothingThere",                195.0f, 145.0f, ""    },
    {"RootsOwnBottomRightIsBeyond", 200.0f, 150.0f, ""    },
};

class ControlHit : public testing::TestWithParam<HitCase> {};

TEST_P(ControlHit, DispatchesToTheTopmostChildUnderThePoint)
{
    Root root(Area(100, 50, 200, 150));
    Probe& low = addProbe(root, "low", Area(10, 10, 50, 40));
    Probe& high = addProbe(root, "high", Area(30, 20, 70, 60));

    send(root, "mousedown", Vector2f(GetParam().x, GetParam().y));

    const std::string expected = GetParam().expected;
    EXPECT_EQ(low.count("mousedown"), expected == "low" ? 1 : 0);
    EXPECT_EQ(high.count("mousedown"), expected == "high" ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlHit, testing::ValuesIn(HIT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

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

TEST(ControlEvent, ReturnsWhatTheReceiverReturned)
{
    Root root;
    Probe& middle = addProbe(root, "middle", Area(0, 0, 50, 50));
    addProbe(middle, "inner", Area(0, 0, 20, 20)).result = 5;

    EXPECT_EQ(send(root, "mouseup", Vector2f(10, 10)), 5);
    EXPECT_EQ(send(root, "mouseup", Vector2f(30, 30)), 0);
}

TEST(ControlEvent, AChildOutsideItsParentIsReachedOnlyByCapturing)
{
    Root root(Area(0, 0, 100, 100));
    Probe& middle = addProbe(root, "middle", Area(0, 0, 50, 50));
    Probe& inner = addProbe(middle, "inner", Area(40, 40, 90, 90));

    send(root, "mouseup", Vector2f(70, 70));
    EXPECT_EQ(inner.count("mouseup"), 0);

    inner.capturing = true;
    send(root, "mouseup", Vector2f(70, 70));
    EXPECT_EQ(inner.count("mouseup"), 1);
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

TEST(ControlEvent, HoverFollowsThePointer)
{
    Root root;
    Probe& left = addProbe(root, "left", Area(0, 0, 50, 50));
    Probe& inner = addProbe(left, "inner", Area(10, 10, 40, 40));
    Probe& right = addProbe(root, "right", Area(50, 0, 100, 50));

    send(root, "mousemove", Vector2f(20, 20));
    EXPECT_TRUE(root.isMouseOver() && left.isMouseOver() && inner.isMouseOver());
    EXPECT_FALSE(right.isMouseOver());

    send(root, "mousemove", Vector2f(50, 20));
    EXPECT_TRUE(right.isMouseOver()) << "the left edge belongs to the right control";
    EXPECT_FALSE(left.isMouseOver() || inner.isMouseOver());

    send(root, "mousemove", Vector2f(200, 20));
    EXPECT_FALSE(root.isMouseOver() || left.isMouseOver() || right.isMouseOver());
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

TEST(ControlEvent, AControlAcceptsEventsAsLongAsThePointerIsSeenOverIt)
{
    Root root;
    Probe& child = addProbe(root, "child", Area(0, 0, 20, 20));
    Event release = eventAt("mouseup", Vector2f(150, 90));

    send(root, "mousemove", Vector2f(10, 10));
    EXPECT_TRUE(child.acceptEvents(release));
    send(root, "mousemove", Vector2f(30, 10));
    EXPECT_FALSE(child.acceptEvents(release));
}

TEST(ControlEvent, ACapturingControlAcceptsEventsForItsAncestors)
{
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 50, 50));
    Probe& inner = addProbe(outer, "inner", Area(0, 0, 20, 20));
    Event event = eventAt("mouseup", Vector2f(150, 90));

    EXPECT_FALSE(outer.acceptEvents(event));
    inner.capturing = true;
    EXPECT_TRUE(outer.acceptEvents(event));
    inner.setVisible(false);
    EXPECT_FALSE(outer.acceptEvents(event));
    EXPECT_EQ(event.mousePos.x, 150.0f) << "the question leaves the event as it is";
}

struct KeyCase {
    const char* name;
    const char* type;
    const char* expected; // which of the two children hears it when "focused" has the focus

    friend void PrintTo(const KeyCase& key, std::ostream* out) { *out << key.name; }
};

constexpr KeyCase KEY_CASES[] = {
    {"KeyDown",    "keydown",     "focused"},
    {"KeyUp",      "keyup",       "focused"},
    {"CharDown",   "keychardown", "focused"},
    {"CharUp",     "keycharup",   "focused"},
    {"MouseWheel", "mousewheel",  "pointed"},
    {"MouseUp",    "mouseup",     "pointed"},
};

class ControlKeys : public testing::TestWithParam<KeyCase> {};

TEST_P(ControlKeys, FollowTheFocusPathOnly)
{
    Root root;
    Probe& focused = addProbe(root, "focused", Area(100, 0, 150, 50));
    Probe& inner = addProbe(focused, "inner", Area(0, 0, 10, 10));
    Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
    focused.setFocus(&inner);

    send(root, GetParam().type, Vector2f(5, 5));

    const bool toFocus = std::string(GetParam().expected) == "focused";
    EXPECT_EQ(inner.count(GetParam().type), toFocus ? 1 : 0);
    EXPECT_EQ(pointed.count(GetParam().type), toFocus ? 0 : 1);
}

TEST_P(ControlKeys, GoWhereThePointerIsWithoutAFocus)
{
    Root root;
    Probe& pointed = addProbe(root, "pointed", Area(0, 0, 50, 50));
    root.setFocus(nullptr);

    send(root, GetParam().type, Vector2f(5, 5));
    send(root, GetParam().type, Vector2f(60, 5));

    EXPECT_EQ(pointed.count(GetParam().type), 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlKeys, testing::ValuesIn(KEY_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(ControlEvent, BearsAControlDeletedByItsOwnHandler)
{
    Root root;
    Probe& outer = addProbe(root, "outer", Area(0, 0, 50, 50));
    Probe& inner = addProbe(outer, "inner", Area(0, 0, 50, 50));
    inner.result = 4;
    inner.onEvent = [&](Event& event) {
        if (event.type == "mousedown")
            root.deleteControls();
    };

    EXPECT_EQ(send(root, "mousedown", Vector2f(5, 5)), 4);
    EXPECT_EQ(root.getChildCount(), 0);
    EXPECT_EQ(send(root, "keydown", Vector2f(5, 5)), 0) << "no focus is left behind";
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

} // namespace

} // namespace zavex::vellum::test
