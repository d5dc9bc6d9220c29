#include "cadenza/cad_plugin_color.h"
#include "cadenza/plugin_body.h"
#include "mathbase/near.h"
#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_button.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_container.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace zavex::cadenza {
namespace {

using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;
using test::isNear;
using vellum::test::Area;

/** What a script holds for keys given as "time:red,green,blue". */
std::string script(const std::string& keys)
{
    std::string body;
    std::istringstream in(keys);
    for (std::string time, r, g, b; std::getline(in, time, ':');) {
        std::getline(in, r, ',');
        std::getline(in, g, ',');
        std::getline(in, b, ' ');
        body += "<key time=\"" + time + "\" r=\"" + r + "\" g=\"" + g + "\" b=\"" + b + "\"/>";
    }
    return body;
}

constexpr struct {
    const char* name;
    const char* keys;
    float time; // seconds
    Vector3f expected;
} COLOR_CASES[] = {
    {"NoKeysAreBlack",    "",                          5.0f, {0, 0, 0}      },
    {"BeforeTheFirstKey", "0.2:1,0,0 0.8:0,0,1",       0.5f, {1, 0, 0}      },
    {"BetweenTheKeys",    "0.2:1,0,0 0.8:0,0,1",       5.0f, {0.5f, 0, 0.5f}},
    {"IsSmooth",          "0:0,0,0 0.5:1,0,0 1:0,0,0", 2.5f, {0.625f, 0, 0} },
    {"AfterTheLastKey",   "0.2:1,0,0 0.8:0,0,1",       9.5f, {0, 0, 1}      },
    {"IsNotClamped",      "0:1.5,-1,2",                1.0f, {1.5f, -1, 2}  },
    {"NoNumbersAreZero",  "0.2:red,1, 0.8:x,1,blue",   5.0f, {0, 1, 0}      },
};

TEST(ColorPlugin, SpansTheEffect)
{
    for (const auto& [name, keys, time, expected] : COLOR_CASES) {
        SCOPED_TRACE(name);
        Color color;
        test::loadBody(color, script(keys));
        color.setupControl(100.0f); // of an effect of ten seconds
        EXPECT_TRUE(isNear(color.get(time), expected));
    }
}

const Vector4f HOVERED(0, 1, 0, 1);
const Vector4f RECOLOURED(0, 0, 1, 1);

/**
 * A screen with the picker at (0, 100), its field 120 x 100 pixels, and two lanes of 200 x 30
 * pixels: at (50, 40) and (50, 70).
 */
struct LaneTest : testing::Test {
    LaneTest()
    {
        styles.parse("<vellum><color>"
                     "<color name='caption.color' first='ff0000'/>"
                     "<color name='caption.highlight' first='00ff00' second='0000ff'/>"
                     "</color></vellum>");
        screen.loadStyle(&styles);
        bar->setArea(Area(50, 40, 250, 100));
        screen.addControl(bar);
        bar->addControl(&other);
        other.setArea(Area(0, 30, 0, 60));
        screen.addControl(window);
        window->setName("picker_window");
        window->setArea(Area(0, 100, 136, 220));
        window->addControl(picker);
        picker->setName("picker");
        picker->setArea(Area(0, 0, 136, 100));
        window->addControl(ok);
        ok->setName("picker_ok");
        ok->setArea(Area(0, 100, 136, 120));
        window->setVisible(false);
        other.setupControl(200.0f);
        reset();
    }

    /** Puts an upper lane without keys in the place of the one before. */
    void reset()
    {
        color = std::make_unique<Color>();
        bar->addControl(color.get());
        color->setArea(Area(0, 0, 0, 30));
        color->setupControl(200.0f);
    }

    void draw()
    {
        screen.render.clear();
        screen.draw();
    }

    /** Draws, and returns the key of the upper lane whose inner circle has that colour; or -1. */
    int keyIn(const Vector4f& wanted)
    {
        screen.render.clear();
        color->draw(color->getAreaWorld(), Area(0, 0, 0, 0), color->getAreaWorld());
        const auto& colors = screen.render.circleColors;
        for (std::size_t i = 1; i < colors.size(); i += 2)
            if (colors[i] == wanted)
                return static_cast<int>(i / 2);
        return -1;
    }

    void load(const std::string& keys) { test::loadBody(*color, script(keys)); }

    /** Moves to a point of the upper lane. */
    void moveTo(Vector2f point) { mouse.moveTo(Vector2f(50, 40) + point); }

    /** Opens the menu at a point of the upper lane and chooses a row. */
    void choose(Vector2f point, int row)
    {
        moveTo(point);
        mouse.press(display::MOUSE_RIGHT);
        mouse.release(display::MOUSE_RIGHT);
        ASSERT_TRUE(screen.getOpen());
        EXPECT_EQ(screen.getOpen()->getArea().mMin, Vector2f(50, 40) + point);
        mouse.click(Vector2f(56, 50) + point + Vector2f(0.0f, 15.0f * static_cast<float>(row)));
    }

    /** Clicks into the picker's field, `distance` pixels from its left edge. */
    void pick(float distance) { mouse.click(Vector2f(distance, 100)); }

    xml::XmlParser styles;
    vellum::test::Screen screen;
    vellum::test::Mouse mouse{screen};
    vellum::Container* bar = new vellum::Container; // owned by the screen, like all that follow
    vellum::Container* window = new vellum::Container;
    vellum::ColorChooser* picker = new vellum::ColorChooser;
    vellum::Button* ok = new vellum::Button;
    std::unique_ptr<Color> color;
    Color other;
};

TEST_F(LaneTest, MarksTheLastKeyUnderThePointer)
{
    // Keys at (100, 22.5) and (106, 22.5), each with a square of 12 pixels.
    constexpr struct {
        Vector2f point;
        int expected;
    } CASES[] = {
        {{103.0f, 22.0f}, 1 }, // both
        {{94.0f, 22.0f},  0 }, // the left edge
        {{112.0f, 22.0f}, -1}, // the right edge
        {{97.0f, 16.5f},  0 }, // the top edge
        {{97.0f, 28.5f},  -1}, // the bottom edge
        {{97.0f, 40.0f},  -1}, // in the other lane
    };
    load("0.5:1,1,1 0.53:1,1,1");
    for (const auto& [point, expected] : CASES) {
        SCOPED_TRACE(testing::Message() << point.x << ", " << point.y);
        moveTo(point);
        EXPECT_EQ(keyIn(HOVERED), expected);
    }
}

const struct DragCase {
    const char* name;
    std::vector<float> moves; // x in the lane, with the key at 100
    const char* keys;         // afterwards
    int dragged;
} DRAG_CASES[] = {
    {"BetweenItsNeighbours", {120},      "0.2:1,0,0 0.6:0,1,0 0.8:0,0,1",  1},
    {"NotToTheStart",        {0},        "0.2:1,0,0 0.5:0,1,0 0.8:0,0,1",  1},
    {"BackFromBeyondAnEnd",  {-20, 90},  "0.2:1,0,0 0.45:0,1,0 0.8:0,0,1", 1},
    {"PastTheRightOne",      {164},      "0.2:1,0,0 0.8:0,0,1 0.82:0,1,0", 2},
    {"GoesOnWithTheRight",   {164, 180}, "0.2:1,0,0 0.82:0,1,0 0.9:0,0,1", 2},
};

TEST_F(LaneTest, DragMovesTheKeyUntilTheRelease)
{
    for (const DragCase& row : DRAG_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        load("0.2:1,0,0 0.5:0,1,0 0.8:0,0,1");
        moveTo({100, 22});
        mouse.press();
        for (const float x : row.moves)
            moveTo({x, 200}); // far below, over nothing
        EXPECT_EQ(keyIn(HOVERED), row.dragged);
        mouse.release();
        moveTo({70, 22});
        EXPECT_EQ(test::savedBody(*color), script(row.keys));
    }
}

// clang-format off
constexpr struct MenuCase {
    const char* name;
    const char* keys;
    float x; // of the right press in the lane
    int row;
    const char* expected;
} MENU_CASES[] = {
    {"AddsTheFirstInBlack",   "",                        100, 0, "0.5:0,0,0"},
    {"AddsWithoutAChange",    "0:0.2,0.2,0.2 1:1,0,0.6", 100, 0, "0:0.2,0.2,0.2 0.5:0.6,0.1,0.4 1:1,0,0.6"},
    {"DeletesTheKey",         "0.5:1,0,0 0.8:0,0,1",     100, 1, "0.8:0,0,1"},
    {"EditingChangesNothing", "0.5:1,0,0",               100, 0, "0.5:1,0,0"},
};
// clang-format on

TEST_F(LaneTest, MenuAddsAndDeletesWhereItWasOpened)
{
    for (const MenuCase& sample : MENU_CASES) {
        SCOPED_TRACE(sample.name);
        reset();
        load(sample.keys);
        choose({sample.x, 22}, sample.row);
        EXPECT_EQ(test::savedBody(*color), script(sample.expected));
        moveTo({10, 10});
        color->setupControl(0.0f);
        for (const char* futile : {"context.delete", "context.edit", "context.add"}) {
            vellum::Event event;
            event.type = "context";
            event.action = futile;
            color->handleEvent(event);
        }
        EXPECT_EQ(test::savedBody(*color), script(sample.expected));
    }
}

TEST_F(LaneTest, RecoloursTheKeyUntilThePickerIsClosed)
{
    load("0:1,1,1 0.5:1,1,1 1:1,1,1");
    mouse.doubleClick({150, 62});
    EXPECT_TRUE(window->getVisible());
    EXPECT_EQ(keyIn(RECOLOURED), 1);
    EXPECT_EQ(test::savedBody(*color), script("0:1,1,1 0.5:1,1,1 1:1,1,1"));

    pick(60); // cyan, from the second frame on
    draw();
    draw();
    EXPECT_EQ(test::savedBody(*color), script("0:1,1,1 0.5:0,1,1 1:1,1,1"));
    Color restarted;
    test::loadBody(restarted, test::savedBody(*color));
    restarted.setupControl(200.0f);
    EXPECT_TRUE(isNear(color->get(3.0f), restarted.get(3.0f)));

    pick(80); // green
    draw();
    mouse.click({60, 210}); // the button
    pick(100);
    draw();
    draw();
    EXPECT_EQ(test::savedBody(*color), script("0:1,1,1 0.5:0,1,0 1:1,1,1"));
    EXPECT_EQ(keyIn(RECOLOURED), -1);

    mouse.doubleClick({50, 62});
    draw();
    EXPECT_EQ(test::savedBody(*color), script("0:1,1,1 0.5:0,1,0 1:1,1,1"));
}

TEST_F(LaneTest, GivesThePickerToTheLaneThatOpenedItLast)
{
    load("0.5:1,1,1");
    test::loadBody(other, script("0.5:1,1,1"));
    mouse.doubleClick({150, 62});
    pick(60);
    mouse.doubleClick({150, 92});
    draw();
    pick(80);
    draw();
    draw();
    EXPECT_EQ(test::savedBody(other), script("0.5:0,1,0"));
    EXPECT_EQ(test::savedBody(*color), script("0.5:0,0,0")) << "as of the last frame it saw";
}

TEST_F(LaneTest, RecoloursTheSameKeyWhenOthersComeAndGo)
{
    load("0.2:1,1,1 0.5:1,1,1");
    choose({100, 22}, 0);
    choose({40, 22}, 1);
    EXPECT_EQ(keyIn(RECOLOURED), 0);
    choose({20, 22}, 0);
    EXPECT_EQ(keyIn(RECOLOURED), 1);
    choose({100, 22}, 1);
    EXPECT_EQ(keyIn(RECOLOURED), -1);
    pick(60);
    EXPECT_EQ(test::savedBody(*color), script("0.1:1,1,1"));
}

TEST_F(LaneTest, MayGoBeforeThePickerOrAfterIt)
{
    load("0.5:1,1,1");
    mouse.doubleClick({150, 62});
    color.reset();
    pick(60);
    mouse.click({60, 210});
    draw();

    color = std::make_unique<Color>();
    test::loadBody(other, script("0.5:1,1,1"));
    mouse.doubleClick({150, 92});
    delete window;
    mouse.doubleClick({150, 92});
    other.setupControl(200.0f);
    draw();
    EXPECT_EQ(test::savedBody(other), script("0.5:1,1,1"));
}

TEST_F(LaneTest, DrawsWhatTheClipShowsOfAnyGradient)
{
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN();
    constexpr float ENDLESS = std::numeric_limits<float>::infinity();
    constexpr const char* TWO = "0:1,0,0 1:0,0,1";
    constexpr const char* WILD = "nan:nan,inf,1e38 0.5:nan,0,0 -inf:0,0,0 1e38:1,1,1 2:1,1,1";
    constexpr struct {
        const char* keys;
        Area area;
        Area clip;
        std::size_t swatches;
        float first; // left edge of the first swatch
        std::size_t markers;
    } CASES[] = {
        {TWO,  {0, 0, 100, 30},       {0, 0, 100, 30}, 15, 0,  2},
        {TWO,  {10, 0, 110, 30},      {10, 0, 25, 30}, 3,  10, 1},
        {TWO,  {-50.5f, 0, 1e6f, 30}, {0, 0, 21, 30},  4,  -1, 0},
        {TWO,  {0, 0, 1000, 30},      {12, 0, 14, 30}, 0,  0,  0}, // between two swatches
        {TWO,  {10, 0, 10, 30},       {10, 0, 10, 30}, 0,  0,  2},
        {TWO,  {90, 0, 10, 30},       {10, 0, 90, 30}, 0,  0,  2}, // backwards
        {TWO,  {0, 0, ENDLESS, 30},   {0, 0, 100, 30}, 15, 0,  0},
        {TWO,  {0, 0, NONE, 30},      {0, 0, 100, 30}, 0,  0,  0},
        {WILD, {0, 0, 100, 30},       {0, 0, 100, 30}, 15, 0,  1},
    };
    for (const auto& [keys, area, clip, swatches, first, markers] : CASES) {
        SCOPED_TRACE(keys + (" in " + vellum::test::text(area)));
        Color lane;
        test::loadBody(lane, script(keys));
        lane.setParent(&screen);
        screen.render.clear();
        lane.draw(area, Area(0, 0, 0, 0), clip);
        EXPECT_EQ(screen.render.boxes.size(), swatches);
        if (!screen.render.boxes.empty()) {
            EXPECT_EQ(screen.render.boxes[0], Area(first, 15, first + 5, 30));
        }
        EXPECT_EQ(screen.render.circles.size(), 2 * markers);
    }
}

} // namespace
} // namespace zavex::cadenza
