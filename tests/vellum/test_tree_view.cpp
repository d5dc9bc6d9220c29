#include "vellum/probe.h"
#include "vellum/vel_tree_view.h"

#include <gtest/gtest.h>

#include <vector>

namespace zavex::vellum::test {

namespace {

using display::KEY_DOWN;
using display::KEY_END;
using display::KEY_ENTER;
using display::KEY_HOME;
using display::KEY_LEFT;
using display::KEY_PAGEDOWN;
using display::KEY_PAGEUP;
using display::KEY_RIGHT;
using display::KEY_UP;

constexpr const char* ITEMS = R"(
    <item id="a" text="A"><item id="a1" text="A1"><item id="a11" text="A11"/></item>
        <item id="a2" text="A2"/></item>
    <item id="b" text="B"/><item id="c" text="C"><item id="c1" text="C1"/></item>)";

/**
 * Rows 20 high from y 1 on: a, a1, a11, a2, b, c, c1. Markers are 14 wide, from x 1 on at the top
 * and 14 further at each level.
 */
struct TreeTree {
    explicit TreeTree(const std::string& height = "142", const std::string& items = ITEMS)
    {
        root.addControl(tree);
        loadFrom(*tree, "<vellum><treeview size='20'>" + items + "<area width='100' height='" +
                            height + "'/></treeview></vellum>");
        root.setCallback(&observer);
    }

    /** The texts of the rows that are drawn. */
    std::string rows()
    {
        root.render.texts.clear();
        tree->draw(tree->getArea(), root.getArea(), tree->getArea());
        std::string all;
        for (const RecordingRender::Text& each : root.render.texts)
            all += (all.empty() ? "" : " ") + each.text;
        return all;
    }

    Root root{Area(0, 0, 200, 200)};
    Observer observer;
    TreeView* tree = new TreeView;
};

// There is room for three rows and a half.
const struct KeyCase {
    const char* name;
    std::vector<display::Key> keys;
    const char* selected;
    const char* rows; // that are drawn in the end
    std::size_t reports;
} KEY_CASES[] = {
    {"UpSelectsTheFirst",   {KEY_UP},                                           "a",   "A A1 A11",  1},
    {"DownAndUp",           {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_UP},             "a1",  "A A1 A11",  4},
    {"StopsAtTheTop",       {KEY_DOWN, KEY_UP, KEY_UP},                         "a",   "A A1 A11",  1},
    {"StopsAtTheEnd",       {KEY_END, KEY_DOWN},                                "c1",  "B C C1",    1},
    {"PagesDown",           {KEY_HOME, KEY_PAGEDOWN},                           "a2",  "A1 A11 A2", 2},
    {"PagesBeyondTheTop",   {KEY_HOME, KEY_PAGEDOWN, KEY_PAGEUP, KEY_PAGEUP},   "a",   "A A1 A11",  3},
    {"LeftFolds",           {KEY_HOME, KEY_LEFT},                               "a",   "A B C",     1},
    {"DownSkipsTheFolded",  {KEY_HOME, KEY_LEFT, KEY_DOWN, KEY_DOWN, KEY_DOWN}, "c1",  "B C C1",    4},
    {"LeftGoesToTheParent", {KEY_HOME, KEY_DOWN, KEY_DOWN, KEY_LEFT},           "a1",  "A A1 A11",  4},
    {"RightUnfolds",        {KEY_HOME, KEY_LEFT, KEY_RIGHT},                    "a",   "A A1 A11",  1},
    {"RightGoesToTheChild", {KEY_HOME, KEY_RIGHT, KEY_RIGHT},                   "a11", "A A1 A11",  3},
    {"EnterTurnsAround",    {KEY_HOME, KEY_ENTER},                              "a",   "A B C",     1},
    {"WithoutASelection",   {KEY_LEFT, KEY_RIGHT, KEY_ENTER},                   "",    "A A1 A11",  0},
};

TEST(TreeViewKey, Moves)
{
    for (const KeyCase& row : KEY_CASES) {
        SCOPED_TRACE(row.name);
        TreeTree tree("72");
        for (const display::Key key : row.keys)
            pressKey(tree.root, key);
        EXPECT_EQ(tree.tree->getValueId(), row.selected);
        EXPECT_EQ(tree.rows(), row.rows);
        EXPECT_EQ(tree.observer.heard.size(), row.reports);
        for (const Observer::Heard& heard : tree.observer.heard)
            EXPECT_EQ(heard.action, ACTION_TREEVIEW_CHANGED);
    }
}

constexpr struct PressCase {
    const char* name;
    Vector2f position;
    bool doubleClick;
    const char* selected;
    const char* rows;
} PRESS_CASES[] = {
    {"FirstRow",              {50, 1},   false, "a",  "A A1 A11 A2 B C C1"},
    {"SecondRow",             {50, 21},  false, "a1", "A A1 A11 A2 B C C1"},
    {"BelowAll",              {50, 141}, false, "",   "A A1 A11 A2 B C C1"},
    {"Marker",                {1, 10},   false, "",   "A B C C1"          },
    {"MarkersRightEdge",      {15, 10},  false, "a",  "A A1 A11 A2 B C C1"},
    {"MarkerOfALowerLevel",   {15, 30},  false, "",   "A A1 A2 B C C1"    },
    {"WhereALeafHasNoMarker", {5, 90},   false, "b",  "A A1 A11 A2 B C C1"},
    {"DoubleClick",           {50, 10},  true,  "",   "A B C C1"          },
};

TEST(TreeViewPress, SelectsOrFolds)
{
    for (const PressCase& row : PRESS_CASES) {
        SCOPED_TRACE(row.name);
        TreeTree tree;
        Event event = eventAt("mousedown", row.position);
        event.doubleClick = row.doubleClick;
        tree.root.handleEvent(event);
        EXPECT_EQ(tree.tree->getValueId(), row.selected);
        EXPECT_EQ(tree.rows(), row.rows);
    }
}

TEST(TreeView, FoldingAwayTheSelectedItemSelectsWhatFolded)
{
    TreeTree tree;
    tree.tree->select(2);
    tree.tree->setFolded(0, true);
    EXPECT_EQ(tree.tree->getValueText(), "A");
    EXPECT_EQ(tree.observer.heard.size(), 2u);
    tree.tree->select(2);
    EXPECT_EQ(tree.rows(), "A A1 A11 A2 B C C1") << "what is selected is shown";
    tree.tree->select(7);
    EXPECT_EQ(tree.tree->getSelected(), -1);
}

int turnWheel(Control& control, float steps)
{
    Event event = eventAt("mousewheel", Vector2f(10, 10));
    event.mouseDeltaWheel = steps;
    return control.handleEvent(event);
}

TEST(TreeView, ScrollsByTheWheelWhenLongerThanItsArea)
{
    TreeTree tree("62");
    EXPECT_EQ(turnWheel(tree.root, -1.0f), 1);
    EXPECT_EQ(tree.rows(), "A2 B C");
    turnWheel(tree.root, -9.0f);
    EXPECT_EQ(tree.rows(), "B C C1") << "not beyond the end";
    turnWheel(tree.root, 1.0f / 3.0f);
    EXPECT_EQ(tree.rows(), "A2 B C");
    turnWheel(tree.root, 9.0f);
    EXPECT_EQ(tree.rows(), "A A1 A11");

    turnWheel(tree.root, -9.0f);
    tree.tree->setArea(Area(0, 0, 100, 142));
    EXPECT_EQ(turnWheel(tree.root, -1.0f), 0) << "left to others";
    EXPECT_EQ(tree.rows(), "A A1 A11 A2 B C C1");
    tree.tree->setArea(Area(0, 0, 100, 62));
    EXPECT_EQ(tree.rows(), "B C C1") << "resizing keeps the place";
}

TEST(TreeView, NestsWithoutEnd)
{
    std::string items;
    for (const char* tag : {"<item>", "</item>"})
        for (int i = 0; i < 9000; ++i)
            items += tag;
    TreeTree deep("62", items);
    EXPECT_EQ(deep.tree->getItemCount(), 9000);
    deep.tree->setFolded(8998, true);
    deep.tree->addItem("", "below a folded one", 9000);
    deep.tree->addItem("", "at the top", -1);
    pressKey(deep.root, KEY_END);
    EXPECT_EQ(deep.tree->getValueText(), "at the top");
    pressKey(deep.root, KEY_UP);
    EXPECT_EQ(deep.tree->getSelected(), 8998);
}

} // namespace

} // namespace zavex::vellum::test
