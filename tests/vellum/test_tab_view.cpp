#include "vellum/probe.h"
#include "vellum/vel_control_factory.h"
#include "vellum/vel_tab_frame.h"
#include "vellum/vel_tab_view.h"
#include "vellum/vel_tree_view.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/** Tabs "one" at x 0..38, "three" at 38..88 and "five" at 88..132, 20 high. */
struct TabTree {
    explicit TabTree(const std::string& width = "200")
    {
        [[maybe_unused]] static const bool registered = [] {
            controlFactory.addControlType(new TabFrame);
            controlFactory.addControlType(new TreeView);
            return true;
        }();
        root.addControl(view);
        loadFrom(*view, R"(<vellum><tabview><child>
            <tabframe id="1" caption="one"><child><treeview id="tree" size="20"><item text="a"/><item text="b"/>
                <item text="c"/><item text="d"/></treeview></child></tabframe>
            <tabframe id="3" caption="three"/><tabframe id="5" caption="five"/></child>
            <area width=")" +
                            width + R"(" height="82"/></tabview></vellum>)");
    }

    /** Identifiers of the visible pages. */
    std::string shown()
    {
        std::string all;
        for (int i = 0; i < view->getPageCount(); ++i)
            if (view->getPage(i)->getVisible())
                all += view->getPage(i)->getId();
        return all;
    }

    Root root{Area(0, 0, 400, 300)};
    TabView* view = new TabView;
};

constexpr struct TabCase {
    const char* name;
    const char* width; // of the view
    Vector2f press;
    const char* shown;
} TAB_CASES[] = {
    {"FirstsLastPixel",  "200", {37, 19},  "1"},
    {"Second",           "200", {38, 0},   "3"},
    {"ThirdsLastPixel",  "200", {131, 10}, "5"},
    {"BesideAll",        "200", {132, 10}, "1"},
    {"BelowTheTabs",     "200", {50, 20},  "1"},
    {"SecondWhenNarrow", "60",  {20, 10},  "3"},
    {"ThirdWhenNarrow",  "60",  {59, 10},  "5"},
    {"NoWidthAtAll",     "0",   {0, 10},   "1"},
};

TEST(TabPress, ShowsThePage)
{
    for (const TabCase& row : TAB_CASES) {
        SCOPED_TRACE(row.name);
        TabTree tree(row.width);
        send(tree.root, "mousemove", row.press);
        send(tree.root, "mousedown", row.press);
        send(tree.root, "mouseup", row.press);
        EXPECT_EQ(tree.shown(), row.shown);
        tree.root.Control::draw(tree.root.getArea(), tree.root.getArea(), tree.root.getArea());
    }
}

TEST(TabView, SwitchingKeepsThePagesState)
{
    TabTree tree;
    auto& list = dynamic_cast<TreeView&>(*tree.root.findControl("tree"));
    send(tree.root, "mousedown", Vector2f(50, 70)); // "c", and scrolls to the end
    Event wheel = eventAt("mousewheel", Vector2f(50, 70));
    wheel.mouseDeltaWheel = -1.0f;
    tree.root.handleEvent(wheel);
    send(tree.root, "mouseup", Vector2f(50, 70));
    ASSERT_EQ(list.getValueText(), "c");

    tree.view->select(1);
    send(tree.root, "mousedown", Vector2f(50, 30));
    tree.root.handleEvent(wheel);
    EXPECT_EQ(list.getValueText(), "c") << "hidden pages get nothing";
    tree.view->setArea(Area(0, 0, 100, 62));
    tree.view->setArea(Area(0, 0, 200, 82));
    tree.view->select(0);
    EXPECT_EQ(text(list.getAreaWorld()), "0 20 200 82");
    tree.root.Control::draw(tree.root.getArea(), tree.root.getArea(), tree.root.getArea());
    EXPECT_EQ(tree.root.render.texts.back().text, "d") << "still scrolled to the end";
}

TEST(TabView, StepsWithTheKeysOnceATabWasPressed)
{
    TabTree tree;
    send(tree.root, "mousedown", Vector2f(50, 10));
    std::string shown;
    for (const display::Key key : {display::KEY_RIGHT, display::KEY_RIGHT, display::KEY_LEFT,
                                   display::KEY_LEFT, display::KEY_LEFT}) {
        pressKey(tree.root, key);
        shown += tree.shown();
    }
    EXPECT_EQ(shown, "55311");
}

TEST(TabView, ANewPageWaitsForItsTurn)
{
    TabTree tree;
    Probe& late = addProbe(*tree.view, "late", Area(0, 0, 0, 0));
    EXPECT_EQ(tree.shown(), "1");
    EXPECT_EQ(text(late.getArea()), "0 20 200 82");
    send(tree.root, "mousedown", Vector2f(50, 50));
    EXPECT_TRUE(late.seen.empty());

    tree.view->select(3);
    EXPECT_EQ(tree.shown(), "late");
    delete &late;
    EXPECT_EQ(tree.view->getSelected(), -1);
}

TEST(TabView, TheNextPageTakesThePlaceOfADeletedOne)
{
    TabTree tree;
    tree.view->select(1);
    tree.view->deleteControl(3); // pages lie above the tabs, the shown one on top
    EXPECT_EQ(tree.shown(), "5");
    tree.view->deleteControl(2);
    EXPECT_EQ(tree.shown(), "1") << "the one before where there is no next";
    tree.view->deleteControl(1);
    EXPECT_EQ(tree.view->getPageCount(), 0);

    tree.root.Control::draw(tree.root.getArea(), tree.root.getArea(), tree.root.getArea());
    addProbe(*tree.view, "again", Area(0, 0, 0, 0));
    EXPECT_EQ(tree.shown(), "again");
    tree.view->deleteControls();
    tree.view->deleteControl(0);
    EXPECT_EQ(tree.view->getChildCount(), 1) << "the tabs stay";
}

} // namespace

} // namespace zavex::vellum::test
