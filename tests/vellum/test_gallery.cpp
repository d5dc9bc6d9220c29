#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_button.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_stat.h"
#include "vellum/vel_vellum.h"

#include "am/am.h"
#include "am/am_image.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_event.h"
#include "display/dis_immediate.h"
#include "mathbase/mb_random.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace zavex::vellum::test {

using zavex::test::Picture;

namespace {

constexpr int WIDTH = 1024; // pixels
constexpr int HEIGHT = 768;
constexpr float MARGIN = 60.0f; // how far outside of the window the pointer goes, in pixels

/** A GUI on a window of the gallery's size, with the files of the demo. */
class DemoTest : public testing::Test {
protected:
    DemoTest()
    {
        mArchive.addArchive(CADENZA_TEST_SOURCE_DIR "/../../demo/");
        mWindow->setArchive(&mArchive);
    }

    void open(const std::string& layout)
    {
        zavex::test::clearLog();
        mVellum.emplace(&*mWindow);
        mVellum->load(layout);
    }

    am::ArchiveManager mArchive;
    zavex::test::GlDisplay mWindow{WIDTH, HEIGHT};
    std::optional<Vellum> mVellum;
};

class Gallery : public DemoTest {
protected:
    Gallery()
    {
        open("gallery.xml");
        EXPECT_EQ(zavex::test::countLogged("log", "not found"), 0) << "every control is known";
        EXPECT_EQ(zavex::test::countLogged("error", ""), 0);
    }
};

/** Input as a user makes it who does not know what for, the same for the same seed. */
class Storm {
public:
    Storm(display::DisplayGLFW& display, std::uint32_t seed) : mDisplay(display), mRandom(seed) {}

    /** Sends one event: pointer to the GUI, sizes to the display. */
    void step(Vellum& gui)
    {
        mControl = oneIn(4) ? anyOf(MODIFIERS) : int{display::KEYMOD_NONE};
        const int kind = mRandom.uniform(0, 99);
        if (kind < 45)
            move(gui);
        else if (kind < 60)
            press(gui);
        else if (kind < 75)
            gui.onMouseUp(button());
        else if (kind < 80)
            turnWheel(gui);
        else if (kind < 87)
            gui.onKeyDown(key());
        else if (kind < 92)
            gui.onKeyUp(key());
        else if (kind < 99)
            type(gui);
        else if (oneIn(10))
            resize();
    }

private:
    static constexpr int MODIFIERS[] = {display::KEYMOD_LSHIFT, display::KEYMOD_RCTRL,
                                        display::KEYMOD_LALT,
                                        display::KEYMOD_LSHIFT | display::KEYMOD_LCTRL};
    static constexpr display::MouseButton BUTTONS[] = {display::MOUSE_LEFT, display::MOUSE_LEFT,
                                                       display::MOUSE_LEFT, display::MOUSE_RIGHT,
                                                       display::MOUSE_MIDDLE};
    static constexpr display::Key KEYS[] = {
        display::KEY_LEFT,   display::KEY_RIGHT, display::KEY_UP,        display::KEY_DOWN,
        display::KEY_HOME,   display::KEY_END,   display::KEY_PAGEUP,    display::KEY_PAGEDOWN,
        display::KEY_TAB,    display::KEY_ENTER, display::KEY_BACKSPACE, display::KEY_DELETE,
        display::KEY_ESCAPE, display::KEY_SPACE, display::KEY_a,         display::KEY_c,
        display::KEY_v,      display::KEY_x,     display::KEY_UNKNOWN,   display::KEY_F1};
    static constexpr int CHARACTERS[] = {'0',  '7',    '.',     '-', 'e',  'q', ' ', 0xe4,
                                         0xff, 0x20ac, 0x1f600, 0,   '\n', 127, -1};
    static constexpr std::array<int, 2> SIZES[] = {
        {WIDTH, HEIGHT},
        {WIDTH, HEIGHT},
        {640,   480   },
        {1920,  1200  },
        {100,   700   },
        {1,     1     },
        {0,     0     }
    };

    template <typename Choice, std::size_t COUNT>
    Choice anyOf(const Choice (&choices)[COUNT])
    {
        return choices[mRandom.uniform(0, static_cast<int>(COUNT) - 1)];
    }

    bool oneIn(int count) { return mRandom.uniform(1, count) == 1; }

    template <typename Kind>
    Kind event()
    {
        Kind result;
        result.mousePos = mPointer;
        result.mouseWheel = mWheel;
        result.control = mControl;
        return result;
    }

    /** Mostly a short way, as in dragging. */
    void move(Vellum& gui)
    {
        const Vector2f before = mPointer;
        mPointer = oneIn(4) ? mRandom.uniform2(Vector2f(-MARGIN, -MARGIN),
                                               Vector2f(WIDTH + MARGIN, HEIGHT + MARGIN))
                            : mPointer + mRandom.uniform2(-12.0f, 12.0f);
        auto moved = event<display::MouseMoveEvent>();
        moved.mouseDelta = before - mPointer;
        gui.onMouseMove(moved);
    }

    display::MouseButtonEvent button()
    {
        auto result = event<display::MouseButtonEvent>();
        result.button = anyOf(BUTTONS);
        return result;
    }

    void press(Vellum& gui)
    {
        display::MouseButtonEvent pressed = button();
        pressed.doubleClick = pressed.button == display::MOUSE_LEFT && oneIn(5);
        gui.onMouseDown(pressed);
    }

    void turnWheel(Vellum& gui)
    {
        const float turn = oneIn(50) ? 1e6f : mRandom.uniform(-3.0f, 3.0f);
        mWheel += turn;
        auto turned = event<display::MouseMoveEvent>();
        turned.mouseDeltaWheel = turn;
        gui.onMouseWheel(turned);
    }

    display::KeyEvent key()
    {
        auto result = event<display::KeyEvent>();
        result.key = anyOf(KEYS);
        return result;
    }

    void type(Vellum& gui)
    {
        auto typed = event<display::CharEvent>();
        typed.key = anyOf(CHARACTERS);
        gui.onCharDown(typed);
        gui.onCharUp(typed);
    }

    void resize()
    {
        const auto [width, height] = anyOf(SIZES);
        mDisplay.onWindowSize(width, height);
    }

    display::DisplayGLFW& mDisplay;
    mathbase::RandomBase<mathbase::RandomGen_LCG<69069u, 5u>> mRandom;
    Vector2f mPointer{0.0f, 0.0f};
    float mWheel = 0.0f;
    int mControl = display::KEYMOD_NONE; // modifiers held
};

constexpr std::uint32_t SEED = 20260;

/** Deletes one in so many of the controls that report something, while they do. */
class Reaper final : public Callback {
public:
    explicit Reaper(int every) : mEvery(every) {}

    void controlAction(Control* control, Action) override
    {
        if (++mHeard % mEvery == 0 && control->getParent())
            delete control;
    }

private:
    int mEvery;
    int mHeard = 0;
};

/** Which actions were reported. */
class Hearing final : public Callback {
public:
    void controlAction(Control*, Action action) override { actions.insert(action); }

    std::set<Action> actions;
};

/** Whether a button that was not there during the storm reports a press on it. */
bool hearsAPress(Vellum& gui)
{
    auto* button = new Button;
    gui.addControl(button);
    button->setArea(Control::Area(500, 300, 540, 330));
    Hearing hearing;
    button->setCallback(&hearing);
    display::MouseButtonEvent event;
    event.mousePos = Vector2f(520, 315);
    // A menu that is open takes the first press, a control that is being dragged the first release.
    for (int i = 0; i < 2; ++i) {
        gui.onMouseUp(event);
        gui.onMouseUp(event);
        gui.onMouseDown(event);
    }
    button->clearCallbacks();
    return hearing.actions.contains(ACTION_BUTTON_PRESSED);
}

/** What the controls of the gallery can report. */
const std::set<Action> ACTIONS{
    ACTION_BUTTON_PRESSED, ACTION_BUTTON_RELEASED,  ACTION_CHECKBOX_ON,  ACTION_CHECKBOX_OFF,
    ACTION_COLOR,          ACTION_DROPDOWN_CHANGED, ACTION_KNOB_CHANGED, ACTION_RADIOBUTTON_CHANGED,
    ACTION_SCROLL_CHANGED, ACTION_SLIDER_CHANGED,   ACTION_TEXT_CHANGED, ACTION_TREEVIEW_CHANGED,
    ACTION_WINDOW_RESIZE};

TEST_F(Gallery, HoldsNothingAfterItWasHidden)
{
    Control& root = *mVellum->findControl("gallery")->getRoot();
    Event outside;
    outside.mousePos = Vector2f(-1, -1);
    for (int y = 0; y < HEIGHT; y += 12) {
        for (int x = 0; x < WIDTH; x += 12) {
            const Vector2f point(static_cast<float>(x), static_cast<float>(y));
            send(root, "mousemove", point);
            send(root, "mousedown", point);
            root.setVisible(false);
            root.setVisible(true);
            ASSERT_FALSE(root.acceptEvents(outside)) << "after a press at " << x << ", " << y;
        }
    }
}

TEST_F(Gallery, StaysAliveThroughAHundredThousandEvents)
{
    constexpr int EVENTS = 100000;
    constexpr int EVENTS_PER_FRAME = 400;
    Hearing hearing;
    mVellum->findControl("gallery")->setCallback(&hearing);
    Storm storm(*mWindow, SEED);
    for (int i = 0; i < EVENTS; ++i) {
        storm.step(*mVellum);
        if (i % EVENTS_PER_FRAME == 0)
            mWindow->update();
    }

    mVellum->findControl("gallery")->clearCallbacks();
    EXPECT_EQ(hearing.actions, ACTIONS) << "what the storm does not reach, it does not test";

    mWindow->onWindowSize(WIDTH, HEIGHT);
    EXPECT_TRUE(hearsAPress(*mVellum));
    for (const char* name : {"menubar", "picker", "slider.focused", "tree", "window", "ruler"})
        EXPECT_NE(mVellum->findControl(name), nullptr) << name;
    EXPECT_EQ(zavex::test::countLogged("error", ""), 0);
}

TEST_F(Gallery, LosesControlsWhileTheyReport)
{
    constexpr int EVENTS = 6000; // of one gallery
    for (std::uint32_t round = 0; round < 5; ++round) {
        open("gallery.xml");
        Reaper reaper(3);
        mVellum->findControl("gallery")->setCallback(&reaper);
        Storm storm(*mWindow, SEED + round);
        for (int i = 0; i < EVENTS; ++i)
            storm.step(*mVellum);
        mWindow->onWindowSize(WIDTH, HEIGHT);
        mWindow->update();
        mVellum->findControl("gallery")->clearCallbacks();
        EXPECT_TRUE(hearsAPress(*mVellum)) << "round " << round;
    }
}

TEST_F(Gallery, DrawsAFrameInFewArraysWithoutAllocation)
{
    mWindow->update(); // what is made at the first frame
    mWindow->update();
    const unsigned long before = display::Immediate::live().drawnArrays();
    const zavex::test::AllocationCounter counter;
    mVellum->onDraw();
    display::DisplayObsolete::flush();
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_LE(display::Immediate::live().drawnArrays() - before, 16u);
}

constexpr float FRINGE = 3.0f; // pixels around a control that are copied with it

/** The rows of the panel in which each column is a state. */
const char* const VALUES[] = {"button", "toggle",    "checkbox", "radiobutton", "slider",
                              "knob",   "textinput", "number",   "password",    "drop-down"};

constexpr Vector2f NOWHERE(576, 600); // between controls

/** Copies what lies in `area` and a little around it. */
void copy(const Picture& from, const Control::Area& area, Picture& to)
{
    const auto left = static_cast<std::size_t>(area.mMin.x - FRINGE);
    const auto right = static_cast<std::size_t>(area.mMax.x + FRINGE);
    const auto bottom = static_cast<std::size_t>(area.mMax.y + FRINGE);
    for (auto y = static_cast<std::size_t>(area.mMin.y - FRINGE); y < bottom; ++y) {
        const auto row = from.rgb.begin() + static_cast<std::ptrdiff_t>(y * WIDTH * 3);
        std::copy(row + static_cast<std::ptrdiff_t>(left * 3),
                  row + static_cast<std::ptrdiff_t>(right * 3),
                  to.rgb.begin() + static_cast<std::ptrdiff_t>((y * WIDTH + left) * 3));
    }
}

TEST_F(Gallery, ShowsEveryControlInEveryState)
{
    const auto control = [this](const std::string& name) -> Control& {
        Control* const found = mVellum->findControl(name);
        if (!found)
            throw Exception("There is no '%s' in the gallery", name.c_str());
        return *found;
    };
    const auto middleOf = [&](const std::string& name) {
        return control(name).getAreaWorld().getCenter();
    };
    const auto frame = [this] { return zavex::test::pictureOf(*mWindow, [] {}); };
    constexpr int FRAMES = 60; // until the graph has its height and the real pointer was told
    Mouse mouse(control("gallery"));
    auto& ruler = dynamic_cast<Ruler&>(control("ruler"));
    ruler.setShadow(150.0f);
    ruler.setShadow2(420.0f);
    auto& stat = dynamic_cast<Stat&>(control("stat"));
    stat.setInterval(0.0f); // every value is a sample, whatever the clock says
    for (int i = 0; i < 200; ++i)
        stat.addValue(16.0f + 5.0f * std::sin(0.1f * static_cast<float>(i)) +
                      static_cast<float>(i % 7));
    for (int i = 0; i < FRAMES; ++i)
        mWindow->update();
    mouse.click(middleOf("picker") + Vector2f(30.0f, -40.0f));

    mouse.click(control("tree").getAreaWorld().mMin + Vector2f(60.0f, 24.0f));
    mouse.click(NOWHERE);
    mouse.moveTo(middleOf("ruler") + Vector2f(110.0f, 0.0f));
    for (const std::string row : VALUES)
        control(row + ".inactive").setInactive(true);
    Picture gallery = frame();

    for (const std::string row : VALUES) {
        mouse.moveTo(middleOf(row + ".hovered"));
        copy(frame(), control(row + ".hovered").getAreaWorld(), gallery);

        mouse.moveTo(middleOf(row + ".pressed"));
        mouse.press();
        copy(frame(), control(row + ".pressed").getAreaWorld(), gallery);
        mouse.moveTo(NOWHERE);
        mouse.release();
        mouse.click(NOWHERE);

        control(row + ".focused").setFocus(nullptr);
        copy(frame(), control(row + ".focused").getAreaWorld(), gallery);
    }
    EXPECT_TRUE(LOOKS_LIKE(gallery, "gallery"));
}

/** A control of every type, each with what no user would write. */
// clang-format off
constexpr struct NonsenseCase {
    const char* name;
    const char* area;
    const char* attributes;
    const char* inside; // sub-elements of every control
    const char* font = "fonthelvete2.png";
} NONSENSE_CASES[] = {
    {"NegativeSizes", "x='-5' y='-9' width='-300' height='-1' size='-20' percent='-3'",
     "value='-1' percent='-500' size='-4' min='5' max='-5'", ""},
    {"HugeSizes", "x='-1e30' y='1e9' width='3e38' height='3e38' size='1e30' percent='1e30'",
     "value='1e30' percent='1e30' size='1e30' min='-3e38' max='3e38'", ""},
    {"OverflowingSizes", "x='0' y='0' width='1e99' height='1e99' size='1e99' percent='1e99'",
     "value='1e99' percent='-1e99' size='1e99' min='-1e99' max='1e99'", ""},
    {"NoNumbers", "x='left' y='nan' width='inf' height='12px' size='NaN' percent='-'",
     "value='x' percent='nan' size='inf' min='nan' max='' direction='up' align='?'", ""},
    {"NoSize", "", "", ""},
    {"EmptyRows", "x='9' y='9' width='90' height='90'", "", "<item/><option/><child/>"},
    {"NoSuchPicture", "x='9' y='9' width='90' height='90'", "filename='none.png'",
     "<item id='x'><item/></item><option name='a' checked='true' default='true'/>"},
    {"TinyFont", "x='9' y='9' width='90' height='90'", "caption='A' text='B'",
     "<item caption='C'/><option name='D'/>", "tiny.png"},
};
// clang-format on

constexpr const char* TYPES[] = {
    "box",       "boxframe",    "boxview",  "button",  "caption",     "checkbox",   "colorchooser",
    "container", "context",     "dropdown", "flow",    "frame",       "image",      "knob",
    "label",     "layoutstack", "menu",     "menubar", "panel",       "panelframe", "radiobutton",
    "ruler",     "scrollbars",  "slider",   "spline",  "stat",        "tabview",    "tabcaption",
    "tabframe",  "textinput",   "treeview", "window",  "windowframe", "workspace",  "nothing"};

void writeLayout(const zavex::test::TemporaryFolder& folder, const NonsenseCase& nonsense)
{
    const std::string area = std::string("><area ") + nonsense.area + "/>";
    std::string text =
        std::string("<vellum><workspace id='all' font='") + nonsense.font + "'><child>";
    for (const std::string type : TYPES)
        text += "<" + type + " " + nonsense.attributes + area + nonsense.inside +
                "<child><label text='a label'" + area +
                "</label><flow><child><button caption='in a flow'" + area +
                "</button></child></flow></child></" + type + ">";
    folder.write("nonsense.xml", text + "</child></workspace></vellum>");
}

TEST_F(DemoTest, DrawsNonsenseAndHandlesEvents)
{
    const zavex::test::TemporaryFolder folder;
    mArchive.addArchive(folder.path(""));
    am::Image pixel(new am::ImageObject());
    pixel->resize(1, 1);
    am::ArchiveManager own;
    own.addArchive(folder.path(""));
    own.writeImage("tiny.png", pixel);
    for (const NonsenseCase& nonsense : NONSENSE_CASES) {
        SCOPED_TRACE(nonsense.name);
        writeLayout(folder, nonsense);
        open("nonsense.xml");
        EXPECT_EQ(zavex::test::countLogged("log", "not found"), 1) << "only one type is unknown";

        Storm storm(*mWindow, SEED);
        for (int i = 0; i < 1000; ++i) {
            if (i % 250 == 0)
                mWindow->update();
            storm.step(*mVellum);
        }
        mWindow->onWindowSize(WIDTH, HEIGHT);
        mWindow->update();
        EXPECT_TRUE(hearsAPress(*mVellum));
    }
}

} // namespace

} // namespace zavex::vellum::test
