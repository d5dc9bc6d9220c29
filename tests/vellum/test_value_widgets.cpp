#include "vellum/probe.h"
#include "vellum/vel_checkbox.h"
#include "vellum/vel_image.h"
#include "vellum/vel_knob.h"
#include "vellum/vel_label.h"
#include "vellum/vel_radio_button.h"

#include "display/dis_font.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
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

    void pressKeys(const std::vector<display::Key>& keys)
    {
        for (const display::Key key : keys)
            pressKey(root, key);
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

// Rows begin at 10, 30 and 50.
// clang-format off
const struct OptionCase {
    const char* name;
    std::vector<Vector2f> click;    // where the button is pressed and released
    std::vector<display::Key> keys; // after the click
    const char* radio;              // checked options afterwards
    std::vector<int> radioHeard;
    const char* checkbox;
    std::vector<int> checkboxHeard;
    bool inactive = false;
} OPTION_CASES[] = {
    {"AsLoaded",              {}, {}, "001", {}, "011", {}},
    {"FirstRow",              {{10, 10}, {109, 29}}, {}, "100", {ACTION_RADIOBUTTON_CHANGED}, "111", {ACTION_CHECKBOX_ON}},
    {"CheckedRow",            {{20, 50}, {20, 69}}, {}, "001", {}, "010", {ACTION_CHECKBOX_OFF}},
    {"BelowTheLast",          {{20, 70}, {20, 70}}, {}, "001", {}, "011", {}},
    {"ReleasedOnAnother",     {{20, 15}, {20, 35}}, {}, "001", {}, "011", {}},
    {"UpByKeys",              {}, {display::KEY_UP}, "010", {ACTION_RADIOBUTTON_CHANGED}, "011", {}},
    {"ToTheFirstAndSwitched", {}, {display::KEY_HOME, display::KEY_SPACE}, "100", {ACTION_RADIOBUTTON_CHANGED}, "111", {ACTION_CHECKBOX_ON}},
    {"NotBeyondTheEnd",       {}, {display::KEY_END, display::KEY_DOWN, display::KEY_ENTER}, "001", {}, "010", {ACTION_CHECKBOX_OFF}},
    {"Inactive",              {{20, 15}, {20, 15}}, {display::KEY_UP}, "001", {}, "011", {}, true},
};
// clang-format on

/** Applies the case to a new control and compares what is checked and was heard. */
void expectOptions(RadioButton* options, const OptionCase& row, const char* expected,
                   const std::vector<int>& heard)
{
    WidgetTree tree(options, OPTIONS);
    options->setInactive(row.inactive);
    if (!row.click.empty())
        tree.click(row.click[0], row.click[1]);
    tree.pressKeys(row.keys);
    EXPECT_EQ(checked(*options), expected);
    EXPECT_EQ(actionsOf(tree.observer), heard);
}

TEST(Options, OneIsChosenOrManyAreSwitched)
{
    for (const OptionCase& row : OPTION_CASES) {
        SCOPED_TRACE(row.name);
        expectOptions(new RadioButton, row, row.radio, row.radioHeard);
        expectOptions(new Checkbox, row, row.checkbox, row.checkboxHeard);
    }
}

// clang-format off
const struct PointerCase {
    const char* name;
    std::vector<std::pair<const char*, Vector2f>> events;
    int row; // that is marked; -1 for none
    Look look = Look::HOVERED;
} POINTER_CASES[] = {
    {"Over",                  {{"mousemove", {20, 15}}}, 0},
    {"OnToAnother",           {{"mousemove", {20, 15}}, {"mousemove", {20, 35}}}, 1},
    {"BesideTheRows",         {{"mousemove", {20, 15}}, {"mousemove", {20, 85}}}, -1},
    {"Left",                  {{"mousemove", {20, 15}}, {"mousemove", {150, 15}}}, -1},
    {"Held",                  {{"mousemove", {20, 15}}, {"mousedown", {20, 15}}}, 0, Look::PRESSED},
    {"HeldElsewhere",         {{"mousemove", {20, 15}}, {"mousedown", {20, 15}}, {"reset", {}}}, -1},
    {"OnToAnotherAfterClick", {{"mousemove", {20, 55}}, {"mousedown", {20, 55}}, {"mouseup", {20, 55}}, {"mousemove", {20, 35}}}, 1},
};
// clang-format on

TEST(Options, ShowThePointerOnOneRowAtMost)
{
    const style colors = widgetStyle();
    for (const PointerCase& row : POINTER_CASES) {
        SCOPED_TRACE(row.name);
        WidgetTree tree(new RadioButton, OPTIONS);
        for (const auto& [type, point] : row.events)
            send(tree.root, type, point);
        tree.draw();
        ASSERT_EQ(tree.root.render.circles.size(), 7u) << "rim and body of three, one dot";
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(tree.root.render.circleColors[static_cast<std::size_t>(2 * i + 1)],
                      pick(colors.mBack, i == row.row ? row.look : Look::NORMAL).first)
                << i;
    }
}

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
    EXPECT_EQ(send(tree.root, "mousewheel", {50, 50}), 1) << "nothing around it turns";
    tree.pressKeys({display::KEY_END, display::KEY_F1});
    EXPECT_EQ(knob->getValue(), 1.0f);
    EXPECT_EQ(actionsOf(tree.observer), std::vector<int>(3, ACTION_KNOB_CHANGED));
    loadFrom(*knob, "<v><knob value='none'/></v>");
    EXPECT_EQ(knob->getValue(), 1.0f);
}

// A line is 10 pixels high and a character 6 wide: 16 of them fit.
// clang-format off
constexpr struct LabelCase {
    const char* name;
    const char* attributes;
    const char* text;
    Vector2f position;
    int align;
} LABEL_CASES[] = {
    {"TopLeft",              "text='a b'", "a b", {10, 15}, display::Font::ALIGN_LEFT},
    {"Middle",               "text='a' align='center' valign='center'", "a", {60, 50}, display::Font::ALIGN_CENTER},
    {"MiddleByItsOtherName", "text='a' valign='middle'", "a", {10, 50}, display::Font::ALIGN_LEFT},
    {"BottomRight",          "text='a' align='right' valign='bottom'", "a", {110, 85}, display::Font::ALIGN_RIGHT},
    {"UnknownWords",         "text='a' align='left' valign='up'", "a", {10, 15}, display::Font::ALIGN_LEFT},
    {"Shortened",            "text='0123456789abcdefgh'", "0123456789abcdef", {10, 15}, display::Font::ALIGN_LEFT},
};
// clang-format on

TEST(LabelText, StandsWhereItIsTold)
{
    for (const LabelCase& row : LABEL_CASES) {
        SCOPED_TRACE(row.name);
        WidgetTree tree(new Label, std::string("<label ") + row.attributes + "/>");
        tree.draw();
        ASSERT_EQ(tree.root.render.texts.size(), 1U);
        const RecordingRender::Text& drawn = tree.root.render.texts[0];
        EXPECT_EQ(drawn.text, row.text);
        EXPECT_EQ(drawn.align, row.align);
        EXPECT_EQ(drawn.position, row.position);
    }
}

} // namespace

} // namespace zavex::vellum::test
