#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_button.h"

#include <gtest/gtest.h>

namespace zavex::vellum::test {

namespace {

/** A button 40 x 20 at (10, 20); its actions are noted as "P" for pressed and "R" for released. */
struct ButtonTest : testing::Test {
    ButtonTest()
    {
        root.addControl(button);
        button->setArea(Area(10, 20, 50, 40));
        button->setCaption("ok");
        root.setCallback(&observer);
    }

    std::string actions() const
    {
        std::string letters;
        for (const Observer::Heard& each : observer.heard)
            letters += each.action == ACTION_BUTTON_PRESSED ? "P" : "R";
        return letters;
    }

    void draw(Area clip)
    {
        root.render.boxes.clear();
        root.render.boxColors.clear();
        root.render.texts.clear();
        button->draw(button->getArea(), root.getArea(), clip);
    }

    Observer observer;
    Root root;
    Button* button = new Button;
    Mouse mouse{root};
};

struct ClickCase {
    const char* name;
    Vector2f press;
    Vector2f release;
    const char* push;   // actions of a push button
    const char* toggle; // actions of a toggle button

    friend void PrintTo(const ClickCase& click, std::ostream* out) { *out << click.name; }
};

constexpr ClickCase CLICK_CASES[] = {
    {"Over",                       {30.0f, 30.0f}, {30.0f, 30.0f},  "PR", "P"},
    {"TopLeftCornerBelongs",       {10.0f, 20.0f}, {10.0f, 20.0f},  "PR", "P"},
    {"LastPixelBelongs",           {49.0f, 39.0f}, {49.0f, 39.0f},  "PR", "P"},
    {"RightEdgeDoesNot",           {50.0f, 30.0f}, {50.0f, 30.0f},  "",   "" },
    {"BottomEdgeDoesNot",          {30.0f, 40.0f}, {30.0f, 40.0f},  "",   "" },
    {"LeftOf",                     {9.0f, 30.0f},  {9.0f, 30.0f},   "",   "" },
    {"ReleasedOutside",            {30.0f, 30.0f}, {150.0f, 90.0f}, "P",  "" },
    {"ReleasedOnTheRightEdge",     {30.0f, 30.0f}, {50.0f, 30.0f},  "P",  "" },
    {"PressedOutsideReleasedOver", {60.0f, 30.0f}, {30.0f, 30.0f},  "",   "" },
};

class ButtonClick : public ButtonTest, public testing::WithParamInterface<ClickCase> {};

TEST_P(ButtonClick, ReportsWhatHappened)
{
    for (const bool toggle : {false, true}) {
        observer.heard.clear();
        button->setToggleMode(toggle);
        mouse.drag(GetParam().press, GetParam().release);
        mouse.release();
        EXPECT_EQ(actions(), toggle ? GetParam().toggle : GetParam().push);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, ButtonClick, testing::ValuesIn(CLICK_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ButtonTest, AToggleButtonAlternates)
{
    button->setToggleMode(true);
    for (const bool on : {true, false, true}) {
        mouse.click(Vector2f(30, 30));
        EXPECT_EQ(button->getToggled(), on);
    }
    EXPECT_EQ(actions(), "PRP");
}

TEST_F(ButtonTest, TheReleaseOutsideEndsThePress)
{
    mouse.drag(Vector2f(30, 30), Vector2f(150, 90));
    mouse.release();
    mouse.moveTo(Vector2f(30, 30));
    mouse.release();
    EXPECT_EQ(actions(), "P");
}

TEST_F(ButtonTest, IgnoresOtherButtonsAndPressesWhileInactiveOrHidden)
{
    mouse.moveTo(Vector2f(30, 30));
    mouse.press(display::MOUSE_RIGHT);
    mouse.release(display::MOUSE_RIGHT);
    button->setInactive(true);
    mouse.click(Vector2f(30, 30));
    button->setInactive(false);
    button->setVisible(false);
    mouse.click(Vector2f(30, 30));
    EXPECT_EQ(actions(), "");
}

TEST_F(ButtonTest, LetsGoWhenAnObserverHidesIt)
{
    observer.onAction = [this] { button->setVisible(false); };
    mouse.moveTo({30.0f, 30.0f});
    mouse.press();
    button->setVisible(true);
    mouse.moveTo({150.0f, 90.0f});
    Event elsewhere = eventAt("mousedown", {150.0f, 90.0f});
    EXPECT_FALSE(button->acceptEvents(elsewhere));
}

TEST_F(ButtonTest, AnObserverMayDeleteIt)
{
    observer.onAction = [this] { root.deleteControls(); };
    mouse.click(Vector2f(30, 30));
    EXPECT_EQ(actions(), "P");
}

struct FaceCase {
    const char* name;
    bool on;
    bool inactive;
    bool over;
    bool held;
    float green; // of the upper end of the face
    const char* face;
    Vector2f caption;

    friend void PrintTo(const FaceCase& face, std::ostream* out) { *out << face.name; }
};

constexpr FaceCase FACE_CASES[] = {
    {"Normal",          false, false, false, false, 1.0f,   "11 21 49 39", {30.0f, 30.0f}},
    {"Hovered",         false, false, true,  false, 0.96f,  "11 21 49 39", {30.0f, 30.0f}},
    {"Held",            false, false, true,  true,  0.873f, "13 23 49 39", {32.0f, 32.0f}},
    {"HeldButOutside",  false, false, false, true,  1.0f,   "11 21 49 39", {30.0f, 30.0f}},
    {"On",              true,  false, false, false, 0.873f, "13 23 49 39", {32.0f, 32.0f}},
    {"OnAndHovered",    true,  false, true,  false, 0.873f, "13 23 49 39", {32.0f, 32.0f}},
    {"InactiveHovered", false, true,  true,  false, 1.0f,   "11 21 49 39", {30.0f, 30.0f}},
};

struct ButtonFace : ButtonTest, testing::WithParamInterface<FaceCase> {
    void reachState()
    {
        button->setToggleMode(GetParam().on);
        if (GetParam().on)
            mouse.click(Vector2f(30, 30));
        button->setInactive(GetParam().inactive);
        mouse.moveTo(Vector2f(30, 30));
        if (GetParam().held)
            mouse.press();
        if (!GetParam().over)
            mouse.moveTo(Vector2f(100, 30));
    }
};

TEST_P(ButtonFace, ShowsTheState)
{
    reachState();
    draw(Area(10, 20, 50, 40));
    ASSERT_EQ(root.render.boxes.size(), 2u);
    EXPECT_EQ(text(root.render.boxes[1]), GetParam().face);
    EXPECT_NEAR(root.render.boxColors[1].y, GetParam().green, 1e-6f);
    ASSERT_EQ(root.render.texts.size(), 1u);
    EXPECT_EQ(root.render.texts[0].position, GetParam().caption);
    EXPECT_EQ(root.render.texts[0].align, 2);
    EXPECT_EQ(root.render.texts[0].color.w, GetParam().inactive ? 0.0f : 1.0f)
        << "without a style the inactive text has no colour";
}

INSTANTIATE_TEST_SUITE_P(Cases, ButtonFace, testing::ValuesIn(FACE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(ButtonTest, TheFrameRunsAroundTheVisiblePart)
{
    draw(Area(10, 30, 40, 40));
    ASSERT_EQ(root.render.boxes.size(), 2u);
    EXPECT_EQ(text(root.render.boxes[0]), "10 30 40 40");
    EXPECT_EQ(text(root.render.boxes[1]), "11 31 39 39");
    EXPECT_EQ(root.render.texts[0].position, Vector2f(30, 30));
    draw(Area(10, 38, 40, 40));
    EXPECT_EQ(root.render.boxes.size(), 1u) << "no room inside the frame";
    EXPECT_TRUE(root.render.texts.empty());
}

TEST_F(ButtonTest, ReadsItsAttributes)
{
    loadFrom(*button, "<vellum><button caption='go' toggled='true'>"
                      "<area x='10' y='20' w='40' h='20'/></button></vellum>");
    EXPECT_EQ(button->getCaption(), "go");
    mouse.click(Vector2f(30, 30));
    EXPECT_TRUE(button->getToggled());
}

} // namespace

} // namespace zavex::vellum::test
