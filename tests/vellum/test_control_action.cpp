#include "vellum/probe.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

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

TEST(ControlAction, BearsTheControlDeletedByAnObserver)
{
    Observer deleting;
    Observer later;
    Root root;
    Probe& child = addProbe(root, "child", Area(0, 0, 1, 1));
    child.setCallback(&deleting);
    child.setCallback(&later);
    deleting.onAction = [&] { root.deleteControls(); };

    child.sendAction(ACTION_BUTTON_RELEASED);
    EXPECT_EQ(root.getChildCount(), 0);
    EXPECT_TRUE(later.heard.empty()) << "there is no control left to report";
}

TEST(ControlAction, BearsTheSourceDeletedByAnObserverOfItsAncestor)
{
    Observer deleting;
    Observer later;
    Root root;
    Probe& child = addProbe(root, "child", Area(0, 0, 1, 1));
    root.setCallback(&deleting);
    root.setCallback(&later);
    deleting.onAction = [&] { root.deleteControl(0); };

    child.sendAction(ACTION_BUTTON_RELEASED);
    EXPECT_TRUE(later.heard.empty());
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

} // namespace

} // namespace zavex::vellum::test
