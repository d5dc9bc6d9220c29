#include "vellum/user.h"
#include "vellum/vel_button.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_context.h"
#include "vellum/vel_dropdown.h"
#include "vellum/vel_knob.h"
#include "vellum/vel_radio_button.h"
#include "vellum/vel_tab_view.h"
#include "vellum/vel_text_input.h"
#include "vellum/vel_tree_view.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::vellum::test {

namespace {

TEST(Button, IsFramedWhileItHasTheFocusIfItsStyleSays)
{
    for (const char* const style : {"", "<color name='caption.border' first='38d6ff'/>"}) {
        Bench bench(std::string("<button><area w='40' h='20'/>") + style + "</button>");
        bench.screen.redraw();
        EXPECT_EQ(bench.screen.render.borders.size(), *style ? 1u : 0u) << style;
        bench.screen.clearFocus();
        bench.screen.redraw();
        EXPECT_TRUE(bench.screen.render.borders.empty()) << style;
    }
}

TEST(ColorChooser, KeepsTheCrossHairOnAFieldThatShrinks)
{
    Bench<ColorChooser> bench("<colorchooser><area x='20' y='10' w='136' h='100'/></colorchooser>");
    bench.user.does("click 130,100");
    bench.control.setArea(Area(20, 10, 96, 60));
    bench.screen.redraw();
    ASSERT_EQ(bench.screen.render.circles.size(), 2u);
    EXPECT_EQ(bench.screen.render.circles[0].getCenter(), Vector2f(80, 60));
    EXPECT_EQ(bench.control.getColor(), mathbase::Vector3f(0, 0, 0));
}

TEST(Dropdown, NewOptionsLeaveTheFocusWhereItIs)
{
    Bench<Dropdown> bench("<dropdown><option id='x'/><area w='60' h='20'/></dropdown>");
    bench.user.does("click 20,10; click 300,200");
    Probe& other = addProbe(bench.screen, "other", Area(100, 100, 110, 110));
    bench.control.addOption("n", "new");
    EXPECT_EQ(bench.screen.getFocus(), &other);
}

TEST(Widgets, KeepWhatALaterElementDoesNotMention)
{
    Bench<RadioButton> radio("<radiobutton><option name='a' checked='true'/></radiobutton>");
    loadFrom(radio.control, "<v><radiobutton id='r'/></v>");
    EXPECT_TRUE(radio.control.isChecked(0));
    loadFrom(radio.control, "<v><radiobutton><option name='x'/></radiobutton></v>");
    EXPECT_EQ(radio.control.getSelected(), -1);
    EXPECT_EQ(radio.control.getOption(0) + radio.control.getOption(1), "x");

    Bench<Knob> knob("<knob value='1'/>");
    loadFrom(knob.control, "<v><knob value='none'/></v>");
    EXPECT_EQ(knob.control.getValue(), 1.0f);
}

TEST(TextInput, ScrollsToItsCursorAndKeepsNoMoreThanItCanEdit)
{
    Bench<TextInput> bench("<textinput text='0123456789abcdef'>" // six more than fit
                           "<area x='10' y='10' w='69' h='20'/></textinput>");
    const auto left = [&] {
        bench.screen.redraw();
        return bench.screen.render.texts.back().position.x;
    };
    EXPECT_EQ(left(), 14.0f - 36.0f);
    bench.user.does("key HOME");
    EXPECT_EQ(left(), 14.0f);
    bench.user.does("key END");
    bench.screen.clearFocus();
    EXPECT_EQ(left(), 14.0f) << "without the focus the beginning is shown";

    bench.screen.setCopyString(std::string(100'000, 'x'));
    bench.user.does("focus it; key CTRL+v");
    EXPECT_EQ(bench.control.getCaption().size(), 4096U);
    left();
}

const std::string TABS = R"(<tabview><child>
    <tabframe id="1" caption="one"><child><treeview id="tree" size="20"><item text="a"/>
        <item text="b"/><item text="c"/><item text="d"/></treeview></child></tabframe>
    <tabframe id="3" caption="three"/><tabframe id="5" caption="five"/></child>
    <area width="200" height="82"/></tabview>)";

/** Identifier of the page that is shown; empty without any. */
std::string shown(TabView& tabs)
{
    return tabs.getSelected() < 0 ? "" : tabs.getPage(tabs.getSelected())->getId();
}

TEST(TabView, SwitchingKeepsThePagesState)
{
    Bench<TabView> bench(TABS);
    auto& list = dynamic_cast<TreeView&>(*bench.screen.findControl("tree"));
    bench.user.does("click 50,70; wheel -1"); // "c", and scrolls to the end
    bench.control.select(1);
    bench.user.does("click 50,30; wheel 1");
    EXPECT_EQ(list.getValueText(), "c") << "hidden pages get nothing";
    bench.control.setArea(Area(0, 0, 100, 62));
    bench.control.setArea(Area(0, 0, 200, 82));
    bench.control.select(0);
    EXPECT_EQ(text(list.getAreaWorld()), "0 20 200 82");
    bench.screen.redraw();
    EXPECT_EQ(bench.screen.render.texts.back().text, "d") << "still scrolled to the end";
}

TEST(TabView, ShowsANewPageInItsTurnAndTheNextInPlaceOfADeletedOne)
{
    Bench<TabView> bench(TABS);
    TabView& tabs = bench.control;
    Probe& late = addProbe(tabs, "late", Area(0, 0, 0, 0));
    EXPECT_EQ(text(late.getArea()), "0 20 200 82");
    bench.user.does("down 50,50");
    EXPECT_EQ(late.count("mousedown"), 0);
    tabs.select(3);
    EXPECT_EQ(shown(tabs), "late");
    delete &late;
    EXPECT_EQ(shown(tabs), "");

    tabs.select(1);
    tabs.deleteControl(3); // pages lie above the tabs, the shown one on top
    EXPECT_EQ(shown(tabs), "5");
    tabs.deleteControl(2);
    EXPECT_EQ(shown(tabs), "1") << "the one before where there is no next";
    tabs.deleteControl(1);
    EXPECT_EQ(tabs.getPageCount(), 0);
    bench.screen.redraw();
    addProbe(tabs, "again", Area(0, 0, 0, 0));
    EXPECT_EQ(shown(tabs), "again");
    tabs.deleteControls();
    tabs.deleteControl(0);
    EXPECT_EQ(tabs.getChildCount(), 1) << "the tabs stay";
}

TEST(TreeView, FoldingAwayTheSelectedItemSelectsWhatFolded)
{
    Bench<TreeView> bench("<treeview><item text='A'><item text='A1'><item text='A11'/></item>"
                          "</item></treeview>");
    bench.control.select(2);
    bench.control.setFolded(0, true);
    EXPECT_EQ(bench.control.getValueText(), "A");
    EXPECT_EQ(bench.observer.text(), "tree tree");
    bench.control.select(2);
    bench.screen.redraw();
    EXPECT_EQ(bench.screen.render.texts.size(), 3u) << "what is selected is shown";
    bench.control.select(7);
    EXPECT_EQ(bench.control.getSelected(), -1);
}

TEST(TreeView, NestsWithoutEnd)
{
    std::string items;
    for (const char* tag : {"<item>", "</item>"})
        for (int i = 0; i < 9000; ++i)
            items += tag;
    Bench<TreeView> bench("<treeview size='20'>" + items + "<area w='100' h='62'/></treeview>");
    EXPECT_EQ(bench.control.getItemCount(), 9000);
    bench.control.setFolded(8998, true);
    bench.control.addItem("", "below a folded one", 9000);
    bench.control.addItem("", "at the top", -1);
    bench.user.does("key END");
    EXPECT_EQ(bench.control.getValueText(), "at the top");
    bench.user.does("key UP");
    EXPECT_EQ(bench.control.getSelected(), 8998);
    bench.control.setArea(Area(0, 0, 100, 4000));
    bench.control.setArea(Area(0, 0, 100, 62));
    bench.screen.redraw();
    EXPECT_EQ(bench.screen.render.texts.back().text, "at the top") << "resizing keeps the place";
}

/** The titles are "file" at x 5..29, "edit" at 44..68; the menu of "file" is at (5, 20). */
std::string bar(const std::string& colors)
{
    return "<menubar>" + colors + R"(<area width="400" height="20"/>
        <item caption="file"><item caption="quit"/><item caption="recent"><item caption="a.xml"/>
        </item></item><item caption="edit"><color name="text.color" first="0000ff"/>
        <item caption="undo"/></item></menubar>)";
}

TEST(MenuBar, SharesNoEventWithOthersUntilAnyButtonClosedItsMenu)
{
    Bench bench(bar(""));
    Probe& below = addProbe(bench.screen, "below", Area(0, 20, 400, 300));
    bench.user.does("click 10,10; down 10,30; up");
    EXPECT_EQ(below.count(Event::MOUSE_UP), 0) << "seen by the bar and its menu alone";
    bench.user.does("click 10,10; right 300,200; move 301,200; down");
    EXPECT_EQ(below.count(Event::MOUSE_DOWN), 1) << "the next press alone";
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
    Bench bench(bar("<color name='text.color' first='ff0000'/>"
                    "<color name='back.color' first='00ff00'/>"));
    const auto colorIn = [&](const char* steps, const std::string& caption) {
        bench.user.does(steps);
        Context& menu = *bench.screen.getOpen();
        bench.screen.render.clear();
        menu.draw(menu.getArea(), bench.screen.getArea(), bench.screen.getArea());
        return colorOf(bench.screen.render, caption);
    };
    EXPECT_EQ(colorIn("down 10,10", "quit"), mathbase::Vector4f(1, 0, 0, 1));
    EXPECT_EQ(colorIn("move 10,45", "recent"), mathbase::Vector4f(0, 1, 0, 1)) << "selected";
    EXPECT_EQ(colorIn("", "a.xml"), mathbase::Vector4f(1, 0, 0, 1)) << "submenu";
    EXPECT_EQ(colorIn("move 50,10", "undo"), mathbase::Vector4f(0, 0, 1, 1));
}

TEST(MenuBar, WritesTheMarkedTitleAsAMarkedRow)
{
    Bench bench(bar("<color name='text.color' first='ff0000'/>"
                    "<color name='text.highlight' first='ffffff' second='0000ff'/>"));
    bench.user.does("move 10,10");
    bench.screen.redraw();
    EXPECT_EQ(colorOf(bench.screen.render, "file"), mathbase::Vector4f(0, 0, 1, 1));
    EXPECT_EQ(colorOf(bench.screen.render, "edit"), mathbase::Vector4f(1, 0, 0, 1));
}

const std::string WINDOW = "<window><area x='50' y='40' w='200' h='150'/></window>";

TEST(Window, FollowsThePointerOnAScrolledParent)
{
    Bench bench(WINDOW);
    bench.screen.setOffset(Vector2f(10, 5));
    bench.user.does("down 100,50; move 20,70");
    EXPECT_EQ(text(bench.control.getArea() + bench.screen.getOffset()), "0 60 200 210");
}

TEST(Window, DragsByTheLeftButtonOnAnActiveCaptionUntilItIsReleasedOrHidden)
{
    Bench bench(WINDOW);
    bench.user.does("right 100,50; move 110,60; rightup");
    bench.control.getOrder(0)->setInactive(true);
    bench.user.does("down 100,50; move 110,60; up; double 100,50; up");
    EXPECT_EQ(text(bench.control.getArea()), "50 40 250 190");
    bench.control.getOrder(0)->setInactive(false);
    bench.user.does("down 100,50; move 390,290; rightup; move 110,50; hide it; show it; move 9,9");
    EXPECT_EQ(text(bench.control.getArea()), "60 40 260 190");
    EXPECT_EQ(bench.observer.text(), "");
}

TEST(Window, ResizesItsContentWithIt)
{
    Bench bench(WINDOW);
    bench.user.does("double 100,50");
    EXPECT_EQ(text(bench.control.getOrder(1)->getArea()), "0 26 400 300");
    bench.user.does("up; double 100,10");
    EXPECT_EQ(text(bench.control.getOrder(1)->getArea()), "0 26 200 150");
}

TEST(Window, CutsItsCaptionToItsBar)
{
    Bench bench(WINDOW);
    bench.control.setCaption("a caption far too long for a window that is two hundred pixels wide");
    bench.screen.redraw();
    ASSERT_EQ(bench.screen.render.texts.size(), 1u);
    EXPECT_EQ(bench.screen.render.texts[0].position, Vector2f(58, 53));
    EXPECT_EQ(bench.screen.render.texts[0].text.size(), 30u) << "184 pixels, 6 a letter";
}

} // namespace

} // namespace zavex::vellum::test
