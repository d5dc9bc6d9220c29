#include "vellum/probe.h"
#include "vellum/styled_root.h"
#include "vellum/vel_box.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_container.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control_factory.h"
#include "vellum/vel_dropdown.h"
#include "vellum/vel_flow.h"
#include "vellum/vel_layout_stack.h"
#include "vellum/vel_menu.h"
#include "vellum/vel_menu_bar.h"
#include "vellum/vel_panel.h"
#include "vellum/vel_radio_button.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_scrollbars.h"
#include "vellum/vel_spline.h"
#include "vellum/vel_tab_view.h"
#include "vellum/vel_tree_view.h"
#include "vellum/vel_window.h"

#include "support/allocation_counter.h"
#include "support/log_capture.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <exception>
#include <utility>

namespace zavex::vellum::test {

namespace {

template <typename... Controls>
void registerAll()
{
    (controlFactory.addControlType(new Controls), ...);
}

struct ControlLoad : testing::Test {
    static void SetUpTestSuite()
    {
        registerAll<Box, ColorChooser, Container, Context, Dropdown, Flow, LayoutStack, Menu,
                    MenuBar, Panel, Probe, RadioButton, Ruler, Scrollbars, Spline, TabView,
                    TreeView, Window>();
    }

    void SetUp() override { zavex::test::clearLog(); }

    StyledRoot root;
};

TEST_F(ControlLoad, MakesChildrenInDocumentOrder)
{
    loadFrom(root, R"(<vellum><workspace id="screen"><child>
        <!-- none --><probe id="first"/>text<unheard id="x"/><container id="second"><child><probe id="inner"/></child></container>
        </child></workspace></vellum>)");

    EXPECT_EQ(root.getId(), "screen");
    EXPECT_EQ(insertion(root), "first second");
    EXPECT_EQ(root.getFocus(), root.findControl("second")) << "the last one is on top and focused";
    EXPECT_EQ(root.findControl("inner")->getParent(), root.findControl("second"));
    EXPECT_EQ(zavex::test::countLogged("log", "Creating control: probe."), 2);
    EXPECT_EQ(zavex::test::countLogged("log", " -> Control type 'unheard' not found"), 1);
    EXPECT_EQ(zavex::test::countLogged("log", "not found"), 1) << "only elements are looked up";
}

constexpr struct VisibilityCase {
    const char* name;
    const char* attributes;
    bool visible;
} VISIBILITY_CASES[] = {
    {"ByDefault",         "id='x'",                       true },
    {"Hidden",            "hidden='true'",                false},
    {"NotVisible",        "visible='false'",              false},
    {"HiddenWinsOverYes", "hidden='true' visible='true'", false},
    {"OtherWordsAreNo",   "hidden='yes' visible='no'",    true },
};

TEST(ControlLoadVisibility, ReadsBothSpellings)
{
    for (const VisibilityCase& row : VISIBILITY_CASES) {
        SCOPED_TRACE(row.name);
        Probe probe;
        probe.setVisible(!row.visible);
        loadFrom(probe, std::string("<vellum><probe ") + row.attributes + "/></vellum>");
        EXPECT_EQ(probe.getVisible(), row.visible);
    }
}

constexpr struct AreaCase {
    const char* name;
    const char* areas;
    const char* expected;
    bool maximized;
} AREA_CASES[] = {
    {"NoneFillsTheParent",      "<text/>",                                           "0 0 200 100",   true },
    {"Placed",                  "<area x='10' y='20' width='100' height='40'/>",     "10 20 110 60",  false},
    {"BothSpellingsAddUp",      "<area width='100' w='20' h='7'/>",                  "0 0 120 7",     false},
    {"Fractions",               "<area x='0.5' y='-2' w='1.25' h='1e1'/>",           "0.5 -2 1.75 8", false},
    {"MaximizedAlthoughPlaced", "<area x='9' maximized='true'/>",                    "0 0 200 100",   true },
    {"TheLastOneWins",          "<area x='9' maximized='true'/><area w='3' h='4'/>", "0 0 3 4",       false},
};

TEST(ControlLoadArea, PlacesTheControl)
{
    for (const AreaCase& row : AREA_CASES) {
        SCOPED_TRACE(row.name);
        Root root;
        Probe& probe = addProbe(root, "probe", Area(1, 1, 2, 2));
        loadFrom(probe,
                 std::string("<vellum><probe id='probe'>") + row.areas + "</probe></vellum>");
        EXPECT_EQ(text(probe.getArea()), row.expected);
        EXPECT_EQ(probe.getMaximized(), row.maximized);
    }
}

struct StyleCase {
    const char* name;
    const char* element;
    const char* expected; // identifier, caption color and background of the control, see below
};

/** Shows what the loaded style was: the red of three colours and the rectangle. */
class StyledProbe final : public Probe {
public:
    StyledProbe() { mType = "styled"; }
    Control* clone() override { return new StyledProbe; }
    std::string summary()
    {
        return std::to_string(static_cast<int>(mStyle.mBack.mHighlight1.x)) +
               std::to_string(static_cast<int>(mStyle.mText.mInactive2.x)) +
               std::to_string(static_cast<int>(mStyle.mCaption.mBorder1.x)) + " " + text(mArea);
    }
};

constexpr StyleCase STYLE_CASES[] = {
    {"ByTypeName",             "<styled/>",                            "100 0 0 5 5"},
    {"ByClassInstead",         "<styled class='big'/>",                "010 0 0 9 9"},
    {"UnknownClassGivesNone",  "<styled class='none'/>",               "000 0 0 0 0"},
    {"OwnColorsComeLast",
     "<styled><color name='back.highlight' first='00' second='00'/>"
     "<color name='caption.border' first='ff'/></styled>",             "001 0 0 5 5"},
    {"OwnAreaComesLast",       "<styled><area w='7' h='8'/></styled>", "100 0 0 7 8"},
    {"UnknownNamesAreIgnored",
     "<styled><color name='caption.middle' first='ff'/><color name='border' first='ff'/>"
     "<color name='back.highlights' first='00'/></styled>",            "100 0 0 5 5"},
};

TEST(ControlLoadStyle, ComesBeforeTheControlsOwnElement)
{
    controlFactory.addControlType(new StyledProbe);
    for (const StyleCase& row : STYLE_CASES) {
        SCOPED_TRACE(row.name);
        StyledRoot root;
        root.styles.parse("<vellum><styled><color name='back.highlight' first='ff' second='80'/>"
                          "<area w='5' h='5'/></styled>"
                          "<big><color name='text.inactive' first='00' second='ff'/>"
                          "<area w='9' h='9'/></big></vellum>");
        loadFrom(root, std::string("<vellum><workspace id='w'><child>") + row.element +
                           "</child></workspace></vellum>");

        auto* loaded = dynamic_cast<StyledProbe*>(root.getChild(0));
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(loaded->summary(), row.expected);
    }
}

TEST_F(ControlLoad, RefusesToNestWithoutEnd)
{
    const auto failureOf = [](Control& control, const std::string& inside) {
        return zavex::test::thrownMessage(
            [&] { loadFrom(control, "<vellum>" + inside + "</vellum>"); });
    };
    const auto nest = [](const char* opening, const char* closing) {
        std::string document;
        for (const char* tag : {opening, closing})
            for (int i = 0; i < 1000; ++i)
                document += tag;
        return document;
    };
    Probe outermost;
    Context menu;
    const std::string nestedProbe = "Control::load: a 'probe' lies inside more than 256 controls";
    EXPECT_EQ(failureOf(outermost, nest("<probe><child>", "</child></probe>")), nestedProbe);
    EXPECT_EQ(failureOf(menu, nest("<item>", "</item>")),
              "Control::load: a 'context' lies inside more than 256 controls");

    root.styles.parse("<vellum><probe><child><probe/></child></probe></vellum>");
    const std::string onlyProbe = "<workspace id='w'><child><probe/></child></workspace>";
    EXPECT_EQ(failureOf(root, onlyProbe), nestedProbe) << "a style that contains its own type";

    std::string doubling;
    for (int level = 0; level < 30; ++level) {
        const std::string next = "<probe class='l" + std::to_string(level + 1) + "'/>";
        const std::string name = level == 0 ? "probe" : "l" + std::to_string(level);
        doubling += "<" + name + "><child>" + next + next + "</child></" + name + ">";
    }
    root.styles.clear();
    root.styles.parse("<vellum>" + doubling + "</vellum>");
    EXPECT_EQ(failureOf(root, onlyProbe),
              "Control::load: more than 100000 elements, those of styles counted as often as they "
              "serve, up to a 'probe'");
}

TEST_F(ControlLoad, AFlowReadsItsChildrensExtents)
{
    root.setArea(Area(0, 0, 40, 300));
    loadFrom(root, R"(<vellum><workspace id="w"><child><flow id="flow"><child>
        <probe id="fixed"><area size="100"/></probe>
        <probe id="one"><area percent="1"/></probe>
        <probe id="three"><area percent="3"/></probe></child></flow></child></workspace></vellum>)");
    root.setArea();
    EXPECT_EQ(text(root.findControl("one")->getArea()), "0 100 40 150");
    EXPECT_EQ(text(root.findControl("three")->getArea()), "0 150 40 300");
}

/** A control whose child is a member. */
class Holder final : public Container {
public:
    Holder()
    {
        mType = "holder";
        addControl(&mInner);
    }
    Control* clone() override { return new Holder; }

private:
    Container mInner;
};

/** Whatever allocation fails, the fault arrives here, and the leak checker finds nothing lost. */
TEST_F(ControlLoad, WithoutMemoryEndsInAnException)
{
    controlFactory.addControlType(new Holder);
    const auto load = [] {
        StyledRoot screen;
        screen.styles.parse(R"(<?xml version="1"?><vellum><box><color name="back.color" first="ff"/>
            <child><probe class="a class whose name is long"/></child></box></vellum>)");
        std::string text;
        screen.styles.write(text, "\t");
        loadFrom(screen, R"(<vellum><workspace id="w"><child><box caption="a caption that is long">
            <child><flow><child><container><area size="9"/></container></child></flow></child></box>
            <colorchooser/><holder/><dropdown><option id="1" name="one"/></dropdown><layoutstack/>
            <menu><item caption="a"><item caption="b"/></item></menu><menubar><item caption="c"/>
            </menubar><panel/><radiobutton><option name="r"/></radiobutton><ruler/><scrollbars/>
            <spline><item x="1"/></spline><tabview><child><container/></child></tabview>
            <treeview><item id="i" text="t"/></treeview><window/></child></workspace></vellum>)");
    };
    bool failed = true;
    std::size_t failing = 0;
    while (failed) {
        zavex::test::clearLog();
        const zavex::test::AllocationCounter counter(++failing);
        bool thrown = false;
        try {
            load();
        } catch (const std::exception&) {
            thrown = true;
        }
        failed = counter.count() >= failing;
        EXPECT_EQ(thrown, failed) << failing;
    }
    EXPECT_GT(failing, 300u);
}

TEST(LayoutStackLoad, ReadsItsDirection)
{
    for (const auto& [direction, secondArea] :
         {std::pair("horisontal", "0 0 10 10"), std::pair("horizontal", "5 0 15 10")}) {
        LayoutStack stack;
        addProbe(stack, "first", Area(0, 0, 10, 10));
        Probe& second = addProbe(stack, "second", Area(5, 0, 15, 10));
        loadFrom(stack, std::string("<vellum><layoutstack direction='") + direction +
                            "'><area w='50' h='50'/></layoutstack></vellum>");
        EXPECT_EQ(text(second.getArea()), secondArea) << direction;
    }
}

} // namespace

} // namespace zavex::vellum::test
