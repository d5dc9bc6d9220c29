#include "vellum/probe.h"
#include "vellum/vel_context.h"
#include "vellum/vel_dropdown.h"

#include <gtest/gtest.h>

#include <vector>

namespace zavex::vellum::test {

namespace {

/** A field of 60 x 20 at (10, 10); its list opens at y 30, with rows from 35 on, 15 apart. */
struct DropdownTree {
    explicit DropdownTree(const std::string& options = R"(<option id="s" name="same"/>
        <option id="t" name="same" default="true"/><option id="l" name="a long name"/>)")
    {
        screen.addControl(dropdown);
        loadFrom(*dropdown,
                 "<vellum><dropdown>" + options +
                     R"(<area x="10" y="10" width="60" height="20"/></dropdown></vellum>)");
        screen.setCallback(&observer);
    }

    void click(Vector2f position)
    {
        send(screen, "mousemove", position);
        send(screen, "mousedown", position);
        send(screen, "mouseup", position);
    }

    Screen screen;
    Dropdown* dropdown = new Dropdown;
    Observer observer;
};

// clang-format off
constexpr struct DefaultCase {
    const char* name;
    const char* options;
    const char* id;
    const char* shown;
} DEFAULT_CASES[] = {
    {"None",        "",                                                                       "",  ""},
    {"TheFirst",    "<option id='a' name='one'/><option id='b' name='two'/>",                 "a", "one"},
    {"TheMarked",   "<option id='a' name='one'/><option id='b' name='two' default='true'/>",  "b", "two"},
    {"NotTheFalse", "<option id='a' name='one'/><option id='b' name='two' default='false'/>", "a", "one"},
    {"TheLast",     "<option id='a' name='one' default='true'/><option id='b' name='two' default='true'/>", "b", "two"},
};
// clang-format on

TEST(DropdownDefault, IsSelectedWithoutAReport)
{
    for (const DefaultCase& row : DEFAULT_CASES) {
        SCOPED_TRACE(row.name);
        DropdownTree tree(row.options);
        EXPECT_EQ(tree.dropdown->getValueId(), row.id);
        EXPECT_EQ(tree.dropdown->getValueName(), row.shown);
        EXPECT_TRUE(tree.observer.heard.empty());
    }
}

TEST(Dropdown, OpensAListBelowThatIsWideEnough)
{
    DropdownTree tree;
    tree.click(Vector2f(10, 10));
    ASSERT_TRUE(tree.screen.getOpen()) << "the first release leaves it open";
    EXPECT_EQ(text(tree.screen.getOpen()->getArea()), "10 30 106 80") << "66 for the name, 30 more";
    tree.click(Vector2f(300, 200));
    EXPECT_FALSE(tree.screen.getOpen());

    tree.dropdown->deleteOptions();
    tree.click(Vector2f(10, 10));
    EXPECT_FALSE(tree.screen.getOpen()) << "nothing to choose from";
    tree.dropdown->addOption("x", "x");
    tree.click(Vector2f(69, 29));
    EXPECT_EQ(text(tree.screen.getOpen()->getArea()), "10 30 70 50") << "at least like the field";
}

TEST(Dropdown, ReportsAChoiceThatIsAnother)
{
    DropdownTree tree;
    std::string ids;
    for (const float row : {40.0f, 40.0f, 70.0f}) {
        tree.click(Vector2f(20, 20));
        tree.click(Vector2f(20, row));
        ids += tree.dropdown->getValueId() + tree.screen.openMenu();
    }
    EXPECT_EQ(ids, "ssl") << "and nothing is open any more";
    ASSERT_EQ(tree.observer.heard.size(), 2u);
    EXPECT_EQ(tree.observer.heard[0].control, tree.dropdown);
    EXPECT_EQ(tree.observer.heard[0].action, ACTION_DROPDOWN_CHANGED);
}

TEST(Dropdown, StepsWithTheKeysAndStopsAtTheEnds)
{
    DropdownTree tree;
    std::string ids;
    for (const display::Key key : {display::KEY_DOWN, display::KEY_DOWN, display::KEY_UP,
                                   display::KEY_UP, display::KEY_UP}) {
        pressKey(tree.screen, key);
        ids += tree.dropdown->getValueId();
    }
    EXPECT_EQ(ids, "lltss");
    EXPECT_EQ(tree.observer.heard.size(), 3u);
}

// clang-format off
const struct OpenListCase {
    const char* name;
    std::vector<display::Key> keys; // after the list of "s", "t" (chosen) and "l" was opened by a click
    const char* id;                 // chosen afterwards
    bool open = false;
} OPEN_LIST_CASES[] = {
    {"DownMarks",           {display::KEY_DOWN}, "t", true},
    {"EnterTakesTheMarked", {display::KEY_DOWN, display::KEY_ENTER}, "l"},
    {"SpaceStopsAtTheEnds", {display::KEY_UP, display::KEY_UP, display::KEY_SPACE}, "s"},
    {"EnterTakesTheCurrent", {display::KEY_KP_ENTER}, "t"},
    {"EscapeTakesNone",     {display::KEY_DOWN, display::KEY_ESC}, "t"},
    {"EnterOpensAgain",     {display::KEY_DOWN, display::KEY_ESC, display::KEY_ENTER}, "t", true},
};
// clang-format on

TEST(Dropdown, AnOpenListFollowsTheKeys)
{
    for (const OpenListCase& row : OPEN_LIST_CASES) {
        SCOPED_TRACE(row.name);
        DropdownTree tree;
        tree.click(Vector2f(20, 20));
        for (const display::Key key : row.keys)
            EXPECT_NE(pressKey(tree.screen, key), 0) << "no other listener gets it";
        EXPECT_EQ(tree.dropdown->getValueId(), row.id);
        EXPECT_EQ(tree.screen.getOpen() != nullptr, row.open);
        tree.click(Vector2f(300, 200));
        EXPECT_EQ(tree.dropdown->getValueId(), row.id) << "a press beside the list chooses nothing";
    }
}

TEST(Dropdown, NewOptionsLeaveTheFocusWhereItIs)
{
    DropdownTree tree;
    tree.click(Vector2f(20, 20));
    tree.click(Vector2f(300, 200));
    Probe& other = addProbe(tree.screen, "other", Area(100, 100, 110, 110));
    tree.dropdown->addOption("n", "new");
    EXPECT_EQ(tree.screen.getFocus(), &other);
}

} // namespace

} // namespace zavex::vellum::test
