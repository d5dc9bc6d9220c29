#include "vellum/folder_test.h"
#include "vellum/probe.h"
#include "vellum/vel_context.h"
#include "vellum/vel_vellum.h"

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>

namespace zavex::vellum::test {

using mathbase::Vector4f;
using zavex::test::Picture;
using zavex::test::pixelAt;
using zavex::test::thrownMessage;

namespace {

constexpr unsigned RED = 0xff0000;

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

class RootTest : public FolderTest {
protected:
    RootTest()
    {
        writePicture("sheet.png", 256, 256, [](int, int) { return ~0u; });
        mVellum = std::make_unique<PannedVellum>(&mDisplay);
    }

    /** Loads a layout that holds `text`. */
    void load(const std::string& text)
    {
        mFolder.write("layout.xml", text);
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

    std::unique_ptr<PannedVellum> mVellum;
};

/** World position, button, key, character, double click, Shift, move, wheel turned and its place.
 */
std::string summary(const Event& event)
{
    std::ostringstream out;
    out << event.type << " " << event.mousePosWorld.x << " " << event.mousePosWorld.y << ": "
        << event.button << " " << event.key << " " << event.keyChar << " " << event.doubleClick
        << event.shift() << ", " << event.mouseDelta.x << " " << event.mouseDelta.y << ", "
        << event.mouseDeltaWheel << " " << event.mouseWheel;
    return out.str();
}

void press(display::DisplayGLFW& display)
{
    display.onMouseButton(GLFW_MOUSE_BUTTON_LEFT, GLFW_PRESS);
}

TEST_F(RootTest, SeedsTheRandomGeneratorWithTheTime)
{
    const std::time_t before = std::time(nullptr);
    const Vellum other(&mDisplay);
    const int drawn = std::rand();
    std::set<int> possible;
    for (std::time_t time = before; time <= std::time(nullptr); ++time) {
        std::srand(static_cast<unsigned>(time));
        possible.insert(std::rand());
    }
    EXPECT_TRUE(possible.contains(drawn));
}

TEST_F(RootTest, EventsCarryWhatTheDisplayReports)
{
    using Display = display::DisplayGLFW;
    // What the user does, one after the other, with the pointer at (16, 12), and what comes of it.
    // clang-format off
    constexpr struct {
        void (*act)(Display& display);
        const char* expected;
    } STEPS[] = {
        {press, "mousedown 16 12: 0 0 0 00, 0 0, 0 0"},
        {press, "mousedown 16 12: 0 0 0 10, 0 0, 0 0"},
        {[](Display& it) { it.onMouseButton(GLFW_MOUSE_BUTTON_RIGHT, GLFW_RELEASE); }, "mouseup 16 12: 1 0 0 00, 0 0, 0 0"},
        {[](Display& it) { it.onMouseWheel(-2.0f); }, "mousewheel 16 12: 0 0 0 00, 0 0, -2 -2"},
        {[](Display& it) { it.onKey(GLFW_KEY_TAB, GLFW_PRESS); }, "keydown 16 12: 0 9 0 00, 0 0, 0 -2"},
        {[](Display& it) { it.onChar(228, GLFW_PRESS); }, "keychardown 16 12: 0 0 228 00, 0 0, 0 -2"},
        {[](Display& it) { it.onChar(228, GLFW_RELEASE); }, "keycharup 16 12: 0 0 228 00, 0 0, 0 -2"},
        {[](Display& it) { it.onMouseMove(18.0f, 11.5f); }, "mousemove 18 11.5: 0 0 0 00, -2 0.5, 0 -2"},
        {[](Display& it) { it.onModifiers(GLFW_MOD_SHIFT); it.onKey(GLFW_KEY_TAB, GLFW_RELEASE); }, "keyup 18 11.5: 0 9 0 01, 0 0, 0 -2"},
    };
    // clang-format on
    Painted& control = addPainted(Area(0, 0, 64, 48));
    mDisplay.onMouseMove(16.0f, 12.0f);
    for (const auto& [act, expected] : STEPS) {
        act(mDisplay);
        EXPECT_EQ(summary(control.last), expected);
    }
}

TEST_F(RootTest, DropsMovesWithinAPixelAndAddsThePanToEveryPosition)
{
    Painted& control = addPainted(Area(0, 0, 64, 48));
    const std::pair<Vector2f, int> moves[] = {
  // and how many were heard of by then
        {{0.9f, 0.9f}, 0},
        {{5.0f, 5.0f}, 1},
        {{5.9f, 5.5f}, 1},
        {{5.9f, 6.0f}, 2}
    };
    for (const auto& [to, heard] : moves) {
        mDisplay.onMouseMove(to.x, to.y);
        EXPECT_EQ(control.count(Event::MOUSE_MOVE), heard) << "the pointer starts at (0, 0)";
    }
    mVellum->mPan = Vector2f(10, 20);
    mDisplay.onMouseMove(5.0f, 5.0f);
    press(mDisplay);
    EXPECT_EQ(summary(control.last), "mousedown 15 25: 0 0 0 00, 0 0, 0 0");

    mVellum->mPanOn = true;
    mDisplay.onMouseMove(8.0f, 9.0f); // a move of (-3, -4)
    EXPECT_EQ(mVellum->mPan, Vector2f(7, 16));
    EXPECT_EQ(summary(control.last), "mousemove 15 25: 0 0 0 00, -3 -4, 0 0");
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
    EXPECT_EQ(pixelAt(frame(), 10, 10), 0u);
}

TEST_F(RootTest, IsAsLargeAsTheWindow)
{
    EXPECT_EQ(text(workspace().getArea()), "0 0 64 48");
    mDisplay.onWindowSize(80, 40);
    EXPECT_EQ(text(workspace().getArea()), "0 0 80 40");
    loadFont();
    EXPECT_EQ(text(workspace().getArea()), "0 0 80 40");
}

TEST_F(RootTest, LoadsTheLayoutWithItsStyle)
{
    mFolder.write("style.xml",
                  "<vellum><container><child><flow id='styled'/></child></container></vellum>");
    load("<vellum><workspace id='screen' font='sheet.png' style='style.xml'><child>"
         "<container id='own'/></child></workspace></vellum>");
    EXPECT_EQ(mVellum->findControl("styled")->getParent(), mVellum->findControl("own"));
    EXPECT_EQ(mVellum->findControl("screen")->getRender().getFontHeight(), 16.0f);
}

TEST_F(RootTest, SaysWhatIsWrongWithALayoutAndDrawsOn)
{
    // clang-format off
    constexpr std::pair<const char*, const char*> CASES[] = { // and how the message begins
        {"", "layout.xml: (error at line 1, col 1)"},
        {"<vellum><workspace", "layout.xml: "},
        {"<gui><workspace font='none.png'/></gui>", "nothing was thrown"},
        {"<vellum><window/></vellum>", "nothing was thrown"},
        {"<vellum><workspace style='other.xml'/><workspace font='none.png'/></vellum>", "nothing was thrown"},
        {"<vellum><workspace style='broken.xml'/></vellum>", "broken.xml: "},
        {"<vellum><workspace/></vellum>", "Could not load font from 'fonthelvete2.png'"},
    };
    // clang-format on
    mFolder.write("other.xml", "<style><container/></style>");
    mFolder.write("broken.xml", "<vellum><container");
    addPainted(Area(10, 10, 20, 20));
    for (const auto& [layout, expected] : CASES) {
        SCOPED_TRACE(layout);
        const std::string message = thrownMessage([&] { load(layout); });
        EXPECT_TRUE(message.starts_with(expected)) << message;
        EXPECT_EQ(pixelAt(frame(), 10, 10), RED);
    }

    testing::internal::CaptureStdout();
    load("<vellum><workspace style='none.xml' font='none.png'/><workspace font='none.png'/>"
         "</vellum>");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Vellum::load: Warning: Style not found!\n");
    EXPECT_EQ(pixelAt(frame(), 10, 10), RED);

    for (am::ArchiveManager* archive : {&mArchive, static_cast<am::ArchiveManager*>(nullptr)}) {
        mDisplay.setArchive(archive);
        EXPECT_EQ(thrownMessage([this] { mVellum->load("none.xml"); }),
                  "Could not find the file 'none.xml'.");
    }
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

    send(workspace(), Event::MOUSE_MOVE, Vector2f(52, 36));
    send(workspace(), Event::MOUSE_MOVE, Vector2f(36, 36));
    EXPECT_EQ(text(second.getAreaWorld()), "33 28 48 48") << "no room at the right";
    EXPECT_EQ(text(third.getAreaWorld()), "49 13 64 48") << "room again, but not below";
    mControl.resetContext();
}

TEST_F(RootMenu, OutlivesTheGuiThatItsChoiceDestroys)
{
    mControl.onEvent = [this](Event& event) {
        if (event.type == Event::CONTEXT)
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

} // namespace

} // namespace zavex::vellum::test
