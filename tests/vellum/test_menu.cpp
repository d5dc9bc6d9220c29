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

    friend void PrintTo(const GestureCase& gesture, std::ostream* out) { *out << gesture.name; }
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

constexpr Vector2f FILE_TITLE(10, 10);
constexpr Vector2f EDIT_TITLE(50, 10);
constexpr Vector2f OPEN_ROW(10, 30);
constexpr Vector2f RECENT_ROW(10, 45);
constexpr Vector2f OUTSIDE(300, 200);

const GestureCase BAR_CASES[] = {
    {"FirstReleaseOnTheTitleLeavesItOpen",
     {{"mousedown", FILE_TITLE, "file"}, {"mouseup", FILE_TITLE, "file"}},
     ""                                                                                                      },
    {"SecondClickOnTheTitleCloses",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, ""}},
     ""                                                                                                      },
    {"FirstReleaseBesideTheTitleCloses",
     {{"mousedown", FILE_TITLE, "file"}, {"mousemove", OUTSIDE, "file"}, {"mouseup", OUTSIDE, ""}},
     ""                                                                                                      },
    {"DraggedToARow",
     {{"mousedown", FILE_TITLE, "file"},
      {"mousemove", OPEN_ROW, "file"},
      {"mouseup", OPEN_ROW, ""}},
     "file.open"                                                                                             },
    {"ClickOnARow",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"mousemove", OPEN_ROW, "file"},
      {"mousedown", OPEN_ROW, "file"},
      {"mouseup", OPEN_ROW, ""}},
     "file.open"                                                                                             },
    {"ClickInASubmenu",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"mousemove", RECENT_ROW, "file"},
      {"mousemove", {80, 45}, "file"},
      {"mousedown", {80, 45}, "file"},
      {"mouseup", {80, 45}, ""}},
     "file.recent.a.xml"                                                                                     },
    {"MovesAlongWhenOpen",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"mousemove", {36, 10}, "file"},
      {"mousemove", EDIT_TITLE, "edit"},
      {"mousedown", EDIT_TITLE, "edit"},
      {"mouseup", EDIT_TITLE, ""}},
     ""                                                                                                      },
    {"MovesAlongWhenHeld",
     {{"mousedown", FILE_TITLE, "file"},
      {"mousemove", EDIT_TITLE, "edit"},
      {"mouseup", EDIT_TITLE, "edit"},
      {"mousemove", {50, 30}, "edit"},
      {"mouseup", {50, 30}, ""}},
     "edit.undo"                                                                                             },
    {"OnlyMovingOpensNothing",             {{"mousemove", FILE_TITLE, ""}, {"mousemove", EDIT_TITLE, ""}}, ""},
    {"PressOutsideCloses",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"mousemove", OUTSIDE, "file"},
      {"mousedown", OUTSIDE, ""},
      {"mousemove", EDIT_TITLE, ""}},
     ""                                                                                                      },
    {"RightPressOnTheTitleCloses",
     {{"mousedown", FILE_TITLE, "file"},
      {"mouseup", FILE_TITLE, "file"},
      {"right", FILE_TITLE, ""}},
     ""                                                                                                      },
    {"TitlesLeftEdge",                     {{"mousedown", {44, 0}, "edit"}},                               ""},
    {"LeftOfATitle",                       {{"mousedown", {43, 0}, ""}},                                   ""},
    {"RightEdgeOfATitle",                  {{"mousedown", {68, 19}, ""}},                                  ""},
    {"BelowTheBar",                        {{"mousedown", {50, 20}, ""}},                                  ""},
    {"WithoutRows",
     {{"mousedown", {90, 10}, "help"},
      {"mouseup", {90, 10}, "help"},
      {"mousemove", {90, 22}, "help"},
      {"mousedown", {90, 22}, ""}},
     ""                                                                                                      },
};

class MenuBarGesture : public testing::TestWithParam<GestureCase> {};

TEST_P(MenuBarGesture, OpensAndCloses)
{
    MenuBarTree tree;
    perform(tree.screen, GetParam().steps);
    EXPECT_EQ(tree.observer.chosen, listOf(GetParam().chosen));
    EXPECT_EQ(tree.below.count("mouseup"), 0) << "seen by the bar and its menu alone";
}

INSTANTIATE_TEST_SUITE_P(Cases, MenuBarGesture, testing::ValuesIn(BAR_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(MenuBar, LetsGoWhenAnyButtonClosedItsMenu)
{
    MenuBarTree tree;
    perform(tree.screen, {
                             {"mousedown", FILE_TITLE, "file"},
                             {"mouseup",   FILE_TITLE, "file"},
                             {"mousemove", OUTSIDE,    "file"},
                             {"right",     OUTSIDE,    ""    },
                             {"mousemove", OUTSIDE,    ""    },
                             {"mousedown", OUTSIDE,    ""    }
    });
    EXPECT_EQ(tree.below.count("mousedown"), 1) << "the next press alone";
}

TEST(MenuBar, IsDeadWhenInactive)
{
    MenuBarTree tree;
    tree.bar->setInactive(true);
    perform(tree.screen, {
                             {"mousemove", FILE_TITLE, ""},
                             {"mousedown", FILE_TITLE, ""}
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
        <color name="caption.highlight" first="00ff00"/><area width="400" height="20"/>
        <item caption="file"><item caption="quit"/><item caption="recent"><item caption="a.xml"/>
        </item></item><item caption="edit"><color name="text.color" first="0000ff"/>
        <item caption="undo"/></item></menubar></vellum>)");
    const auto drawMenu = [&] {
        Context& menu = *screen.getOpen();
        menu.draw(menu.getArea(), screen.getArea(), screen.getArea());
    };
    perform(screen,
            {
                {"mousedown",  FILE_TITLE, "file"},
                { "mousemove", Vector2f(10,        45), "file"}
    });
    drawMenu();
    EXPECT_EQ(colorOf(screen.render, "quit"), mathbase::Vector4f(1, 0, 0, 1));
    EXPECT_EQ(colorOf(screen.render, "recent"), mathbase::Vector4f(0, 1, 0, 1)) << "selected";
    EXPECT_EQ(colorOf(screen.render, "a.xml"), mathbase::Vector4f(1, 0, 0, 1)) << "submenu";
    perform(screen, {
                        {"mousemove", EDIT_TITLE, "edit"}
    });
    drawMenu();
    EXPECT_EQ(colorOf(screen.render, "undo"), mathbase::Vector4f(0, 0, 1, 1));
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

const GestureCase MENU_CASES[] = {
    {"ClickOnARow",
     {{"mousemove", {20, 20}, ""}, {"mousedown", {20, 20}, ""}, {"mouseup", {20, 20}, ""}},
     "menu.about"                                                                              },
    {"ReleaseOnAnotherRow",
     {{"mousemove", {20, 20}, ""},
      {"mousedown", {20, 20}, ""},
      {"mousemove", {20, 50}, ""},
      {"mouseup", {20, 50}, ""}},
     ""                                                                                        },
    {"ReleaseWithoutAPress",       {{"mousemove", {20, 20}, ""}, {"mouseup", {20, 20}, ""}}, ""},
    {"PressBetweenRows",
     {{"mousemove", {20, 26}, ""}, {"mousedown", {20, 26}, ""}, {"mouseup", {20, 26}, ""}},
     ""                                                                                        },
    {"OpensASubmenu",
     {{"mousemove", {20, 35}, ""},
      {"mousedown", {20, 35}, "view"},
      {"mouseup", {20, 35}, "view"},
      {"mousemove", {120, 35}, "view"},
      {"mousedown", {120, 35}, "view"},
      {"mouseup", {120, 35}, ""}},
     "menu.view.zoom"                                                                          },
    {"PressOutsideClosesASubmenu",
     {{"mousemove", {20, 35}, ""},
      {"mousedown", {20, 35}, "view"},
      {"mouseup", {20, 35}, "view"},
      {"mousemove", {300, 200}, "view"},
      {"mousedown", {300, 200}, ""},
      {"mouseup", {300, 200}, ""}},
     ""                                                                                        },
};

class MenuGesture : public testing::TestWithParam<GestureCase> {};

TEST_P(MenuGesture, Chooses)
{
    MenuTree tree;
    perform(tree.screen, GetParam().steps);
    EXPECT_EQ(tree.observer.chosen, listOf(GetParam().chosen));
}

INSTANTIATE_TEST_SUITE_P(Cases, MenuGesture, testing::ValuesIn(MENU_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(Menu, IsAlwaysDrawnAndMarksTheRowUnderThePointer)
{
    MenuTree tree;
    send(tree.screen, "mousemove", Vector2f(20, 50));
    tree.screen.Control::draw(tree.screen.getArea(), Area(0, 0, 400, 300), Area(0, 0, 400, 300));
    const RecordingRender& render = tree.screen.render;
    ASSERT_EQ(render.boxes.size(), 2u);
    EXPECT_EQ(text(render.boxes[0]), "10 10 110 70");
    EXPECT_EQ(text(render.boxes[1]), "15 45 105 55");
    EXPECT_EQ(render.texts.size(), 4u) << "three rows and a marker";
}

} // namespace

} // namespace zavex::vellum::test
