#include "vellum/probe.h"
#include "vellum/vel_slider.h"

#include <gtest/gtest.h>

#include <vector>

namespace zavex::vellum::test {

namespace {

/** A slider with ten pixels around it, in a tree whose observer hears of it. */
struct SliderTree {
    explicit SliderTree(const std::string& attributes = "size='10'")
    {
        root.addControl(slider);
        loadFrom(*slider, "<vellum><slider " + attributes + "/></vellum>");
        const bool wide = attributes.find("horisontal") != std::string::npos;
        slider->setMaximized(false);
        slider->setArea(wide ? Area(10, 10, 122, 26) : Area(10, 10, 26, 122));
        root.setCallback(&observer);
    }

    Root root{Area(0, 0, 200, 200)};
    Observer observer;
    Slider* slider = new Slider;
};

struct GestureStep {
    const char* type;
    Vector2f position;
    float value; // afterwards, in 0..1
};

// The track is 110 pixels long; a vertical handle at 0 covers the rows 111 to 121.
// clang-format off
const struct GestureCase {
    const char* name;
    const char* attributes;
    std::vector<GestureStep> steps;
    std::size_t reports;
} GESTURE_CASES[] = {
    {"UpFromTheBottom", "size='10'", {{"mousedown", {18, 115}, 0.0f}, {"mousemove", {18, 65}, 0.5f}, {"mouseup", {18, 65}, 0.5f}}, 1},
    {"OnBeyondTheTopAndSideways", "size='10'", {{"mousedown", {18, 115}, 0.0f}, {"mousemove", {150, 1}, 1.0f}, {"mousemove", {150, 3}, 1.0f}}, 1},
    {"NotAfterTheRelease", "size='10'", {{"mousedown", {18, 115}, 0.0f}, {"mouseup", {18, 115}, 0.0f}, {"mousemove", {18, 60}, 0.0f}}, 0},
    {"PressBesideBringsTheMiddle", "size='10'", {{"mousedown", {18, 66}, 0.5f}, {"mousemove", {18, 16}, 1.0f}}, 2},
    {"ToTheRight", "size='10' direction='horisontal'", {{"mousedown", {13, 18}, 0.0f}, {"mousemove", {63, 190}, 0.5f}}, 1},
};
// clang-format on

TEST(SliderGesture, MovesTheHandle)
{
    for (const GestureCase& row : GESTURE_CASES) {
        SCOPED_TRACE(row.name);
        SliderTree tree(row.attributes);
        for (const GestureStep& step : row.steps) {
            send(tree.root, step.type, step.position);
            EXPECT_NEAR(tree.slider->getValue(true), step.value, 1e-4f) << step.type;
        }
        ASSERT_EQ(tree.observer.heard.size(), row.reports);
        for (const Observer::Heard& heard : tree.observer.heard)
            EXPECT_EQ(heard.action, ACTION_SLIDER_CHANGED);
    }
}

constexpr struct LoadCase {
    const char* name;
    const char* attributes;
    float value; // between the bounds
    float unit;
} LOAD_CASES[] = {
    {"Nothing",         "",                                0.0f, 0.0f },
    {"PercentOfBounds", "min='-10' max='30' percent='25'", 0.0f, 0.25f},
    {"BoundsReversed",  "min='30' max='-10' percent='25'", 0.0f, 0.25f},
    {"BoundsEqual",     "min='7' max='7' percent='50'",    7.0f, 0.5f },
    {"PercentTooLarge", "max='4' percent='1000'",          4.0f, 1.0f },
    {"PercentNegative", "max='4' percent='-1'",            0.0f, 0.0f },
    {"NotNumbers",      "min='a' max='' percent='nan'",    0.0f, 0.0f },
    {"BoundTooHuge",    "max='1e30' percent='100'",        1e9f, 1.0f },
};

TEST(SliderLoad, GivesAValue)
{
    for (const LoadCase& row : LOAD_CASES) {
        SCOPED_TRACE(row.name);
        const SliderTree tree(row.attributes);
        EXPECT_FLOAT_EQ(tree.slider->getValue(false), row.value);
        EXPECT_FLOAT_EQ(tree.slider->getValue(true), row.unit);
    }
}

TEST(Slider, IsSteppedByKeysWhenFocusedAndByTheWheelWhenPointedAt)
{
    SliderTree tree;
    pressKey(tree.root, display::KEY_UP);
    EXPECT_FLOAT_EQ(tree.slider->getValue(true), 0.05f);
    pressKey(tree.root, display::KEY_END);
    pressKey(tree.root, display::KEY_PAGEDOWN);
    EXPECT_FLOAT_EQ(tree.slider->getValue(true), 0.8f);
    EXPECT_EQ(pressKey(tree.root, display::KEY_F1), 0) << "left to others";

    Event wheel = eventAt("mousewheel", {18, 60});
    wheel.mouseDeltaWheel = -2.0f;
    EXPECT_EQ(tree.root.handleEvent(wheel), 1) << "nothing around it turns";
    EXPECT_FLOAT_EQ(tree.slider->getValue(true), 0.7f);

    tree.root.clearFocus();
    pressKey(tree.root, display::KEY_HOME);
    EXPECT_FLOAT_EQ(tree.slider->getValue(true), 0.7f);
}

} // namespace

} // namespace zavex::vellum::test
