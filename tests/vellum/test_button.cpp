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
        root.setCallback(&observer);
        reset();
    }

    void reset()
    {
        root.deleteControls();
        root.addControl(button = new Button);
        button->setArea(Area(10, 20, 50, 40));
        button->setCaption("ok");
        observer.heard.clear();
    }

    std::string actions() const
    {
        std::string letters;
        for (const Observer::Heard& each : observer.heard)
            letters += each.action == ACTION_BUTTON_PRESSED ? "P" : "R";
        return letters;
    }

    Observer observer;
    Root root;
    Button* button = nullptr;
    Mouse mouse{root};
};

constexpr struct ClickCase {
    const char* name;
    Vector2f press;
    Vector2f release;
    const char* push;   // actions of a push button
    const char* toggle; // actions of a toggle button
} CLICK_CASES[] = {
    {"Over",                       {30.0f, 30.0f}, {30.0f, 30.0f},  "PR", "P"},
    {"TopLeftCornerBelongs",       {10.0f, 20.0f}, {10.0f, 20.0f},  "PR", "P"},
    {"LastPixelBelongs",           {49.0f, 39.0f}, {49.0f, 39.0f},  "PR", "P"},
    {"RightEdgeDoesNot",           {50.0f, 30.0f}, {50.0f, 30.0f},  "",   "" },
    {"BottomEdgeDoesNot",          {30.0f, 40.0f}, {30.0f, 40.0f},  "",   "" },
    {"ReleasedOutside",            {30.0f, 30.0f}, {150.0f, 90.0f}, "P",  "" },
    {"PressedOutsideReleasedOver", {60.0f, 30.0f}, {30.0f, 30.0f},  "",   "" },
};

TEST_F(ButtonTest, ClickReportsWhatHappened)
{
    for (const ClickCase& row : CLICK_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        for (const bool toggle : {false, true}) {
            observer.heard.clear();
            button->setToggleMode(toggle);
            mouse.drag(row.press, row.release);
            mouse.release();
            EXPECT_EQ(actions(), toggle ? row.toggle : row.push);
        }
    }
}

TEST_F(ButtonTest, AToggleButtonAlternates)
{
    button->setToggleMode(true);
    for (const bool on : {true, false, true}) {
        mouse.click(Vector2f(30, 30));
        EXPECT_EQ(button->getToggled(), on);
    }
    EXPECT_EQ(actions(), "PRP");
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

TEST_F(ButtonTest, IsFramedWhileItHasTheFocusIfItsStyleSays)
{
    for (const char* const style : {"", "<color name='caption.border' first='38d6ff'/>"}) {
        loadFrom(*button, std::string("<vellum><button>") + style + "</button></vellum>");
        for (const bool focused : {true, false}) {
            focused ? button->setFocus(nullptr) : root.clearFocus();
            root.render.clear();
            button->draw(button->getArea(), root.getArea(), button->getArea());
            EXPECT_EQ(root.render.borders.size(), focused && *style ? 1u : 0u) << style;
        }
    }
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
