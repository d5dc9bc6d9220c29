#include "vellum/user.h"
#include "vellum/vel_box_view.h"
#include "vellum/vel_button.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_dropdown.h"
#include "vellum/vel_flow.h"
#include "vellum/vel_knob.h"
#include "vellum/vel_label.h"
#include "vellum/vel_menu.h"
#include "vellum/vel_menu_bar.h"
#include "vellum/vel_radio_button.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_slider.h"
#include "vellum/vel_tab_view.h"
#include "vellum/vel_text_input.h"
#include "vellum/vel_tree_view.h"
#include "vellum/vel_window.h"

#include "display/dis_font.h"

#include <gtest/gtest.h>

#include <span>
#include <string>

namespace zavex::vellum::test {

namespace {

const std::string COPIED = "p9.";

// What a control holds, as the rows below write it.
std::string stateOf(Button& button, Screen&)
{
    return button.getToggled() ? "on" : "off";
}

/** In 0..1, and between the bounds. */
std::string stateOf(Slider& slider, Screen&)
{
    const std::string unit = number(slider.getValue(true));
    const std::string value = number(slider.getValue(false));
    return unit == value ? unit : unit + " " + value;
}

std::string stateOf(Knob& knob, Screen&)
{
    return number(knob.getValue());
}

/** What is chosen, and where the list is open. */
std::string stateOf(Dropdown& dropdown, Screen& screen)
{
    Context* const list = screen.getOpen();
    return dropdown.getValueId() + (list ? " " + text(list->getArea()) : "");
}

/** The text as it is drawn, where and how it is aligned there. */
std::string stateOf(Label&, Screen& screen)
{
    screen.redraw();
    const RecordingRender::Text& drawn = screen.render.texts.at(0);
    return drawn.text + " " + number(drawn.position.x) + " " + number(drawn.position.y) +
           (drawn.align == display::Font::ALIGN_LEFT    ? ""
            : drawn.align == display::Font::ALIGN_RIGHT ? " right"
                                                        : " center");
}

/** The rectangles of what it holds. */
std::string stateOf(Flow& flow, Screen&)
{
    std::string areas;
    for (int i = 0; i < flow.getChildCount(); ++i)
        areas += (i ? ", " : "") + text(flow.getOrder(i)->getArea());
    return areas;
}

/** The text with '|' at the cursor and '!' at the selection's other end; what was copied. */
std::string stateOf(TextInput& input, Screen& screen)
{
    const EditLine& line = input.getLine();
    const bool atEnd = line.cursor() == line.selectionEnd();
    std::string marked = line.text();
    if (line.hasSelection())
        marked.insert(line.selectionEnd(), atEnd ? "|" : "!");
    marked.insert(line.selectionBegin(), atEnd && line.hasSelection() ? "!" : "|");
    const std::string& copied = screen.getCopyString();
    return marked + (copied == COPIED ? "" : " copied " + copied);
}

/** A digit for each option, 1 where it is checked, and what its circle shows of the pointer. */
std::string stateOf(RadioButton& options, Screen& screen)
{
    screen.redraw();
    std::vector<mathbase::Vector4f> colors;
    for (std::size_t i = 0; i < screen.render.circles.size(); ++i)
        if (screen.render.circles[i].getWidth() == 10.0f) // inside the rim
            colors.push_back(screen.render.circleColors[i]);
    const auto shows = [&](std::size_t row, Look look) {
        return row < colors.size() && colors[row] == pick(widgetStyle().mBack, look).first;
    };
    std::string state;
    for (int i = 0; i < options.getOptionCount(); ++i) {
        const auto row = static_cast<std::size_t>(i);
        state += shows(row, Look::HOVERED) ? "h" : shows(row, Look::PRESSED) ? "p" : "";
        state += options.isChecked(i) ? '1' : '0';
    }
    return state;
}

/** Identifiers of the visible pages. */
std::string stateOf(TabView& tabs, Screen&)
{
    std::string all;
    for (int i = 0; i < tabs.getPageCount(); ++i)
        if (tabs.getPage(i)->getVisible())
            all += tabs.getPage(i)->getId();
    return all;
}

/** What is selected and the texts of the rows that are drawn. */
std::string stateOf(TreeView& tree, Screen& screen)
{
    screen.redraw();
    std::string all = tree.getValueId() + ":";
    for (const RecordingRender::Text& each : screen.render.texts)
        all += " " + each.text;
    return all;
}

std::string stateOf(Window& window, Screen&)
{
    return text(window.getArea());
}

std::string stateOf(Scrollbars& bars, Screen&)
{
    const Vector2f position = bars.getScrollPosition();
    return number(position.x) + " " + number(position.y);
}

/** Caption of the menu that is open. */
/** Where the sheet has its box, and how far the sheet was moved. */
std::string stateOf(BoxView& sheet, Screen& screen)
{
    const Vector2f offset = sheet.getOffset();
    return text(screen.findControl("box")->getArea()) + ", " + number(offset.x) + " " +
           number(offset.y);
}

template <typename MenuOrBar>
requires std::is_same_v<MenuOrBar, MenuBar> || std::is_same_v<MenuOrBar, Menu> std::string
stateOf(MenuOrBar&, Screen& screen)
{
    return screen.openMenu();
}

std::string stateOf(ColorChooser& chooser, Screen& screen)
{
    screen.redraw();
    const mathbase::Vector3f color = chooser.getColor();
    return number(color.x) + " " + number(color.y) + " " + number(color.z);
}

/** The state of a control that is of one of some types. */
template <typename... Controls>
std::string stateOfAny(Control& control, Screen& screen)
{
    std::string state;
    const auto ask = [&]<typename Kind>(Kind* kind) {
        if (kind)
            state = stateOf(*kind, screen);
        return kind != nullptr;
    };
    EXPECT_TRUE((ask(dynamic_cast<Controls*>(&control)) || ...)) << control.getType();
    return state;
}

std::string stateOf(Control& control, Screen& screen)
{
    return stateOfAny<BoxView, Button, ColorChooser, Dropdown, Knob, Label, Menu, MenuBar,
                      RadioButton, Scrollbars, Slider, TabView, TextInput, TreeView, Window, Flow>(
        control, screen);
}

struct GestureCase {
    const char* name;
    std::string element;
    const char* steps;
    const char* heard; // by the control's observer, as `Observer::text` writes it
};

void expectGestures(std::span<const GestureCase> rows)
{
    for (const GestureCase& row : rows) {
        SCOPED_TRACE(row.name);
        Bench bench(row.element);
        bench.screen.setCopyString(COPIED);
        bench.control.setArea();
        bench.screen.redraw();
        User(bench.screen, [&] { return stateOf(bench.control, bench.screen); }).does(row.steps);
        EXPECT_EQ(bench.observer.text(), row.heard);
    }
}

const std::string AT = "<area x='10' y='20' w='40' h='20'/>";
const std::string PUSH = "<button>" + AT + "</button>";
const std::string TOGGLE = "<button toggled='true'>" + AT + "</button>";

// The track is 110 pixels long; a vertical handle at 0 covers the rows 111 to 121.
const std::string UPRIGHT = "<slider size='10'><area x='10' y='10' w='16' h='112'/></slider>";
const std::string SIDEWAYS = "<slider size='10' direction='horisontal'>"
                             "<area x='10' y='10' w='112' h='16'/></slider>";
const std::string KNOB = "<knob value='0.5'><area x='10' y='10' w='100' h='80'/></knob>";

// A field of 60 x 20 at (10, 10); its list opens at y 30, with rows from 35 on, 15 apart.
const std::string DROPDOWN =
    "<dropdown><option id='s' name='same'/><option id='t' name='same' default='true'/>"
    "<option id='l' name='a long name'/><area x='10' y='10' width='60' height='20'/></dropdown>";

// clang-format off
const GestureCase VALUE_CASES[] = {
    {"ButtonsPixels",          PUSH,     "click 10,20; up; click 49,39; up",                           "pressed released pressed released"},
    {"ButtonsEdges",           PUSH,     "click 50,30; click 30,40",                           ""},
    {"ButtonReleasedOutside",  PUSH,     "down 30,30; up 150,90",                              "pressed"},
    {"ButtonPressedOutside",   PUSH,     "down 60,30; up 30,30",                               ""},
    {"ToggleAlternates",       TOGGLE,   "click 30,30; = on; click; = off; click; = on",       "pressed released pressed"},
    {"ToggleReleasedOutside",  TOGGLE,   "down 30,30; up 150,90; = off",                       ""},
    {"SliderUp",               UPRIGHT,  "down 18,115; = 0; move 18,65; = 0.5; up; move 18,16; = 0.5", "slider"},
    {"SliderBeyondAndAside",   UPRIGHT,  "down 18,115; move 150,1; = 1; move 150,3; = 1",      "slider"},
    {"SliderBesideTheHandle",  UPRIGHT,  "down 18,66; = 0.5; up; down 18,70; = 0.5; up; down 18,100; = 0.16; move 18,50; = 0.66", "slider slider slider"},
    {"SliderToTheRight",       SIDEWAYS, "down 13,18; = 0; move 63,190; = 0.5",                "slider"},
    {"SliderKeys",             UPRIGHT,  "key UP; = 0.05; key END PAGEDOWN; = 0.8; used; key F1; unused", "slider slider slider"},
    {"SliderWheel",            UPRIGHT,  "move 18,60; wheel 2; used; = 0.1",                   "slider"},
    {"KnobUpwards",            KNOB,     "down 50,50; move 150,25; = 0.75; move 50,199; = 0; move 50,198; up; key END; used; = 1; key F1; unused", "knob knob knob"},
    {"ButtonOthers",           PUSH,     "right 30,30; rightup; disable it; click 30,30; enable it; hide it; click", ""},
    {"SliderPercent",          "<slider min='-10' max='30' percent='25'/>", "= 0.25 0", ""},
    {"SliderBoundsReversed",   "<slider min='30' max='-10' percent='25'/>", "= 0.25 0", ""},
    {"SliderBoundsEqual",      "<slider min='7' max='7' percent='50'/>",    "= 0.5 7",  ""},
    {"SliderTooLarge",         "<slider max='1e30' percent='1000'/>",       "= 1 1e+09", ""},
    {"SliderNegative",         "<slider max='4' percent='-1'/>",            "= 0",      ""},
    {"SliderNotNumbers",       "<slider min='a' max='' percent='nan'/>",    "= 0",      ""},
    {"DropdownDefaults",       DROPDOWN, "= t",                                                ""},
    {"DropdownTheFirst",       "<dropdown><option id='a'/><option id='b' default='false'/></dropdown>", "= a", ""},
    {"DropdownTheLastDefault", "<dropdown><option id='a' default='true'/><option id='b' default='true'/></dropdown>", "= b", ""},
    {"DropdownEmpty",          "<dropdown/>", "click 10,10; =",                                ""},
    {"DropdownNarrow",         "<dropdown><option id='x' name='x'/><area x='10' y='10' w='60' h='20'/></dropdown>", "click 69,29; = x 10 30 70 50", ""},
    {"DropdownFirstRelease",   DROPDOWN, "down 10,10; up; = t 10 30 106 80; click 300,200; = t", ""},
    {"DropdownChoices",        DROPDOWN, "click 20,20; click 20,40; = s; click 20,20; click 20,40; = s; click 20,20; click 20,70; = l", "dropdown dropdown dropdown.same dropdown.same dropdown.a long name"},
    {"DropdownKeys",           DROPDOWN, "key DOWN DOWN; = l; key UP; = t; key UP UP; = s; key F1; unused; key SPACE; = s 10 30 106 80", "dropdown dropdown dropdown"},
    {"ListDownMarks",          DROPDOWN, "click 20,20; key DOWN; used; = t 10 30 106 80; click 300,200; = t", ""},
    {"ListEnterTakesMarked",   DROPDOWN, "click 20,20; key DOWN ENTER; used; = l",             "dropdown dropdown.a long name"},
    {"ListSpaceStopsAtEnds",   DROPDOWN, "click 20,20; key UP UP SPACE; used; = s",            "dropdown dropdown.same"},
    {"ListEnterTakesCurrent",  DROPDOWN, "click 20,20; key KP_ENTER; = t",                     "dropdown.same"},
    {"ListEscapeAndAgain",     DROPDOWN, "click 20,20; key DOWN ESC; used; = t; key ENTER; = t 10 30 106 80", ""},
};
// clang-format on

TEST(Gestures, ChangeValues)
{
    expectGestures(VALUE_CASES);
}

// An input of 10 characters' width from x 14 on; six pixels each.
std::string input(const std::string& attributes)
{
    return "<textinput " + attributes + "><area x='10' y='10' w='69' h='20'/></textinput>";
}

// clang-format off
const GestureCase TEXT_CASES[] = {
    {"AppendsAtTheEnd",     input("text='ab'"),     "type cd; used; = abcd|",                            "text text"},
    {"InsertsAtTheCursor",  input("text='ab'"),     "key LEFT; used; type c; = ac|b",                          "text"},
    {"StopsAtBothEnds",     input("text='a'"),      "key HOME LEFT; used; = |a; key RIGHT RIGHT; used; = a|",  ""},
    {"ErasesBackward",      input("text='abc'"),    "key BACK; used; = ab|; key HOME BACK; used; = |ab",       "text"},
    {"ErasesForward",       input("text='abc'"),    "key DEL; used; = abc|; key HOME DEL; used; = |bc",        "text"},
    {"LeavesTheSelection",  input("text='abc'"),    "key SHIFT+LEFT SHIFT+LEFT; used; = a|bc!; key LEFT; used; = a|bc; key SHIFT+HOME; used; = |a!bc; key RIGHT; used; = a|bc", ""},
    {"TypesOverSelection",  input("text='abc'"),    "key CTRL+a; used; = !abc|; type x; = x|",                 "text"},
    {"ErasesSelectionOnly", input("text='abc'"),    "key SHIFT+LEFT BACK; used; = ab|",                        "text"},
    {"CopiesNoEmptiness",   input("text='abc'"),    "key CTRL+c CTRL+x; used; = abc|; key SHIFT+LEFT CTRL+c; used; = ab|c! copied c", ""},
    {"CutsAndPastesTwice",  input("text='abc'"),    "key SHIFT+LEFT CTRL+x CTRL+v CTRL+v; used; = abcc| copied c", "text text text"},
    {"GoesByWords",         input("text='ab  cd'"), "key CTRL+LEFT SHIFT+CTRL+LEFT; used; = |ab  !cd; key HOME CTRL+RIGHT; used; = ab|  cd", ""},
    {"NumericTakesNumbers", input("text='-1a.5-' type='numeric'"), "type x.2; = -1.52|",                 "text"},
    {"NumericMinusInFront", input("text='5' type='numeric'"),      "key HOME; used; type --; = -|5",           "text"},
    {"NumericPastesPart",   input("text='1' type='numeric'"),      "key CTRL+v; used; = 19.|",                 "text"},
    {"NumericKeepsOnNoPart", input("text='1.5' type='numeric'"),   "key SHIFT+HOME; used; type x; = |1.5!",    ""},
    {"PasswordIsNotCopied", input("text='abc' type='password'"),   "key CTRL+a CTRL+c CTRL+x; used; = !abc|",  ""},
    {"Latin1Characters",    input("text=''"),       "type \xe9\x85\x7f\x1b; = \xe9|",               "text"},
    {"LeavesOtherKeys",     input("text='abc'"),    "key s; used; key CTRL+s; unused; disable it; key BACK; unused; = abc|", ""},
    {"SelectsByDragging",   input("text='one two'"), "down 22,20; = o|ne two; move 42,20; = o!ne t|wo; move -106,20; = |o!ne two; up; move 32,20; = |o!ne two", ""},
    {"SelectsAWord",        input("text='one two'"), "double 44,20; move 47,20; = one !two|",            ""},
    {"PointsAtWhatIsSeen",  input("text='0123456789abcdef'"), "click 14,20; = 012345|6789abcdef",        ""},
};
// clang-format on

TEST(Gestures, EditText)
{
    expectGestures(TEXT_CASES);
}

// Rows begin at 10, 30 and 50.
const std::string OPTIONS =
    "<option name='a'/><option name='b' checked='true'/><option name='c' checked='true'/>"
    "<area x='10' y='10' w='100' h='80'/>";
const std::string RADIO = "<radiobutton>" + OPTIONS + "</radiobutton>";
const std::string CHECK = "<checkbox>" + OPTIONS + "</checkbox>";

// Tabs "one" at x 0..38, "three" at 38..88 and "five" at 88..132, 20 high.
std::string tabs(const std::string& width)
{
    return "<tabview><child><tabframe id='1' caption='one'/><tabframe id='3' caption='three'/>"
           "<tabframe id='5' caption='five'/></child><area width='" +
           width + "' height='82'/></tabview>";
}

// Rows 20 high from y 1 on. Markers are 14 wide, from x 1 on and 14 further at each level.
std::string tree(const std::string& height)
{
    return "<treeview size='20'><item id='a' text='A'><item id='a1' text='A1'>"
           "<item id='a11' text='A11'/></item><item id='a2' text='A2'/></item>"
           "<item id='b' text='B'/><item id='c' text='C'><item id='c1' text='C1'/></item>"
           "<area width='100' height='" +
           height + "'/></treeview>";
}
const std::string TALL = tree("142");
const std::string SHORT = tree("72"); // room for three rows and a half

// clang-format off
const GestureCase ROW_CASES[] = {
    {"RadioFirstRow",     RADIO, "= 001; down 10,10; up 109,29; = h100",         "radio"},
    {"RadioNothingNew",   RADIO, "click 20,69; click 20,70; down 20,15; up 20,35; = 0h01", ""},
    {"RadioKeys",         RADIO, "key UP; = 010; key HOME SPACE; = 100; key END DOWN ENTER; = 001; key F1; unused", "radio radio radio"},
    {"RadioInactive",     RADIO, "disable it; click 20,15; key UP; = 001", ""},
    {"CheckRows",         CHECK, "click 20,15; = 111; down 20,50; up 20,69; = 110; click 20,70; down 20,15; up 20,35; = 110", "on off"},
    {"CheckKeys",         CHECK, "key UP; = 011; key HOME SPACE; = 111; key END DOWN ENTER; = 110", "on off"},
    {"PointerOnRows",     RADIO, "move 20,15; = h001; move 20,35; = 0h01; move 20,85; = 001; move 20,15; move 150,15; = 001", ""},
    {"PointerHeld",       RADIO, "down 20,15; = p001; move 20,35; = 001; reset; = 001", ""},
    {"PointerAfterClick", RADIO, "click 20,55; = 00h1; move 20,35; = 0h01",       ""},

    {"TabsEdges",         tabs("200"), "click 38,0; = 3; click 37,19; = 1; click 131,10; = 5; click 132,10; click 50,20; = 5", ""},
    {"TabsNarrow",        tabs("60"),  "click 20,10; = 3; click 59,10; = 5",      ""},
    {"TabsWithoutWidth",  tabs("0"),   "click 0,10; = 1",                         ""},
    {"TabsKeys",          tabs("200"), "click 50,10; key RIGHT; = 5; key RIGHT; = 5; key LEFT LEFT LEFT; used; = 1; key F1; unused", ""},

    {"TreeUpAndDown",     SHORT, "key UP; used; = a: A A1 A11; key UP; = a: A A1 A11; key DOWN DOWN; used; key DOWN; = a2: A1 A11 A2; key UP; = a11: A1 A11 A2", "tree tree tree tree tree"},
    {"TreeEnds",          SHORT, "key END DOWN; used; = c1: B C C1; key HOME; used; = a: A A1 A11; key F1; unused", "tree tree"},
    {"TreePages",         SHORT, "key HOME PAGEDOWN; used; = a2: A1 A11 A2; key PAGEUP PAGEUP; used; = a: A A1 A11", "tree tree tree"},
    {"TreeFolds",         SHORT, "key HOME LEFT; used; = a: A B C; key DOWN DOWN DOWN; = c1: B C C1; key HOME RIGHT; used; = a: A A1 A11; key ENTER; used; = a: A B C", "tree tree tree tree tree"},
    {"TreeInAndOut",      SHORT, "key HOME RIGHT RIGHT; = a11: A A1 A11; key LEFT; = a1: A A1 A11; key DOWN; = a11: A A1 A11", "tree tree tree tree tree"},
    {"TreeNothingChosen", SHORT, "key LEFT RIGHT ENTER; = : A A1 A11",            ""},
    {"TreePresses",       TALL,  "click 50,141; = : A A1 A11 A2 B C C1; click 50,1; = a: A A1 A11 A2 B C C1; click 50,21; = a1: A A1 A11 A2 B C C1; click 5,90; = b: A A1 A11 A2 B C C1", "tree tree tree"},
    {"TreeMarkers",       TALL,  "click 15,10; = a: A A1 A11 A2 B C C1; click 5,30; = a1: A A1 A11 A2 B C C1; click 15,30; = a1: A A1 A2 B C C1; click 1,10; = a: A B C C1", "tree tree tree"},
    {"TreeDoubleClick",   TALL,  "double 50,10; = a: A B C C1",                   "tree"},
    {"TreeWheel",         SHORT, "move 10,10; wheel -1; used; = : A2 B C; wheel -9; = : B C C1; wheel 0.334; = : A2 B C; wheel 9; = : A A1 A11", ""},
    {"TreeFits",          TALL,  "move 10,10; wheel -1; unused; = : A A1 A11 A2 B C C1", ""},
};
// clang-format on

TEST(Gestures, ChooseRows)
{
    expectGestures(ROW_CASES);
}

// Titles "file" at x 5..29, "edit" at 44..68 and "help" at 83..107. The menu of "file" is at
// (5, 20) with rows at y 25, 40 and 55; that of "recent" at (72, 35) with a row at y 40.
const std::string BAR = R"(<menubar><area x="0" y="0" width="400" height="20"/>
    <item caption="file"><item caption="open"/>
        <item caption="recent"><item caption="a.xml"/></item><item caption="quit"/></item>
    <item caption="edit"><item caption="undo"/></item><item caption="help"/></menubar>)";
// Rows at y 15, 30 (whose submenu opens at (111, 25) with its row at y 30) and 45.
const std::string MENU = R"(<menu><area x="10" y="10" width="100" height="60"/>
    <item caption="about"/><item caption="view"><item caption="zoom"/></item>
    <item caption="quit"/></menu>)";

// clang-format off
const GestureCase MENU_CASES[] = {
    {"FirstReleaseLeavesOpen", BAR, "down 10,10; = file; up; = file; down; = file; up; =",      ""},
    {"ReleaseBesideCloses",    BAR, "down 10,10; move 300,200; = file; up; =",                  ""},
    {"DraggedToARow",          BAR, "down 10,10; move 10,30; = file; up; =",                    "file.open"},
    {"ClickOnARow",            BAR, "click 10,10; down 10,30; = file; up; =",                   "file.open"},
    {"ClickInASubmenu",        BAR, "click 10,10; move 10,45; down 80,45; = file; up; =",       "file.recent.a.xml"},
    {"MovesAlongWhenOpen",     BAR, "click 10,10; move 36,10; = file; move 50,10; = edit; down; = edit; up; =", ""},
    {"MovesAlongWhenHeld",     BAR, "down 10,10; move 50,10; = edit; up; = edit; move 50,30; up; =", "edit.undo"},
    {"OnlyMovingOpensNothing", BAR, "move 10,10; =; move 50,10; =",                             ""},
    {"PressOutsideCloses",     BAR, "click 10,10; move 300,200; = file; down; =; move 50,10; =", ""},
    {"RightPressCloses",       BAR, "click 10,10; right; =",                                    ""},
    {"TitlesEdges",            BAR, "down 43,0; =; up; down 68,19; =; up; down 50,20; =; up; down 44,0; = edit", ""},
    {"WithoutRows",            BAR, "click 90,10; = help; move 90,22; down; =",                 ""},
    {"Inactive",               BAR, "disable it; click 10,10; =",                          ""},
    {"MenuRow",                MENU, "click 20,20; =",                                          "menu.about"},
    {"MenuNoRow",              MENU, "down 20,20; up 20,50; move 20,20; up; click 20,26; =",    ""},
    {"MenuSubmenu",            MENU, "move 20,35; =; down; = view; up; = view; click 120,35; =", "menu.view.zoom"},
    {"MenuPressOutside",       MENU, "click 20,35; move 300,200; = view; click; =",             ""},
};
// clang-format on

TEST(Gestures, OpenAndChooseInMenus)
{
    expectGestures(MENU_CASES);
}

const std::string WINDOW =
    "<window><child><container id='content'><area x='10' y='10' w='50' "
    "h='50'/></container></child><area x='50' y='40' w='200' h='150'/></window>";
// 200 x 200 pixels of it show content of 400 x 1000: handles of 30 pixels move over 170.
std::string bars(const std::string& attributes)
{
    return "<scrollbars " + attributes +
           "><child><container><area w='400' h='1000'/></container></child>"
           "<area x='20' y='10' w='212' h='212'/></scrollbars>";
}
const std::string SHEET = "<boxview><area w='100' h='100'/><child><box id='box'>"
                          "<area x='20' y='20' w='50' h='40'/></box></child></boxview>";
// A field of 120 x 100 pixels at (20, 10) with a slider, which is at its end, to the right.
const std::string CHOOSER = "<colorchooser><area x='20' y='10' w='136' h='100'/></colorchooser>";

// clang-format off
const GestureCase DRAG_CASES[] = {
    {"WindowFreely",       WINDOW, "down 100,50; move 130,70; = 80 60 280 210; move 100,50; = 50 40 250 190",   ""},
    {"WindowTopLeft",      WINDOW, "down 100,50; move 20,-40; = 0 0 200 150; move 20,70; = 0 60 200 210",       ""},
    {"WindowBottomRight",  WINDOW, "down 100,50; move 999,999; = 200 150 400 300; move 100,50; = 50 40 250 190", ""},
    {"WindowByItsContent", WINDOW, "down 100,66; move 110,76; = 50 40 250 190",                                 ""},
    {"WindowMaximized",    WINDOW, "double 100,50; up; = 0 0 400 300; down 100,10; move 150,40; up; = 0 0 400 300; double 100,10; = 50 40 250 190", "resize resize"},

    {"BarsWheel",          bars(""), "move 100,100; wheel -2; used; = 0 17; wheel 1; = 0 8.5; wheel CTRL -1; used; = 21.25 8.5", "scroll scroll scroll"},
    {"BarsVertical",       bars("direction='vertical'"),   "move 100,100; wheel CTRL -1; unused; wheel -1; used; = 0 8.5", "scroll"},
    {"BarsHorisontal",     bars("direction='horisontal'"), "move 100,100; wheel -1; unused; wheel CTRL -1; used; = 21.25 0", "scroll"},
    {"BarsPages",          bars(""), "click 225,125; = 0 8.5; click 225,49; = 0 17; click 225,11; = 0 8.5; click 135,215; = 21.25 8.5", "scroll scroll scroll scroll"},
    {"BarsHandles",       bars(""), "click 225,10; click 225,39; = 0 0",              "scroll scroll"},
    {"BarsNoTrack",        bars(""), "click 219,160; click 220,210; click 232,110; = 0 0", ""},
    {"BarsDrag",           bars(""), "down 225,20; move 480,40; = 0 20; move 5,390; = 0 170; up; move 225,100; = 0 170", "scroll scroll scroll"},

    {"BoxByItsCaption",    SHEET, "down 25,25; move 325,325; move 55,40; up; move 90,90; = 50 35 100 75, 0 0", ""},
    {"BoxByItsLastPixel",  SHEET, "down 69,39; move 99,54; = 50 35 100 75, 0 0",                          ""},
    {"BoxByItsContent",    SHEET, "down 25,40; move 55,55; = 20 20 70 60, 0 0",                           ""},
    {"SheetBesideTheBox",  SHEET, "down 70,25; move 325,325; move 100,40; up; move 9,9; = 50 35 100 75, -30 -15", "scroll scroll"},
    {"SheetFromOutside",   SHEET, "down 150,150; move 180,165; = 20 20 70 60, 0 0",                       ""},

    {"ColorTopLeft",       CHOOSER, "down 20,10; = 1 0 0",                                        "color"},
    {"ColorEdges",         CHOOSER, "down 45,10; = 0.75 0 1; move 55,10; = 0 0 1; move 135,10; = 1 0.25 0", "color color color"},
    {"ColorCorner",        CHOOSER, "focus slider; key END PAGEDOWN DOWN; down 30,30; move 140,110; = 0.25 0.25 0.25", "color color color color"},
    {"ColorHalfWay",       CHOOSER, "focus slider; key PAGEDOWN PAGEDOWN DOWN DOWN; down 80,60; = 0.25 0.75 0.75", "color color color color color"},
    {"ColorWhiteToBlack",  CHOOSER, "focus slider; key HOME; down 30,30; move 80,110; = 1 1 1; up; focus slider; key END; = 0 0 0", "color color color color"},
    {"ColorDrag",          CHOOSER, "move 60,10; down; move 80,10; move 300,190; up; move 100,10; = 0 1 1", "color color color"},
    {"ColorSlider",        CHOOSER, "click 148,60",                                               "color"},
};
// clang-format on

TEST(Gestures, Drag)
{
    expectGestures(DRAG_CASES);
}

// A line is 10 pixels high and a character 6 wide: 16 of them fit.
std::string label(const std::string& attributes)
{
    return "<label " + attributes + "><area x='10' y='10' w='100' h='80'/></label>";
}
// The first has a size, the others share what is left 1 to 3.
std::string flow(const std::string& direction, const std::string& size)
{
    return "<flow direction='" + direction + "'><area w='40' h='300'/><child><container><area " +
           size + "/></container><container><area percent='1'/></container>" +
           "<container><area percent='3'/></container></child></flow>";
}

// clang-format off
const GestureCase ELEMENT_CASES[] = {
    {"LabelTopLeft",          label("text='a b'"),                            "= a b 10 15", ""},
    {"LabelMiddle",           label("text='a' align='center' valign='center'"), "= a 60 50 center", ""},
    {"LabelByItsOtherName",   label("text='a' valign='middle'"),              "= a 10 50", ""},
    {"LabelBottomRight",      label("text='a' align='right' valign='bottom'"), "= a 110 85 right", ""},
    {"LabelUnknownWords",     label("text='a' align='left' valign='up'"),     "= a 10 15", ""},
    {"LabelShortened",        label("text='0123456789abcdefgh'"),             "= 0123456789abcdef 10 15", ""},
    {"FlowFixedThenShares",   flow("vertical", "size='100'"),   "= 0 0 40 100, 0 100 40 150, 0 150 40 300", ""},
    {"FlowRounds",            flow("vertical", "size='99'"),    "= 0 0 40 99, 0 99 40 149, 0 149 40 300", ""},
    {"FlowNoRoomForShares",   flow("vertical", "size='400'"),   "= 0 0 40 400, 0 400 40 400, 0 400 40 400", ""},
    {"FlowSidewaysNoRoom",    flow("horisontal", "size='100'"), "= 0 0 100 300, 100 0 100 300, 100 0 100 300", ""},
    {"FlowSideways",          flow("horisontal", "size='20'"),  "= 0 0 20 300, 20 0 25 300, 25 0 40 300", ""},
};
// clang-format on

TEST(Gestures, AreNotNeededForWhatAnElementSays)
{
    expectGestures(ELEMENT_CASES);
}

} // namespace

} // namespace zavex::vellum::test
