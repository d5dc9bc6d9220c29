#include "vellum/probe.h"
#include "vellum/vel_context.h"
#include "vellum/vel_menu.h"
#include "vellum/vel_menu_bar.h"

#include <gtest/gtest.h>

#include <vector>

namespace zavex::vellum::test {

namespace {

struct Step {
    const char* type; // of the event; "right" is a press of the right button
    Vector2f position;
    const char* open; // caption of the menu that is open afterwards; empty for none
};

struct GestureCase {
    const char* name;
    std::vector<Step> steps;
    const char* chosen; // the path that the observer heard of; empty for none
};

void perform(Screen& screen, const std::vector<Step>& steps)
{
    for (std::size_t i = 0; i < steps.size(); ++i) {
        const bool right = steps[i].type == std::string("right");
        Event event = eventAt(right ? "mousedown" : steps[i].type, steps[i].position);
        event.button = right ? display::MOUSE_RIGHT : display::MOUSE_LEFT;
        screen.handleEvent(event);
        EXPECT_EQ(screen.openMenu(), steps[i].open) << "step " << i;
    }
}

std::vector<std::string> listOf(const std::string& text)
{
    return text.empty() ? std::vector<std::string>{} : std::vector<std::string>{text};
}

/**
 * A bar along the top with the titles "file" at x 5..29, "edit" at 44..68 and "help" at 83..107.
 * The menu of "file" is at (5, 20) with rows at y 25 ("open"), 40 ("recent") and 55 ("quit"); that
 * of "recent" at (72, 35) with a row at y 40.
 */
struct MenuBarTree {
    MenuBarTree()
    {
        screen.addControl(bar);
        loadFrom(*bar, R"(<vellum><menubar id="bar">
            <area x="0" y="0" width="400" height="20"/>
            <item caption="file"><item caption="open"/>
                <item caption="recent"><item caption="a.xml"/></item><item caption="quit"/></item>
            <item caption="edit"><item caption="undo"/></item>
            <item caption="help"/></menubar></vellum>)");
        bar->setCallback(&observer);
    }

    Screen screen;
    Probe& below = addProbe(screen, "below", Area(0, 20, 400, 300));
    MenuBar* bar = new MenuBar;
    Observer observer;
};

constexpr const char* DOWN = Event::MOUSE_DOWN;
constexpr const char* UP = Event::MOUSE_UP;
constexpr const char* MOVE = Event::MOUSE_MOVE;
constexpr Vector2f FILE_TITLE(10, 10);
constexpr Vector2f EDIT_TITLE(50, 10);
constexpr Vector2f HELP_TITLE(90, 10);
constexpr Vector2f OPEN_ROW(10, 30);
constexpr Vector2f RECENT_ROW(10, 45);
constexpr Vector2f OUTSIDE(300, 200);

// clang-format off
const GestureCase BAR_CASES[] = {
    {"FirstReleaseOnTheTitleLeavesItOpen", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}}, ""},
    {"SecondClickOnTheTitleCloses", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, ""}}, ""},
    {"FirstReleaseBesideTheTitleCloses", {{DOWN, FILE_TITLE, "file"}, {MOVE, OUTSIDE, "file"}, {UP, OUTSIDE, ""}}, ""},
    {"DraggedToARow", {{DOWN, FILE_TITLE, "file"}, {MOVE, OPEN_ROW, "file"}, {UP, OPEN_ROW, ""}}, "file.open"},
    {"ClickOnARow", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {MOVE, OPEN_ROW, "file"}, {DOWN, OPEN_ROW, "file"}, {UP, OPEN_ROW, ""}}, "file.open"},
    {"ClickInASubmenu", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {MOVE, RECENT_ROW, "file"}, {MOVE, {80, 45}, "file"}, {DOWN, {80, 45}, "file"}, {UP, {80, 45}, ""}}, "file.recent.a.xml"},
    {"MovesAlongWhenOpen", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {MOVE, {36, 10}, "file"}, {MOVE, EDIT_TITLE, "edit"}, {DOWN, EDIT_TITLE, "edit"}, {UP, EDIT_TITLE, ""}}, ""},
    {"MovesAlongWhenHeld", {{DOWN, FILE_TITLE, "file"}, {MOVE, EDIT_TITLE, "edit"}, {UP, EDIT_TITLE, "edit"}, {MOVE, {50, 30}, "edit"}, {UP, {50, 30}, ""}}, "edit.undo"},
    {"OnlyMovingOpensNothing", {{MOVE, FILE_TITLE, ""}, {MOVE, EDIT_TITLE, ""}}, ""},
    {"PressOutsideCloses", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {MOVE, OUTSIDE, "file"}, {DOWN, OUTSIDE, ""}, {MOVE, EDIT_TITLE, ""}}, ""},
    {"RightPressOnTheTitleCloses", {{DOWN, FILE_TITLE, "file"}, {UP, FILE_TITLE, "file"}, {"right", FILE_TITLE, ""}}, ""},
    {"TitlesLeftEdge", {{DOWN, {44, 0}, "edit"}}, ""},
    {"LeftOfATitle", {{DOWN, {43, 0}, ""}}, ""},
    {"RightEdgeOfATitle", {{DOWN, {68, 19}, ""}}, ""},
    {"BelowTheBar", {{DOWN, {50, 20}, ""}}, ""},
    {"WithoutRows", {{DOWN, HELP_TITLE, "help"}, {UP, HELP_TITLE, "help"}, {MOVE, {90, 22}, "help"}, {DOWN, {90, 22}, ""}}, ""},
};
// clang-format on

TEST(MenuBarGesture, OpensAndCloses)
{
    for (const GestureCase& row : BAR_CASES) {
        SCOPED_TRACE(row.name);
        MenuBarTree tree;
        perform(tree.screen, row.steps);
        EXPECT_EQ(tree.observer.chosen, listOf(row.chosen));
        EXPECT_EQ(tree.below.count("mouseup"), 0) << "seen by the bar and its menu alone";
    }
}

TEST(MenuBar, LetsGoWhenAnyButtonClosedItsMenuAndIsDeadWhenInactive)
{
    MenuBarTree tree;
    perform(tree.screen, {
                             {DOWN,    FILE_TITLE, "file"},
                             {UP,      FILE_TITLE, "file"},
                             {MOVE,    OUTSIDE,    "file"},
                             {"right", OUTSIDE,    ""    },
                             {MOVE,    OUTSIDE,    ""    },
                             {DOWN,    OUTSIDE,    ""    }
    });
    EXPECT_EQ(tree.below.count("mousedown"), 1) << "the next press alone";
    tree.bar->setInactive(true);
    perform(tree.screen, {
                             {MOVE, FILE_TITLE, ""},
                             {DOWN, FILE_TITLE, ""}
    });
}

/** The colour that the first text `caption` was drawn in. */
mathbase::Vector4f colorOf(const RecordingRender& render, const std::string& caption)
{
    for (const RecordingRender::Text& text : render.texts)
        if (text.text == caption)
            return text.color;
    ADD_FAILURE() << caption << " was not drawn";
    return {};
}

TEST(MenuBar, GivesItsColoursToMenusThatHaveNoneOfTheirOwn)
{
    Screen screen;
    auto* bar = new MenuBar;
    screen.addControl(bar);
    loadFrom(*bar, R"(<vellum><menubar><color name="text.color" first="ff0000"/>
        <color name="back.color" first="00ff00"/><area width="400" height="20"/>
        <item caption="file"><item caption="quit"/><item caption="recent"><item caption="a.xml"/>
        </item></item><item caption="edit"><color name="text.color" first="0000ff"/>
        <item caption="undo"/></item></menubar></vellum>)");
    const auto drawMenu = [&] {
        Context& menu = *screen.getOpen();
        menu.draw(menu.getArea(), screen.getArea(), screen.getArea());
    };
    perform(screen, {
                        {DOWN, FILE_TITLE, "file"},
                        {MOVE, RECENT_ROW, "file"}
    });
    drawMenu();
    EXPECT_EQ(colorOf(screen.render, "quit"), mathbase::Vector4f(1, 0, 0, 1));
    EXPECT_EQ(colorOf(screen.render, "recent"), mathbase::Vector4f(0, 1, 0, 1)) << "selected";
    EXPECT_EQ(colorOf(screen.render, "a.xml"), mathbase::Vector4f(1, 0, 0, 1)) << "submenu";
    perform(screen, {
                        {MOVE, EDIT_TITLE, "edit"}
    });
    drawMenu();
    EXPECT_EQ(colorOf(screen.render, "undo"), mathbase::Vector4f(0, 0, 1, 1));
}

TEST(MenuBar, WritesTheMarkedTitleAsAMarkedRow)
{
    MenuBarTree tree;
    loadFrom(*tree.bar, R"(<vellum><menubar><color name="text.color" first="ff0000"/>
        <color name="text.highlight" first="ffffff" second="0000ff"/></menubar></vellum>)");
    perform(tree.screen, {
                             {MOVE, FILE_TITLE, ""}
    });
    tree.bar->draw(tree.bar->getArea(), tree.screen.getArea(), tree.screen.getArea());
    EXPECT_EQ(colorOf(tree.screen.render, "file"), mathbase::Vector4f(0, 0, 1, 1));
    EXPECT_EQ(colorOf(tree.screen.render, "edit"), mathbase::Vector4f(1, 0, 0, 1));
}

/**
 * A menu at (10, 10), 100 wide, with rows at y 15 ("about"), 30 ("view", whose submenu opens at
 * (111, 25) with its row at y 30) and 45 ("quit").
 */
struct MenuTree {
    MenuTree()
    {
        screen.addControl(menu);
        loadFrom(*menu, R"(<vellum><menu><area x="10" y="10" width="100" height="60"/>
            <item caption="about"/><item caption="view"><item caption="zoom"/></item>
            <item caption="quit"/></menu></vellum>)");
        menu->setCallback(&observer);
    }

    Screen screen;
    Menu* menu = new Menu;
    Observer observer;
};

constexpr Vector2f ABOUT(20, 20);
constexpr Vector2f VIEW(20, 35);
constexpr Vector2f ZOOM(120, 35);

// clang-format off
const GestureCase MENU_CASES[] = {
    {"ClickOnARow", {{MOVE, ABOUT, ""}, {DOWN, ABOUT, ""}, {UP, ABOUT, ""}}, "menu.about"},
    {"ReleaseOnAnotherRow", {{MOVE, ABOUT, ""}, {DOWN, ABOUT, ""}, {MOVE, {20, 50}, ""}, {UP, {20, 50}, ""}}, ""},
    {"ReleaseWithoutAPress", {{MOVE, ABOUT, ""}, {UP, ABOUT, ""}}, ""},
    {"PressBetweenRows", {{MOVE, {20, 26}, ""}, {DOWN, {20, 26}, ""}, {UP, {20, 26}, ""}}, ""},
    {"OpensASubmenu", {{MOVE, VIEW, ""}, {DOWN, VIEW, "view"}, {UP, VIEW, "view"}, {MOVE, ZOOM, "view"}, {DOWN, ZOOM, "view"}, {UP, ZOOM, ""}}, "menu.view.zoom"},
    {"PressOutsideClosesASubmenu", {{MOVE, VIEW, ""}, {DOWN, VIEW, "view"}, {UP, VIEW, "view"}, {MOVE, OUTSIDE, "view"}, {DOWN, OUTSIDE, ""}, {UP, OUTSIDE, ""}}, ""},
};
// clang-format on

TEST(MenuGesture, Chooses)
{
    for (const GestureCase& row : MENU_CASES) {
        SCOPED_TRACE(row.name);
        MenuTree tree;
        perform(tree.screen, row.steps);
        EXPECT_EQ(tree.observer.chosen, listOf(row.chosen));
    }
}

} // namespace

} // namespace zavex::vellum::test
