#include "vellum/user.h"
#include "vellum/vel_container.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control_factory.h"
#include "vellum/vel_vellum.h"

#include "support/allocation_counter.h"
#include "support/log_capture.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <utility>

namespace zavex::vellum::test {

namespace {

struct ControlLoad : testing::Test {
    static void SetUpTestSuite() { registerControls(); }

    void SetUp() override { zavex::test::clearLog(); }

    /** What is said when the root is loaded from an element "workspace" that holds some. */
    std::string loadRoot(const std::string& elements)
    {
        return zavex::test::thrownMessage([&] {
            loadFrom(root, "<vellum><workspace id='screen'>" + elements + "</workspace></vellum>");
        });
    }

    Root root;
};

TEST_F(ControlLoad, MakesChildrenInDocumentOrder)
{
    loadRoot(R"(<child><!-- none --><container id="first"/>text<unheard id="x"/>
        <container id="second"><child><container id="inner"/></child></container></child>)");

    EXPECT_EQ(root.getId(), "screen");
    EXPECT_EQ(insertion(root), "first second");
    EXPECT_EQ(root.getFocus(), root.findControl("second")) << "the last one is on top and focused";
    EXPECT_EQ(root.findControl("inner")->getParent(), root.findControl("second"));
    EXPECT_EQ(zavex::test::countLogged("log", "Creating control: container."), 3);
    EXPECT_EQ(zavex::test::countLogged("log", " -> Control type 'unheard' not found"), 1);
    EXPECT_EQ(zavex::test::countLogged("log", "not found"), 1) << "only elements are looked up";
}

TEST(ControlLoadVisibility, ReadsBothSpellings)
{
    for (const auto& [attributes, visible] : {
             std::pair("id='x'", true),
             {"hidden='true'",                false},
             {"visible='false'",              false},
             {"hidden='true' visible='true'", false},
             {"hidden='yes' visible='no'",    true }
    }) {
        Probe probe;
        probe.setVisible(!visible);
        loadFrom(probe, std::string("<vellum><probe ") + attributes + "/></vellum>");
        EXPECT_EQ(probe.getVisible(), visible) << attributes;
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

// Elements, then the identifier, caption colour, background and rectangle of what is loaded.
// clang-format off
constexpr std::pair<const char*, const char*> STYLE_CASES[] = {
    {"<styled/>", "100 0 0 5 5"},
    {"<styled class='big'/>", "010 0 0 9 9"},
    {"<styled class='none'/>", "000 0 0 0 0"},
    {"<styled><color name='back.highlight' first='00' second='00'/><color name='caption.border' first='ff'/></styled>", "001 0 0 5 5"},
    {"<styled><area w='7' h='8'/></styled>", "100 0 0 7 8"},
    {"<styled><color name='caption.middle' first='ff'/><color name='border' first='ff'/><color name='back.highlights' first='00'/></styled>", "100 0 0 5 5"},
};
// clang-format on

TEST_F(ControlLoad, TakesTheStyleBeforeTheControlsOwnElement)
{
    controlFactory.addControlType(new StyledProbe);
    root.styles.parse("<vellum><styled><color name='back.highlight' first='ff' second='80'/>"
                      "<area w='5' h='5'/></styled>"
                      "<big><color name='text.inactive' first='00' second='ff'/>"
                      "<area w='9' h='9'/></big></vellum>");
    for (const auto& [element, expected] : STYLE_CASES) {
        SCOPED_TRACE(element);
        loadRoot(std::string("<child>") + element + "</child>");
        EXPECT_EQ(dynamic_cast<StyledProbe&>(*root.getFocus()).summary(), expected);
    }
}

TEST_F(ControlLoad, RefusesToNestWithoutEnd)
{
    const auto nest = [](const char* opening, const char* closing) {
        std::string document;
        for (const char* tag : {opening, closing})
            for (int i = 0; i < 1000; ++i)
                document += tag;
        return document;
    };
    const auto refusal = [](const std::string& type) {
        return "Control::load: a '" + type + "' lies inside more than 256 controls";
    };
    EXPECT_EQ(loadRoot("<child>" + nest("<container><child>", "</child></container>") + "</child>"),
              refusal("container"));
    Context menu;
    EXPECT_EQ(zavex::test::thrownMessage(
                  [&] { loadFrom(menu, "<vellum>" + nest("<item>", "</item>") + "</vellum>"); }),
              refusal("context"));

    const std::string only = "<child><container/></child>";
    root.styles.parse("<vellum><container>" + only + "</container></vellum>");
    EXPECT_EQ(loadRoot(only), refusal("container")) << "a style that contains its own type";

    std::string doubling;
    for (int level = 0; level < 30; ++level) {
        const std::string next = "<container class='l" + std::to_string(level + 1) + "'/>";
        const std::string name = level == 0 ? "container" : "l" + std::to_string(level);
        doubling += "<" + name + "><child>" + next + next + "</child></" + name + ">";
    }
    root.styles.clear();
    root.styles.parse("<vellum>" + doubling + "</vellum>");
    EXPECT_EQ(loadRoot(only),
              "Control::load: more than 100000 elements, those of styles counted as often as they "
              "serve, up to a 'container'");
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
        Root screen;
        screen.styles.parse(R"(<?xml version="1"?><vellum><box><color name="back.color" first="ff"/>
            <child><container class="a class whose name is long"/></child></box></vellum>)");
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

} // namespace

} // namespace zavex::vellum::test
