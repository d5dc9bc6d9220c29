#include "vellum/probe.h"
#include "vellum/vel_checkbox.h"
#include "vellum/vel_image.h"
#include "vellum/vel_knob.h"
#include "vellum/vel_label.h"
#include "vellum/vel_radio_button.h"

#include "display/dis_font.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace zavex::vellum::test {

namespace {

/** One control at (10, 10, 110, 90) with the focus, below an observed root. */
struct WidgetTree {
    WidgetTree(Control* newControl, const std::string& element) : control(newControl)
    {
        root.addControl(control);
        loadFrom(*control, "<vellum>" + element + "</vellum>");
        control->setMaximized(false);
        control->setArea(Area(10, 10, 110, 90));
        root.setCallback(&observer);
    }

    void click(Vector2f down, Vector2f up)
    {
        send(root, "mousedown", down);
        send(root, "mouseup", up);
    }

    void draw() { root.draw(root.getArea(), root.getArea(), root.getArea()); }

    Root root{Area(0, 0, 200, 200)};
    Observer observer;
    Control* control; // owned by the root
};

/** The action codes that were heard of, in order. */
std::vector<int> actionsOf(const Observer& observer)
{
    std::vector<int> actions;
    for (const Observer::Heard& heard : observer.heard)
        actions.push_back(heard.action);
    return actions;
}

/** One digit an option: 1 where it is checked. */
std::string checked(const RadioButton& options)
{
    std::string digits;
    for (int i = 0; i < options.getOptionCount(); ++i)
        digits += options.isChecked(i) ? '1' : '0';
    return digits;
}

constexpr const char* OPTIONS = "<options><option name='a'/><option name='b' checked='true'/>"
                                "<option name='c' checked='true'/></options>";

struct OptionCase {
    const char* name;
    void (*input)(WidgetTree& tree);
    const char* radio; // checked options afterwards
    std::vector<int> radioHeard;
    const char* checkbox;
    std::vector<int> checkboxHeard;

    friend void PrintTo(const OptionCase& option, std::ostream* out) { *out << option.name; }
};

void pressKeys(WidgetTree& tree, const std::vector<display::Key>& keys)
{
    for (const display::Key key : keys)
        pressKey(tree.root, key);
}

// Rows begin at 10, 30 and 50.
const OptionCase OPTION_CASES[] = {
    {"AsLoaded",              [](WidgetTree&) {},                  "001", {},                           "011", {}                   },
    {"FirstRow",
     [](WidgetTree& tree) {
         tree.click({10, 10}, {109, 29});
     },                                                            "100",
     {ACTION_RADIOBUTTON_CHANGED},
     "111",                                                                                                    {ACTION_CHECKBOX_ON} },
    {"CheckedRow",
     [](WidgetTree& tree) {
         tree.click({20, 50}, {20, 69});
     },                                                            "001",
     {},
     "010",                                                                                                    {ACTION_CHECKBOX_OFF}},
    {"BelowTheLast",
     [](WidgetTree& tree) {
         tree.click({20, 70}, {20, 70});
     },                                                            "001",
     {},
     "011",                                                                                                    {}                   },
    {"ReleasedOnAnother",
     [](WidgetTree& tree) {
         tree.click({20, 15}, {20, 35});
     },                                                            "001",
     {},
     "011",                                                                                                    {}                   },
    {"ReleasedOutside",
     [](WidgetTree& tree) {
         tree.click({20, 15}, {150, 15});
     },                                                            "001",
     {},
     "011",                                                                                                    {}                   },
    {"UpByKeys",
     [](WidgetTree& tree) { pressKeys(tree, {display::KEY_UP}); },
     "010",                                                               {ACTION_RADIOBUTTON_CHANGED},
     "011",                                                                                                    {}                   },
    {"ToTheFirstAndSwitched",
     [](WidgetTree& tree) {
         pressKeys(tree, {display::KEY_HOME, display::KEY_SPACE});
     },                                                            "100",
     {ACTION_RADIOBUTTON_CHANGED},
     "111",                                                                                                    {ACTION_CHECKBOX_ON} },
    {"NotBeyondTheEnd",
     [](WidgetTree& tree) {
         pressKeys(tree, {display::KEY_END, display::KEY_DOWN, display::KEY_ENTER});
     },                                                            "001",
     {},
     "010",                                                                                                    {ACTION_CHECKBOX_OFF}},
    {"Inactive",
     [](WidgetTree& tree) {
         tree.control->setInactive(true);
         tree.click({20, 15}, {20, 15});
         pressKeys(tree, {display::KEY_UP});
     },                                                            "001",
     {},
     "011",                                                                                                    {}                   },
};

class Options : public testing::TestWithParam<OptionCase> {};

TEST_P(Options, OneIsChosenOrManyAreSwitched)
{
    auto* const radio = new RadioButton;
    WidgetTree radioTree(radio, OPTIONS);
    GetParam().input(radioTree);
    EXPECT_EQ(checked(*radio), GetParam().radio);
    EXPECT_EQ(actionsOf(radioTree.observer), GetParam().radioHeard);

    auto* const checkbox = new Checkbox;
    WidgetTree checkboxTree(checkbox, OPTIONS);
    GetParam().input(checkboxTree);
    EXPECT_EQ(checked(*checkbox), GetParam().checkbox);
    EXPECT_EQ(actionsOf(checkboxTree.observer), GetParam().checkboxHeard);
}

INSTANTIATE_TEST_SUITE_P(Cases, Options, testing::ValuesIn(OPTION_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(RadioButton, KeepsOptionsThatAnElementDoesNotMention)
{
    RadioButton radio;
    loadFrom(radio, std::string("<v>") + OPTIONS + "</v>");
    loadFrom(radio, "<v><radiobutton id='r'/></v>");
    EXPECT_EQ(checked(radio), "001");
    loadFrom(radio, "<v><radiobutton><option name='x'/></radiobutton></v>");
    EXPECT_EQ(checked(radio), "0");
    EXPECT_EQ(radio.getSelected(), -1);
    EXPECT_EQ(radio.getOption(1), "");
}

TEST(RadioButton, DrawsOnlyRowsInSight)
{
    auto* const radio = new RadioButton;
    WidgetTree tree(radio, "<v/>");
    for (int i = 0; i < 10'000; ++i)
        radio->addOption(std::to_string(i), false);
    tree.draw();
    ASSERT_EQ(tree.root.render.texts.size(), 4U);
    EXPECT_EQ(tree.root.render.texts.back().text, "3");
}

TEST(Knob, TurnsUpwards)
{
    auto* const knob = new Knob;
    WidgetTree tree(knob, "<knob value='0.5'/>");
    send(tree.root, "mousedown", {50, 50});
    send(tree.root, "mousemove", {150, 25});
    EXPECT_FLOAT_EQ(knob->getValue(), 0.75f);
    send(tree.root, "mousemove", {50, 199});
    send(tree.root, "mousemove", {50, 199});
    EXPECT_EQ(knob->getValue(), 0.0f);
    send(tree.root, "mouseup", {50, 199});
    pressKeys(tree, {display::KEY_END, display::KEY_F1});
    EXPECT_EQ(knob->getValue(), 1.0f);
    EXPECT_EQ(actionsOf(tree.observer), std::vector<int>(3, ACTION_KNOB_CHANGED));
    loadFrom(*knob, "<v><knob value='none'/></v>");
    EXPECT_EQ(knob->getValue(), 1.0f);
}

struct LabelCase {
    const char* name;
    const char* attributes;
    const char* text;
    Vector2f position;
    int align;

    friend void PrintTo(const LabelCase& label, std::ostream* out) { *out << label.name; }
};

// A line is 10 pixels high and a character 6 wide: 16 of them fit.
constexpr LabelCase LABEL_CASES[] = {
    {"TopLeft",              "text='a b'",                        "a b",              {10, 15}, display::Font::ALIGN_LEFT},
    {"Middle",
     "text='a' align='center' valign='center'",                   "a",
     {60, 50},
     display::Font::ALIGN_CENTER                                                                                         },
    {"MiddleByItsOtherName", "text='a' valign='middle'",          "a",                {10, 50}, display::Font::ALIGN_LEFT},
    {"BottomRight",
     "text='a' align='right' valign='bottom'",                    "a",
     {110, 85},
     display::Font::ALIGN_RIGHT                                                                                          },
    {"UnknownWords",         "text='a' align='left' valign='up'", "a",                {10, 15}, display::Font::ALIGN_LEFT},
    {"Shortened",
     "text='0123456789abcdefgh'",                                 "0123456789abcdef",
     {10, 15},
     display::Font::ALIGN_LEFT                                                                                           },
};

class LabelText : public testing::TestWithParam<LabelCase> {};

TEST_P(LabelText, StandsWhereItIsTold)
{
    WidgetTree tree(new Label, std::string("<label ") + GetParam().attributes + "/>");
    tree.draw();
    ASSERT_EQ(tree.root.render.texts.size(), 1U);
    const RecordingRender::Text& drawn = tree.root.render.texts[0];
    EXPECT_EQ(drawn.text, GetParam().text);
    EXPECT_EQ(drawn.align, GetParam().align);
    EXPECT_EQ(drawn.position, GetParam().position);
}

INSTANTIATE_TEST_SUITE_P(Cases, LabelText, testing::ValuesIn(LABEL_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(Image, IsAnEmptyFrameWithoutADisplay)
{
    WidgetTree tree(new Image, "<image filename='missing.png'/>");
    tree.draw();
    EXPECT_EQ(tree.root.render.images.size(), 0U);
    EXPECT_EQ(tree.root.render.boxes.size(), 2U);
}

} // namespace

} // namespace zavex::vellum::test
