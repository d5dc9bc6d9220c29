#include "vellum/probe.h"
#include "vellum/styled_root.h"
#include "vellum/vel_container.h"
#include "vellum/vel_context.h"
#include "vellum/vel_control_factory.h"
#include "vellum/vel_flow.h"
#include "vellum/vel_layout_stack.h"

#include "support/log_capture.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace zavex::vellum::test {

namespace {

struct ControlLoad : testing::Test {
    static void SetUpTestSuite()
    {
        controlFactory.addControlType(new Container);
        controlFactory.addControlType(new Context);
        controlFactory.addControlType(new Flow);
        controlFactory.addControlType(new LayoutStack);
        controlFactory.addControlType(new Probe);
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

struct VisibilityCase {
    const char* name;
    const char* attributes;
    bool visible;

    friend void PrintTo(const VisibilityCase& visibility, std::ostream* out)
    {
        *out << visibility.name;
    }
};

constexpr VisibilityCase VISIBILITY_CASES[] = {
    {"ByDefault",         "id='x'",                       true },
    {"NotHidden",         "hidden='false'",               true },
    {"Hidden",            "hidden='true'",                false},
    {"NotVisible",        "visible='false'",              false},
    {"HiddenWinsOverYes", "hidden='true' visible='true'", false},
    {"OtherWordsAreNo",   "hidden='yes' visible='no'",    true },
};

class ControlLoadVisibility : public testing::TestWithParam<VisibilityCase> {};

TEST_P(ControlLoadVisibility, ReadsBothSpellings)
{
    Probe probe;
    probe.setVisible(!GetParam().visible);
    loadFrom(probe, std::string("<vellum><probe ") + GetParam().attributes + "/></vellum>");
    EXPECT_EQ(probe.getVisible(), GetParam().visible);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlLoadVisibility, testing::ValuesIn(VISIBILITY_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct AreaCase {
    const char* name;
    const char* areas;
    const char* expected;
    bool maximized;

    friend void PrintTo(const AreaCase& area, std::ostream* out) { *out << area.name; }
};

constexpr AreaCase AREA_CASES[] = {
    {"NoneFillsTheParent",      "<text/>",                                           "0 0 200 100",   true },
    {"Placed",                  "<area x='10' y='20' width='100' height='40'/>",     "10 20 110 60",  false},
    {"BothSpellingsAddUp",      "<area width='100' w='20' h='7'/>",                  "0 0 120 7",     false},
    {"Fractions",               "<area x='0.5' y='-2' w='1.25' h='1e1'/>",           "0.5 -2 1.75 8", false},
    {"MaximizedAlthoughPlaced", "<area x='9' maximized='true'/>",                    "0 0 200 100",   true },
    {"TheLastOneWins",          "<area x='9' maximized='true'/><area w='3' h='4'/>", "0 0 3 4",       false},
};

class ControlLoadArea : public testing::TestWithParam<AreaCase> {};

TEST_P(ControlLoadArea, PlacesTheControl)
{
    Root root;
    Probe& probe = addProbe(root, "probe", Area(1, 1, 2, 2));
    loadFrom(probe,
             std::string("<vellum><probe id='probe'>") + GetParam().areas + "</probe></vellum>");
    EXPECT_EQ(text(probe.getArea()), GetParam().expected);
    EXPECT_EQ(probe.getMaximized(), GetParam().maximized);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlLoadArea, testing::ValuesIn(AREA_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct StyleCase {
    const char* name;
    const char* element;
    const char* expected; // identifier, caption color and background of the control, see below

    friend void PrintTo(const StyleCase& each, std::ostream* out) { *out << each.name; }
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

class ControlLoadStyle : public testing::TestWithParam<StyleCase> {
protected:
    static void SetUpTestSuite() { controlFactory.addControlType(new StyledProbe); }
};

TEST_P(ControlLoadStyle, ComesBeforeTheControlsOwnElement)
{
    StyledRoot root;
    root.styles.parse("<vellum><styled><color name='back.highlight' first='ff' second='80'/>"
                      "<area w='5' h='5'/></styled>"
                      "<big><color name='text.inactive' first='00' second='ff'/>"
                      "<area w='9' h='9'/></big></vellum>");
    loadFrom(root, std::string("<vellum><workspace id='w'><child>") + GetParam().element +
                       "</child></workspace></vellum>");

    auto* loaded = dynamic_cast<StyledProbe*>(root.getChild(0));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->summary(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlLoadStyle, testing::ValuesIn(STYLE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ControlLoad, NeedsNoStyleDocument)
{
    Probe parentless;
    loadFrom(parentless,
             "<vellum><probe id='p'><child><probe id='inner'/></child></probe></vellum>");
    EXPECT_NE(parentless.findControl("inner"), nullptr);
}

/** The message of the exception that ends loading where `opening` stands 10,000 times in itself. */
std::string failureOfNesting(Control& control, const std::string& opening,
                             const std::string& closing)
{
    std::string document;
    for (int i = 0; i < 10000; ++i)
        document += opening;
    document += "<end/>";
    for (int i = 0; i < 10000; ++i)
        document += closing;
    return zavex::test::thrownMessage(
        [&] { loadFrom(control, "<vellum>" + document + "</vellum>"); });
}

TEST_F(ControlLoad, RefusesToNestWithoutEnd)
{
    Probe outermost;
    EXPECT_EQ(failureOfNesting(outermost, "<probe><child>", "</child></probe>"),
              "Control::load: a 'probe' lies inside more than 256 controls");
    Context menu;
    EXPECT_EQ(failureOfNesting(menu, "<item>", "</item>"),
              "Control::load: a 'context' lies inside more than 256 controls");

    root.styles.parse("<vellum><probe><child><probe/></child></probe></vellum>");
    EXPECT_EQ(zavex::test::thrownMessage([&] {
                  loadFrom(
                      root,
                      "<vellum><workspace id='w'><child><probe/></child></workspace></vellum>");
              }),
              "Control::load: a 'probe' lies inside more than 256 controls")
        << "a style that contains its own type";
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

struct DirectionCase {
    const char* name;
    const char* direction;
    const char* second; // rectangle of the second of two children, 10 x 10 each

    friend void PrintTo(const DirectionCase& each, std::ostream* out) { *out << each.name; }
};

constexpr DirectionCase DIRECTION_CASES[] = {
    {"Horisontal",    "horisontal", "0 0 10 10"},
    {"SpelledWithAZ", "horizontal", "5 0 15 10"},
    {"Missing",       "",           "5 0 15 10"},
};

class LayoutStackLoad : public testing::TestWithParam<DirectionCase> {};

TEST_P(LayoutStackLoad, ReadsItsDirection)
{
    LayoutStack stack;
    addProbe(stack, "first", Area(0, 0, 10, 10));
    Probe& second = addProbe(stack, "second", Area(5, 0, 15, 10));
    loadFrom(stack, std::string("<vellum><layoutstack direction='") + GetParam().direction +
                        "'><area w='50' h='50'/></layoutstack></vellum>");
    EXPECT_EQ(text(second.getArea()), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Cases, LayoutStackLoad, testing::ValuesIn(DIRECTION_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ControlLoad, AMenuReadsNestedItems)
{
    Context menu;
    loadFrom(menu, R"(<vellum><context><item caption="add"/>
        <item caption="type" id="types"><item caption="square"/></item></context></vellum>)");
    ASSERT_EQ(menu.getChildCount(), 2);
    EXPECT_EQ(menu.getChild(0)->getCaption(), "add");
    EXPECT_EQ(menu.findControl("types")->getChild(0)->getCaption(), "square");
}

TEST(ControlFactory, ClonesTheFirstPrototypeOfExactlyThatType)
{
    struct Marked : Probe {
        explicit Marked(const std::string& id) : Probe(id) { mType = "marked"; }
        Control* clone() override { return new Marked(mId); }
    };
    controlFactory.addControlType(new Marked("first"));
    ControlFactory().addControlType(new Marked("second"));

    const std::unique_ptr<Control> made(controlFactory.create("marked"));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->getId(), "first");
    EXPECT_EQ(controlFactory.create("Marked"), nullptr);
}

struct HexCase {
    const char* name;
    const char* text;
    int expected[4]; // components times 255

    friend void PrintTo(const HexCase& hex, std::ostream* out) { *out << hex.name; }
};

constexpr HexCase HEX_CASES[] = {
    {"Empty",            "",         {0, 0, 0, 255}    },
    {"HalfAByte",        "fff",      {255, 240, 0, 255}},
    {"ThreeComponents",  "ff8000",   {255, 128, 0, 255}},
    {"FourComponents",   "ff800080", {255, 128, 0, 128}},
    {"UpperCase",        "C0A",      {192, 160, 0, 255}},
    {"NoDigitCountsAs0", "#f0",      {15, 0, 0, 255}   },
};

class ControlHex : public testing::TestWithParam<HexCase> {};

TEST_P(ControlHex, ReadsPairsOfDigits)
{
    Probe probe;
    const mathbase::Vector4f color = probe.hex2vec(GetParam().text);
    const float found[] = {color.x, color.y, color.z, color.w};
    for (int i = 0; i < 4; ++i)
        EXPECT_FLOAT_EQ(found[i], static_cast<float>(GetParam().expected[i]) / 255.0f)
            << "component " << i;
}

INSTANTIATE_TEST_SUITE_P(Cases, ControlHex, testing::ValuesIn(HEX_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

} // namespace

} // namespace zavex::vellum::test
