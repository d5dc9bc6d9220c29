#include "vellum/probe.h"
#include "vellum/vel_text_input.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zavex::vellum::test {

namespace {

constexpr float GLYPH = 6.0f;  // width of every character of the recording render, pixels
constexpr float MARGIN = 4.0f; // pixels

/** One text input of 10 characters' width with the focus. */
struct InputTree {
    explicit InputTree(const std::string& attributes)
    {
        screen.addControl(input);
        loadFrom(*input, "<vellum><textinput " + attributes + "/></vellum>");
        input->setMaximized(false);
        input->setArea(Area(10, 10, 79, 30));
        screen.setArea(Area(0, 0, 200, 100));
        screen.setCallback(&observer);
        screen.setCopyString("p9.");
    }

    void type(int character)
    {
        Event event = eventAt("keychardown", {0, 0});
        event.keyChar = character;
        EXPECT_NE(screen.handleEvent(event), 0) << "typed text must not reach other listeners";
    }

    void point(const char* type, float character, bool doubleClick = false)
    {
        Event event = eventAt(type, {10 + MARGIN + character * GLYPH, 20});
        event.doubleClick = doubleClick;
        screen.handleEvent(event);
    }

    /** The text with '|' at the cursor and '!' at the other end of the selection. */
    std::string state() const
    {
        const EditLine& line = input->getLine();
        const bool atEnd = line.cursor() == line.selectionEnd();
        std::string marked = line.text();
        if (line.hasSelection())
            marked.insert(line.selectionEnd(), atEnd ? "|" : "!");
        marked.insert(line.selectionBegin(), atEnd && line.hasSelection() ? "!" : "|");
        return marked;
    }

    void draw() { screen.draw(); }

    Screen screen;
    Observer observer;
    TextInput* input = new TextInput;
};

struct Stroke {
    display::Key key;
    int modifiers = display::KEYMOD_NONE;
};

constexpr int SHIFT = display::KEYMOD_LSHIFT;
constexpr int CTRL = display::KEYMOD_RCTRL;

// clang-format off
const struct KeyCase {
    const char* name;
    const char* attributes;
    std::vector<Stroke> strokes;
    const char* typed; // after the strokes
    const char* state; // afterwards
    const char* clipboard;
    std::size_t reports;
} KEY_CASES[] = {
    {"AppendsAtTheEnd",     "text='ab'",    {},                                                     "cd",   "abcd|",     "p9.",  2},
    {"InsertsAtTheCursor",  "text='ab'",    {{display::KEY_LEFT}},                                  "c",    "ac|b",      "p9.",  1},
    {"StopsAtBothEnds",     "text='a'",     {{display::KEY_HOME}, {display::KEY_LEFT}, {display::KEY_RIGHT}, {display::KEY_RIGHT}}, "", "a|", "p9.", 0},
    {"ErasesBackward",      "text='abc'",   {{display::KEY_BACKSPACE}},                             "",     "ab|",       "p9.",  1},
    {"ErasesForward",       "text='abc'",   {{display::KEY_HOME}, {display::KEY_DEL}},              "",     "|bc",       "p9.",  1},
    {"NothingToErase",      "text=''",      {{display::KEY_BACKSPACE}, {display::KEY_DEL}},         "",     "|",         "p9.",  0},
    {"SelectsToTheLeft",    "text='abc'",   {{display::KEY_LEFT, SHIFT}, {display::KEY_LEFT, SHIFT}}, "",   "a|bc!",     "p9.",  0},
    {"LeavesAtTheLeftEnd",  "text='abc'",   {{display::KEY_HOME, SHIFT}, {display::KEY_LEFT}},      "",     "|abc",      "p9.",  0},
    {"LeavesAtTheRightEnd", "text='abc'",   {{display::KEY_HOME, SHIFT}, {display::KEY_RIGHT}},     "",     "abc|",      "p9.",  0},
    {"TypesOverSelection",  "text='abc'",   {{display::KEY_a, CTRL}},                               "x",    "x|",        "p9.",  1},
    {"ErasesSelectionOnly", "text='abc'",   {{display::KEY_LEFT, SHIFT}, {display::KEY_BACKSPACE}}, "",     "ab|",       "p9.",  1},
    {"Copies",              "text='abc'",   {{display::KEY_LEFT, SHIFT}, {display::KEY_c, CTRL}},   "",     "ab|c!",     "c",    0},
    {"CopiesNoEmptiness",   "text='abc'",   {{display::KEY_c, CTRL}, {display::KEY_x, CTRL}},       "",     "abc|",      "p9.",  0},
    {"CutsAndPastesTwice",  "text='abc'",   {{display::KEY_LEFT, SHIFT}, {display::KEY_x, CTRL}, {display::KEY_v, CTRL}, {display::KEY_v, CTRL}}, "", "abcc|", "c", 3},
    {"WordsToTheLeft",      "text='ab  cd'", {{display::KEY_LEFT, CTRL}, {display::KEY_LEFT, CTRL | SHIFT}}, "", "|ab  !cd", "p9.", 0},
    {"WordsToTheRight",     "text='ab cd'", {{display::KEY_HOME}, {display::KEY_RIGHT, CTRL}},      "",     "ab| cd",    "p9.",  0},
    {"NumericTakesNumbers", "text='-1a.5-' type='numeric'", {},                                     "x.2",  "-1.52|",    "p9.",  1},
    {"NumericMinusInFront", "text='5' type='numeric'", {{display::KEY_HOME}},                       "--",   "-|5",       "p9.",  1},
    {"NumericPastesPart",   "text='1' type='numeric'", {{display::KEY_v, CTRL}},                    "",     "19.|",      "p9.",  1},
    {"NumericKeepsOnNoPart", "text='1.5' type='numeric'", {{display::KEY_HOME, SHIFT}},             "x",    "|1.5!",     "p9.",  0},
    {"PasswordIsNotCopied", "text='abc' type='password'", {{display::KEY_a, CTRL}, {display::KEY_c, CTRL}, {display::KEY_x, CTRL}}, "", "!abc|", "p9.", 0},
    {"Latin1Characters",    "text=''",      {},                                                     "\xe9\x85\x7f\x1b", "\xe9|", "p9.", 1},
};
// clang-format on

TEST(TextInputKeys, EditTheText)
{
    for (const KeyCase& row : KEY_CASES) {
        SCOPED_TRACE(row.name);
        InputTree tree(row.attributes);
        for (const Stroke& stroke : row.strokes)
            EXPECT_NE(pressKey(tree.screen, stroke.key, stroke.modifiers), 0);
        for (const char character : std::string(row.typed))
            tree.type(static_cast<unsigned char>(character));

        EXPECT_EQ(tree.state(), row.state);
        EXPECT_EQ(tree.screen.getCopyString(), row.clipboard);
        EXPECT_EQ(tree.observer.heard.size(), row.reports);
    }
}

TEST(TextInput, SelectsWithTheMouse)
{
    InputTree tree("text='one two'");
    tree.point("mousedown", 1.4f);
    EXPECT_EQ(tree.state(), "o|ne two");
    tree.point("mousemove", 4.6f);
    EXPECT_EQ(tree.state(), "o!ne t|wo");
    tree.point("mousemove", -20.0f);
    EXPECT_EQ(tree.state(), "|o!ne two");
    tree.point("mouseup", -20.0f);
    tree.point("mousemove", 3.0f);
    EXPECT_EQ(tree.state(), "|o!ne two");

    tree.point("mousedown", 5.0f, true);
    tree.point("mousemove", 5.5f);
    EXPECT_EQ(tree.state(), "one !two|") << "a word, and the shaking hand does not undo it";
}

TEST(TextInput, ScrollsToItsCursor)
{
    InputTree tree("text='0123456789abcdef'"); // six more than fit
    tree.draw();
    const float left = 10 + MARGIN;
    const std::vector<RecordingRender::Text>& drawn = tree.screen.render.texts;
    EXPECT_FLOAT_EQ(drawn.back().position.x, left - 36.0f);

    tree.point("mousedown", 0.0f);
    EXPECT_EQ(tree.state(), "012345|6789abcdef") << "what is seen there";
    pressKey(tree.screen, display::KEY_HOME);
    tree.draw();
    EXPECT_FLOAT_EQ(drawn.back().position.x, left);

    pressKey(tree.screen, display::KEY_END);
    tree.screen.clearFocus();
    tree.draw();
    EXPECT_FLOAT_EQ(drawn.back().position.x, left) << "without the focus the beginning is shown";
}

TEST(TextInput, LeavesOtherKeysAlone)
{
    InputTree tree("text='abc'");
    EXPECT_NE(pressKey(tree.screen, display::KEY_s), 0) << "a character follows";
    EXPECT_EQ(pressKey(tree.screen, display::KEY_s, CTRL), 0);
    tree.input->setInactive(true);
    EXPECT_EQ(pressKey(tree.screen, display::KEY_BACKSPACE), 0);
    EXPECT_EQ(tree.state(), "abc|");
}

TEST(TextInput, KeepsNoMoreThanItCanEdit)
{
    InputTree tree("text=''");
    tree.screen.setCopyString(std::string(100'000, 'x'));
    pressKey(tree.screen, display::KEY_v, CTRL);
    EXPECT_EQ(tree.input->getCaption().size(), 4096U);
    tree.draw();
}

} // namespace

} // namespace zavex::vellum::test
