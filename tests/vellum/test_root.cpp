#include "vellum/probe.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_context.h"
#include "vellum/vel_ruler.h"
#include "vellum/vel_stat.h"
#include "vellum/vel_vellum.h"

#include "am/am.h"
#include "am/am_image.h"
#include "display/dis_immediate.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include <unistd.h>

namespace zavex::vellum::test {

using mathbase::Vector4f;
using zavex::test::GlDisplayTest;
using zavex::test::Picture;
using zavex::test::pixelAt;
using zavex::test::thrownMessage;

namespace {

constexpr int SHEET_SIZE = 256; // pixels
constexpr unsigned RED = 0xff0000;
constexpr unsigned BLACK = 0x000000;

/** The view can be panned from outside. */
class PannedVellum final : public Vellum {
public:
    using Vellum::Vellum;

    using Vellum::mPan;
    using Vellum::mPanOn;
};

/** Keeps what it was last told, and fills its rectangle with red. */
class Painted final : public Probe {
public:
    explicit Painted(Area area) : Probe("painted", area)
    {
        onEvent = [this](Event& event) { last = event; };
    }

    void draw(Area area, Area parent, Area clip) override
    {
        getRender().setColor(Vector4f(1, 0, 0, 1), Vector4f(0, 0, 0, -1));
        getRender().drawBox(area, Render::GRADIENT_VERTICAL);
        Probe::draw(area, parent, clip);
    }

    Event last;
};

/** A GUI on a window of 64 x 48 pixels whose files lie in a folder of the test's own. */
class RootTest : public GlDisplayTest {
protected:
    RootTest()
    {
        std::filesystem::create_directories(mFolder);
        mArchive.addArchive(mFolder);
        mDisplay.setArchive(&mArchive);
        am::Image sheet(new am::ImageObject());
        sheet->resize(SHEET_SIZE, SHEET_SIZE);
        std::fill_n(sheet->getWriteData(), SHEET_SIZE * SHEET_SIZE * 4, std::uint8_t{255});
        mArchive.writeImage("sheet.png", sheet);
        mVellum = std::make_unique<PannedVellum>(&mDisplay);
    }

    ~RootTest() override
    {
        mVellum.reset();
        std::filesystem::remove_all(mFolder);
    }

    void write(const std::string& name, const std::string& text)
    {
        std::ofstream(mFolder + name) << text;
    }

    /** Loads a layout that holds `text`. */
    void load(const std::string& text)
    {
        write("layout.xml", text);
        mVellum->load("layout.xml");
    }

    void loadFont() { load("<vellum><workspace id='workspace' font='sheet.png'/></vellum>"); }

    Painted& addPainted(Area area)
    {
        auto* control = new Painted(area);
        mVellum->addControl(control);
        return *control;
    }

    Control& workspace() { return *mVellum->findControl("workspace"); }

    /** What the window shows when nothing but the GUI draws. */
    Picture frame()
    {
        mDisplay.resetStates();
        display::DisplayObsolete::clear({0, 0, 0, 0}, 1.0f);
        return pictureOf([] {});
    }

    std::string mFolder = testing::TempDir() + "root_" + std::to_string(getpid()) + "/";
    am::ArchiveManager mArchive;
    std::unique_ptr<PannedVellum> mVellum;
};

/** The fields of an event that differ from a fresh one, world position first. */
std::string summary(const Event& event)
{
    std::ostringstream out;
    out << event.type << " " << event.mousePosWorld.x << " " << event.mousePosWorld.y;
    if (event.button != display::MouseButton{})
        out << " button " << event.button;
    if (event.doubleClick)
        out << " double";
    if (event.key != display::Key{})
        out << " key " << event.key;
    if (event.keyChar != 0)
        out << " char " << event.keyChar;
    if (event.mouseDelta != Vector2f(0, 0))
        out << " moved " << event.mouseDelta.x << " " << event.mouseDelta.y;
    if (event.mouseDeltaWheel != 0.0f)
        out << " wheel " << event.mouseDeltaWheel << " to " << event.mouseWheel;
    if (event.shift())
        out << " shift";
    return out.str();
}

/** What the user does with the pointer at (16, 12), and the event that comes of it. */
struct EventCase {
    const char* name;
    void (*act)(display::DisplayGLFW& display);
    const char* expected;

    friend void PrintTo(const EventCase& each, std::ostream* out) { *out << each.name; }
};

void press(display::DisplayGLFW& display)
{
    display.onMouseButton(GLFW_MOUSE_BUTTON_LEFT, GLFW_PRESS);
}

constexpr EventCase EVENT_CASES[] = {
    {"Press",        press,                                                                          "mousedown 16 12"        },
    {"SecondPress",
     [](display::DisplayGLFW& display) {
         press(display);
         press(display);
     },                                                                                              "mousedown 16 12 double" },
    {"OtherRelease",
     [](display::DisplayGLFW& display) {
         display.onMouseButton(GLFW_MOUSE_BUTTON_RIGHT, GLFW_RELEASE);
     },                                                                                              "mouseup 16 12 button 1" },
    {"Move",         [](display::DisplayGLFW& display) { display.onMouseMove(18.0f, 11.5f); },
     "mousemove 18 11.5 moved -2 0.5"                                                                                         },
    {"Wheel",        [](display::DisplayGLFW& display) { display.onMouseWheel(-2.0f); },
     "mousewheel 16 12 wheel -2 to -2"                                                                                        },
    {"KeyDown",      [](display::DisplayGLFW& display) { display.onKey(GLFW_KEY_TAB, GLFW_PRESS); },
     "keydown 16 12 key 9"                                                                                                    },
    {"KeyUp",
     [](display::DisplayGLFW& display) {
         display.onModifiers(GLFW_MOD_SHIFT);
         display.onKey(GLFW_KEY_TAB, GLFW_RELEASE);
     },                                                                                              "keyup 16 12 key 9 shift"},
    {"CharDown",     [](display::DisplayGLFW& display) { display.onChar(228, GLFW_PRESS); },
     "keychardown 16 12 char 228"                                                                                             },
    {"CharUp",       [](display::DisplayGLFW& display) { display.onChar(228, GLFW_RELEASE); },
     "keycharup 16 12 char 228"                                                                                               },
};

class RootEvent : public RootTest, public testing::WithParamInterface<EventCase> {};

TEST_P(RootEvent, CarriesWhatTheDisplayReports)
{
    Painted& control = addPainted(Area(0, 0, 64, 48));
    mDisplay.onMouseMove(16.0f, 12.0f);
    GetParam().act(mDisplay);
    EXPECT_EQ(summary(control.last), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, RootEvent, testing::ValuesIn(EVENT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(RootTest, DropsMovesWithinAPixel)
{
    Painted& control = addPainted(Area(0, 0, 64, 48));
    mDisplay.onMouseMove(0.9f, 0.9f);
    EXPECT_EQ(control.count("mousemove"), 0) << "the pointer starts at (0, 0)";
    mDisplay.onMouseMove(5.0f, 5.0f);
    mDisplay.onMouseMove(5.9f, 5.5f);
    EXPECT_EQ(control.count("mousemove"), 1);
    mDisplay.onMouseMove(5.9f, 6.0f);
    EXPECT_EQ(control.count("mousemove"), 2);
}

TEST_F(RootTest, AddsThePanToEveryPosition)
{
    Painted& control = addPainted(Area(0, 0, 64, 48));
    mVellum->mPan = Vector2f(10, 20);
    mDisplay.onMouseMove(5.0f, 5.0f);
    press(mDisplay);
    EXPECT_EQ(summary(control.last), "mousedown 15 25");

    mVellum->mPanOn = true;
    mDisplay.onMouseMove(8.0f, 9.0f); // a move of (-3, -4)
    EXPECT_EQ(mVellum->mPan, Vector2f(7, 16));
    EXPECT_EQ(summary(control.last), "mousemove 15 25 moved -3 -4");
}

TEST_F(RootTest, WantsToBeDrawnAfterEveryEvent)
{
    mDisplay.close();
    display::WindowMode mode = zavex::test::smallMode();
    mode.fpsMode = display::WindowMode::FPS_EVENT;
    mDisplay.open(mode);
    Painted& control = addPainted(Area(0, 0, 64, 48));
    mDisplay.update();
    mDisplay.setDirty(false);
    const std::size_t before = control.drawn.size();
    mDisplay.onMouseWheel(1.0f);
    mDisplay.update();
    EXPECT_EQ(control.drawn.size(), before + 1);
}

TEST_F(RootTest, HandsTheAnswerOfTheControlToTheDisplay)
{
    addPainted(Area(0, 0, 64, 48)).result = display::Listener::BLOCK;
    display::MouseButtonEvent button;
    button.mousePos = Vector2f(5, 5);
    EXPECT_EQ(mVellum->onMouseDown(button), display::Listener::BLOCK);
    display::MouseMoveEvent move;
    move.mousePos = Vector2f(9, 9);
    EXPECT_EQ(mVellum->onMouseMove(move), 0);

    workspace().setVisible(false);
    EXPECT_EQ(mVellum->onMouseDown(button), 0) << "hidden";
}

TEST_F(RootTest, IsAsLargeAsTheWindow)
{
    EXPECT_EQ(text(workspace().getArea()), "0 0 64 48");
    mDisplay.onWindowSize(80, 40);
    EXPECT_EQ(text(workspace().getArea()), "0 0 80 40");
    loadFont();
    EXPECT_EQ(text(workspace().getArea()), "0 0 80 40");
}

TEST_F(RootTest, DrawsWithoutALayout)
{
    addPainted(Area(10, 10, 20, 20));
    const Picture picture = frame();
    EXPECT_EQ(pixelAt(picture, 10, 10), RED);
    EXPECT_EQ(pixelAt(picture, 20, 19), BLACK);

    workspace().setVisible(false);
    EXPECT_EQ(pixelAt(frame(), 10, 10), BLACK);
}

TEST_F(RootTest, CutsControlsAtTheirParents)
{
    auto* window = new Probe("window", Area(10, 10, 30, 30));
    window->addControl(new Painted(Area(-5, 5, 50, 10)));
    mVellum->addControl(window);
    const Picture picture = frame();
    EXPECT_EQ(pixelAt(picture, 10, 15), RED);
    EXPECT_EQ(pixelAt(picture, 29, 19), RED);
    EXPECT_EQ(pixelAt(picture, 9, 15), BLACK);
    EXPECT_EQ(pixelAt(picture, 30, 15), BLACK);
}

constexpr const char* CONTROL_TYPES[] = {
    "box",       "boxframe",    "boxview",  "button",  "caption",     "checkbox",   "colorchooser",
    "container", "context",     "dropdown", "flow",    "frame",       "image",      "knob",
    "label",     "layoutstack", "menu",     "menubar", "panel",       "panelframe", "radiobutton",
    "ruler",     "scrollbars",  "slider",   "spline",  "stat",        "tabview",    "tabcaption",
    "tabframe",  "textinput",   "treeview", "window",  "windowframe", "workspace"};
static_assert(std::size(CONTROL_TYPES) == 34);

TEST_F(RootTest, MakesEveryTypeOfControlButThePartsOfOthers)
{
    for (const char* type : CONTROL_TYPES) {
        const std::unique_ptr<Control> made(controlFactory.create(type));
        ASSERT_NE(made, nullptr) << type;
        EXPECT_EQ(made->getType(), type);
    }
    for (const char* part :
         {"colorchooserframe", "colorchooserwheel", "menuframe", "scrollbarsframe"})
        EXPECT_EQ(controlFactory.create(part), nullptr) << part;
}

TEST_F(RootTest, LoadsTheLayoutWithItsStyle)
{
    write("style.xml",
          "<vellum><container><child><flow id='styled'/></child></container></vellum>");
    load("<vellum><workspace id='screen' font='sheet.png' style='style.xml'><child>"
         "<container id='own'/></child></workspace></vellum>");
    EXPECT_EQ(mVellum->findControl("styled")->getParent(), mVellum->findControl("own"));
    EXPECT_EQ(mVellum->findControl("screen")->getRender().getFontHeight(), 16.0f);
}

/** A layout that cannot be shown as it is. */
struct LayoutCase {
    const char* name;
    const char* message; // how that of the exception begins
    const char* layout;

    friend void PrintTo(const LayoutCase& each, std::ostream* out) { *out << each.name; }
};

constexpr const char* NOTHING_THROWN = "nothing was thrown";

// clang-format off
constexpr LayoutCase LAYOUT_CASES[] = {
    {"Empty", "layout.xml: (error at line 1, col 1)", ""},
    {"Broken", "layout.xml: ", "<vellum><workspace"},
    {"OtherRoot", NOTHING_THROWN, "<gui><workspace font='none.png'/></gui>"},
    {"NoWorkspace", NOTHING_THROWN, "<vellum><window/></vellum>"},
    {"OtherStyle", NOTHING_THROWN,
     "<vellum><workspace style='other.xml'/><workspace font='none.png'/></vellum>"},
    {"BrokenStyle", "broken.xml: ", "<vellum><workspace style='broken.xml'/></vellum>"},
    {"MissingFont", "Could not load font from 'fonthelvete2.png'", "<vellum><workspace/></vellum>"},
};
// clang-format on

class RootLayout : public RootTest, public testing::WithParamInterface<LayoutCase> {};

TEST_P(RootLayout, SaysWhatIsWrongAndDrawsOn)
{
    write("other.xml", "<style><container/></style>");
    write("broken.xml", "<vellum><container");
    addPainted(Area(10, 10, 20, 20));

    const std::string message = thrownMessage([this] { load(GetParam().layout); });
    EXPECT_TRUE(message.starts_with(GetParam().message)) << message;
    EXPECT_EQ(pixelAt(frame(), 10, 10), RED);
}

INSTANTIATE_TEST_SUITE_P(Cases, RootLayout, testing::ValuesIn(LAYOUT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(RootTest, StopsWhereAStyleIsMissing)
{
    addPainted(Area(10, 10, 20, 20));
    testing::internal::CaptureStdout();
    load("<vellum><workspace style='none.xml' font='none.png'/><workspace font='none.png'/>"
         "</vellum>");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Vellum::load: Warning: Style not found!\n");
    EXPECT_EQ(pixelAt(frame(), 10, 10), RED);
}

TEST_F(RootTest, NamesTheLayoutThatIsMissing)
{
    EXPECT_EQ(thrownMessage([this] { mVellum->load("none.xml"); }),
              "Could not find the file 'none.xml'.");
    mDisplay.setArchive(nullptr);
    EXPECT_EQ(thrownMessage([this] { mVellum->load("none.xml"); }),
              "Could not find the file 'none.xml'.");
}

/** A menu with two rows at (20, 10), 37 x 35 pixels large, open over a control. */
class RootMenu : public RootTest {
protected:
    RootMenu()
    {
        loadFont();
        mMenu.addOption("x", "");
        mMenu.addOption("y", "");
        mMenu.setFixedWidth(37.0f);
        mMenu.setPosition(Vector2f(20, 10));
        mControl.setContext(&mMenu);
    }

    void release(float x, float y)
    {
        send("mousemove", x, y);
        send("mouseup", x, y);
    }

    int send(const std::string& type, float x, float y)
    {
        return test::send(workspace(), type, Vector2f(x, y));
    }

    bool isOpen() { return frameShows(22, 12); }

    /** Whether the menu, which is nearly black, lies over the control. */
    bool frameShows(int x, int y) { return pixelAt(frame(), x, y) < 0x400000; }

    Painted& mControl = addPainted(Area(0, 0, 30, 48));
    Context mMenu; // destroyed before its owner
};

TEST_F(RootMenu, LiesAboveEverythingAndIsNotCutByItsOwner)
{
    addPainted(Area(0, 0, 64, 48));
    const Picture picture = frame();
    EXPECT_LT(pixelAt(picture, 22, 12), 0x400000u);
    EXPECT_LT(pixelAt(picture, 50, 12), 0x400000u) << "outside of the owner";
    EXPECT_EQ(pixelAt(picture, 19, 12), RED);
}

TEST_F(RootMenu, ClosesAtTheSecondRelease)
{
    mControl.seen.clear();
    send("mouseup", 2, 2);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(mControl.seen.empty()) << "the menu alone sees the event";
    send("mouseup", 2, 2);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(mControl.count("mouseup"), 1) << "no menu is in the way any more";
}

TEST_F(RootMenu, ClosesAtAPressElsewhereThatNobodyElseSees)
{
    mControl.seen.clear();
    send("mousedown", 2, 2);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(mControl.seen.empty());
    send("mousedown", 2, 2);
    EXPECT_EQ(mControl.count("mousedown"), 1);
}

TEST_F(RootMenu, ReportsTheChosenRowToItsOwner)
{
    release(30, 17);
    EXPECT_EQ(mControl.last.action, "context.x");
    EXPECT_FALSE(isOpen());
}

TEST_F(RootMenu, OpensAgainForAnotherTwoReleases)
{
    send("mouseup", 2, 2);
    mControl.setContext(&mMenu);
    send("mouseup", 2, 2);
    EXPECT_TRUE(isOpen());
}

TEST_F(RootMenu, StaysInsideTheWindowWithItsSubmenus)
{
    Context menu;
    Context* submenu = &menu;
    for (int depth = 0; depth < 3; ++depth, submenu = submenu->addOption("more", ""))
        submenu->setFixedWidth(15.0f);
    auto& second = dynamic_cast<Context&>(*menu.getChild(0));
    auto& third = dynamic_cast<Context&>(*second.getChild(0));
    third.addOption("even more", "");
    menu.setPosition(Vector2f(60, 40));
    mControl.setContext(&menu);
    EXPECT_EQ(text(menu.getArea()), "49 28 64 48");

    send("mousemove", 52, 36);
    send("mousemove", 36, 36);
    EXPECT_EQ(text(second.getAreaWorld()), "33 28 48 48") << "no room at the right";
    EXPECT_EQ(text(third.getAreaWorld()), "49 13 64 48") << "room again, but not below";
    mControl.resetContext();
}

TEST_F(RootMenu, TakesTheColoursOfTheStyleDocument)
{
    write("style.xml", "<vellum><context><color name='back.color' first='00ff00' second='00ff00'/>"
                       "</context></vellum>");
    load("<vellum><workspace id='workspace' font='sheet.png' style='style.xml'/></vellum>");
    mControl.setContext(&mMenu);
    EXPECT_EQ(pixelAt(frame(), 22, 12), 0x00ff00u);
}

TEST_F(RootMenu, ClosesWhenTheGuiIsHidden)
{
    workspace().setVisible(false);
    workspace().setVisible(true);
    EXPECT_FALSE(isOpen());
}

TEST_F(RootMenu, LetsEventsThroughToAMenuBar)
{
    mControl.setType("menubar");
    send("mousemove", 2, 2);
    send("mousedown", 2, 2);
    EXPECT_EQ(mControl.count("mousemove"), 1);
    EXPECT_EQ(mControl.count("mousedown"), 1);
}

TEST_F(RootMenu, OutlivesTheGuiThatItsChoiceDestroys)
{
    mControl.onEvent = [this](Event& event) {
        if (event.type == "context")
            mVellum.reset();
    };
    display::MouseMoveEvent move;
    move.mousePos = Vector2f(30, 17);
    mVellum->onMouseMove(move);
    display::MouseButtonEvent button;
    button.mousePos = Vector2f(30, 17);
    EXPECT_EQ(mVellum->onMouseUp(button), 0);
    EXPECT_EQ(mVellum, nullptr);
}

TEST_F(RootTest, DrawsRulerColorsAndGraphInThreeArraysWithoutAllocating)
{
    loadFont();
    const auto add = [&](Control* control, Area area) {
        mVellum->addControl(control);
        control->setArea(area);
    };
    auto* stat = new Stat;
    add(new Ruler, Area(0, 0, 64, 26));
    add(new ColorChooser, Area(24, 26, 64, 48));
    add(stat, Area(0, 26, 24, 48));
    stat->setInterval(0.0f);
    const auto draw = [&] {
        stat->addValue(1.0f);
        mVellum->onDraw();
        display::DisplayObsolete::flush();
    };

    zavex::test::drawFrame(mDisplay, [&] {
        for (int i = 0; i < 4; ++i)
            draw(); // the driver prepares for states that it has not met
        const unsigned long before = display::Immediate::live().drawnArrays();
        const zavex::test::AllocationCounter counter;
        draw();
        EXPECT_EQ(counter.count(), 0u);
        EXPECT_EQ(display::Immediate::live().drawnArrays() - before, 3u)
            << "shapes and texts, lines inside the graph, lines that leave it";
    });
}

} // namespace

} // namespace zavex::vellum::test
