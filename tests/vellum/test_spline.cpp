#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_spline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <vector>

namespace zavex::vellum::test {

namespace {

using Curve = Spline::Curve;

const style::Color HOVERED(0.0f, 0.0f, 1.0f, 1.0f);
const style::Color DRAGGED(0.0f, 1.0f, 0.0f, 1.0f);
const style::Color SELECTED(1.0f, 0.0f, 0.0f, 1.0f);

/** A curve over 10 units of time in 200 x 100 pixels at (100, 50), on a real workspace. */
struct SplineTree {
    /** @param keys  "time:value" of every key. */
    explicit SplineTree(const std::string& keys, Curve::InterpolationMode mode = Curve::LINEAR)
        : curve(mode, true)
    {
        std::istringstream in(keys);
        char colon = 0;
        for (mathbase::SplineBaseKey<float> key; in >> key.time >> colon >> key.value;)
            curve.addKey(key);
        screen.addControl(spline);
        loadFrom(*spline, "<vellum><spline id='curve'><area x='100' y='50' w='200' h='100'/>"
                          "<color name='caption.highlight' first='0000ff'/>"
                          "<color name='caption.pushed' first='00ff00' second='ff0000'/>"
                          "</spline></vellum>");
        spline->setSpline(&curve, false);
        spline->setTimeInterval(0.0f, 10.0f);
        screen.setCallback(&observer);
        screen.setFocus(spline);
    }

    /** Draws, and returns the key that has that colour; -1 for none. */
    int keyIn(const style::Color& color)
    {
        draw();
        const auto& colors = screen.render.circleColors;
        const auto found = std::ranges::find(colors, color);
        return found == colors.end() ? -1 : static_cast<int>(found - colors.begin());
    }

    void draw()
    {
        screen.render.clear();
        screen.draw();
    }

    /** Moves along the open menu's rows and lets go over the last. */
    void choose(const std::vector<int>& rows)
    {
        Control* menu = screen.getOpen();
        Vector2f origin(0.0f, 0.0f);
        for (const int row : rows) {
            ASSERT_NE(menu, nullptr);
            origin += menu->getArea().mMin;
            mouse.moveTo(origin + Vector2f(6.0f, 10.0f + 15.0f * static_cast<float>(row)));
            menu = menu->getOrder(row);
        }
        mouse.release();
    }

    void openMenu(Vector2f at)
    {
        mouse.moveTo(at);
        mouse.press(display::MOUSE_RIGHT);
    }

    /** "time:value" of every key. */
    std::string keys() const
    {
        std::ostringstream out;
        for (int i = 0; i < curve.getNumKeys(); ++i)
            out << (i ? " " : "") << curve[i].time << ':' << curve[i].value;
        return out.str();
    }

    Curve curve;
    Screen screen;
    Observer observer;
    Mouse mouse{screen};
    Spline* spline = new Spline;
};

TEST(Spline, MapsTimesAndValuesBothWays)
{
    constexpr struct {
        float start;
        float end;
        Vector2f timeAndValue;
        Vector2f world;
    } CASES[] = {
        {0.0f, 10.0f, {5.0f, 0.5f},   {200.0f, 75.0f} },
        {0.0f, 10.0f, {0.0f, 1.0f},   {100.0f, 50.0f} },
        {0.0f, 10.0f, {10.0f, -1.0f}, {300.0f, 150.0f}},
        {2.0f, 4.0f,  {-1.0f, 0.0f},  {200.0f, 100.0f}}, // the start is added
        {0.0f, -4.0f, {-1.0f, 0.0f},  {150.0f, 100.0f}}, // backwards
        {3.0f, 3.0f,  {-3.0f, 0.0f},  {100.0f, 100.0f}}, // no time at all
    };
    SplineTree tree("");
    for (const auto& [start, end, timeAndValue, world] : CASES) {
        SCOPED_TRACE(testing::Message() << start << " to " << end);
        tree.spline->setTimeInterval(start, end);
        EXPECT_EQ(tree.spline->getWorldSpace(timeAndValue), world);
        EXPECT_EQ(tree.spline->getSplineSpace(world), timeAndValue);
    }
}

// Keys at (200, 75) and (203, 75); each reaches 4.5 pixels.
constexpr struct HitCase {
    const char* name;
    Vector2f point;
    int expected;
} HIT_CASES[] = {
    {"FirstOneWinsOnOverlap",  {202.0f, 75.0f}, 0 },
    {"LeftOfThePointerCounts", {204.5f, 75.0f}, 0 },
    {"RightOfThePointerNot",   {195.5f, 75.0f}, -1},
    {"JustInside",             {195.6f, 75.0f}, 0 },
    {"AboveThePointerCounts",  {200.0f, 79.5f}, 0 },
    {"BelowThePointerNot",     {200.0f, 70.5f}, -1},
};

TEST(SplineHit, MarksAndTakesTheKeyUnderThePointer)
{
    for (const HitCase& row : HIT_CASES) {
        SCOPED_TRACE(row.name);
        SplineTree tree("5:0.5 5.15:0.5");
        tree.mouse.moveTo(row.point);
        EXPECT_EQ(tree.keyIn(HOVERED), row.expected);

        tree.mouse.press();
        EXPECT_EQ(tree.keyIn(DRAGGED), row.expected);
        tree.mouse.release();
        EXPECT_EQ(tree.keyIn(SELECTED), row.expected);
        tree.mouse.moveTo(row.point);
        tree.mouse.moveTo({98.0f, 75.0f});
        EXPECT_EQ(tree.keyIn(HOVERED), -1) << "outside of the control";
    }
}

const struct DragCase {
    const char* name;
    std::vector<Vector2f> moves; // with the key at time 5
    const char* keys;            // afterwards
    int dragged;
} DRAG_CASES[] = {
    {"BetweenItsNeighbours", {{220, 100}},             "2:0 6:0 8:-0.5",      1},
    {"OntoTheNextsTime",     {{260, 100}},             "2:0 8:0 8:-0.5",      1},
    {"PastTheNext",          {{280, 100}},             "2:0 8:-0.5 9:0",      2},
    {"PastAllAndBack",       {{280, 100}, {110, 125}}, "0.5:-0.5 2:0 8:-0.5", 0},
    {"BeyondTheTopLeft",     {{0, 0}},                 "0:1 2:0 8:-0.5",      0},
    {"BeyondTheBottomRight", {{390, 290}},             "2:0 8:-0.5 10:-1",    2},
};

TEST(SplineDrag, CarriesTheKeyAlongUntilTheRelease)
{
    for (const DragCase& row : DRAG_CASES) {
        SCOPED_TRACE(row.name);
        SplineTree tree("2:0 5:0.5 8:-0.5");
        tree.mouse.moveTo({200.0f, 75.0f});
        tree.mouse.press();
        for (const Vector2f& point : row.moves)
            tree.mouse.moveTo(point);
        EXPECT_EQ(tree.keyIn(DRAGGED), row.dragged);
        tree.mouse.release();
        tree.mouse.moveTo({150.0f, 60.0f});

        EXPECT_EQ(tree.keys(), row.keys);
        EXPECT_EQ(tree.keyIn(SELECTED), row.dragged);
        ASSERT_EQ(tree.observer.heard.size(), row.moves.size());
        EXPECT_EQ(tree.observer.heard[0].control, tree.spline);
        EXPECT_EQ(tree.observer.heard[0].action, ACTION_SPLINE_CHANGED);
    }
}

TEST(Spline, MayBeDeletedByWhoHearsOfTheDrag)
{
    SplineTree tree("5:0.5");
    tree.observer.onAction = [&] { tree.screen.deleteControls(); };
    tree.mouse.drag({200.0f, 75.0f}, {220.0f, 75.0f});
    EXPECT_EQ(tree.screen.getChildCount(), 0);
}

struct KeyboardCase {
    const char* name;
    const char* keys;
    std::vector<display::Key> pressed;
    const char* expected;
    int selected;
};

constexpr display::Key LEFT = display::KEY_LEFT;
constexpr display::Key RIGHT = display::KEY_RIGHT;
constexpr display::Key DEL = display::KEY_DEL;
constexpr display::Key INSERT = display::KEY_INSERT;

const KeyboardCase KEYBOARD_CASES[] = {
    {"LeftStartsAtTheFirst",    "0:0 1:1",      {LEFT},                 "0:0 1:1",             0 },
    {"RightStopsAtTheLast",     "0:0 1:1",      {RIGHT, RIGHT, RIGHT},  "0:0 1:1",             1 },
    {"DeleteSelectsTheNext",    "0:0 1:1 2:0",  {RIGHT, DEL},           "1:1 2:0",             0 },
    {"DeleteTheLast",           "0:0 1:1",      {RIGHT, RIGHT, DEL},    "0:0",                 0 },
    {"DeleteTheOnlyOne",        "0:0",          {RIGHT, DEL},           "",                    -1},
    {"InsertHalfwayToTheNext",  "0:0 1:1",      {RIGHT, INSERT},        "0:0 0.5:0.5 1:1",     0 },
    {"InsertWithoutSelection",  "0:0 0.5:0.25", {INSERT},               "0:0 0.5:0.25 1:0.25", -1},
    {"InsertAfterTheLast",      "0:0",          {RIGHT, INSERT},        "0:0 1:0",             0 },
    {"InsertBeforeTheSelected", "0:0 2:0.5",    {RIGHT, RIGHT, INSERT}, "0:0 1:0.5 2:0.5",     2 },
};

TEST(SplineKeyboard, SelectsAndEdits)
{
    for (const KeyboardCase& row : KEYBOARD_CASES) {
        SCOPED_TRACE(row.name);
        SplineTree tree(row.keys);
        tree.mouse.moveTo({150.0f, 60.0f});
        for (const display::Key key : row.pressed)
            pressKey(tree.screen, key);

        EXPECT_EQ(tree.keys(), row.expected);
        EXPECT_EQ(tree.keyIn(SELECTED), row.selected);
        EXPECT_TRUE(tree.observer.heard.empty());
    }
}

const struct MenuCase {
    const char* name;
    Vector2f point;        // of the right press; a key is at (200, 75)
    std::vector<int> rows; // of the menu and its submenus
    const char* action;
    const char* expected; // modes and keys afterwards
} MENU_CASES[] = {
    {"AddKeyWhereTheMenuWasOpened", {220, 60}, {0},       "spline.add key",                 "linear 0 0 5:0.5 6:0.8"},
    {"Separator",                   {220, 60}, {1},       "spline.-------",                 "linear 0 0 5:0.5"      },
    {"Square",                      {220, 60}, {2, 0},    "spline.type.square",             "square 0 0 5:0.5"      },
    {"Linear",                      {220, 60}, {2, 1},    "spline.type.linear",             "linear 0 0 5:0.5"      },
    {"Smooth",                      {220, 60}, {2, 2},    "spline.type.smooth",             "smooth 0 0 5:0.5"      },
    {"RepeatBefore",                {220, 60}, {3, 0, 1}, "spline.repeat.before.identical", "linear 1 0 5:0.5"      },
    {"AddBefore",                   {220, 60}, {3, 0, 2}, "spline.repeat.before.added",     "linear 2 0 5:0.5"      },
    {"RepeatAfter",                 {220, 60}, {3, 1, 1}, "spline.repeat.after.identical",  "linear 0 1 5:0.5"      },
    {"AddAfter",                    {220, 60}, {3, 1, 2}, "spline.repeat.after.added",      "linear 0 2 5:0.5"      },
    {"ShowTangents",                {220, 60}, {5, 0},    "spline.tangents.show",           "linear 0 0 5:0.5"      },
    {"HideTangents",                {220, 60}, {5, 1},    "spline.tangents.hide",           "linear 0 0 5:0.5"      },
    {"DeleteKey",                   {203, 75}, {0},       "spline.delete key",              "linear 0 0 "           },
};

TEST(SplineMenu, AppliesWhatIsChosen)
{
    for (const MenuCase& row : MENU_CASES) {
        SCOPED_TRACE(row.name);
        SplineTree tree("5:0.5");
        tree.spline->setCallback(&tree.observer);
        tree.openMenu(row.point);
        ASSERT_NE(tree.screen.getOpen(), nullptr);
        EXPECT_EQ(tree.screen.getOpen()->getArea().mMin, row.point);

        tree.choose(row.rows);
        EXPECT_EQ(tree.observer.chosen, std::vector<std::string>{row.action});
        std::ostringstream result;
        result << getModeName(tree.curve.getInterpolation()) << ' '
               << tree.curve.getExtrapolationBefore() << ' ' << tree.curve.getExtrapolationAfter()
               << ' ' << tree.keys();
        EXPECT_EQ(result.str(), row.expected);
        EXPECT_TRUE(tree.observer.heard.empty());
    }
}

TEST(Spline, DeletesNoOtherKeyThanTheOneOfTheMenu)
{
    SplineTree tree("5:0.5 8:0");
    tree.mouse.click({200.0f, 75.0f});
    tree.openMenu({201.0f, 75.0f});
    pressKey(*tree.spline, DEL);
    testing::internal::CaptureStdout();
    tree.choose({0});

    EXPECT_EQ(testing::internal::GetCapturedStdout(), "hallo was deleting spline key\n");
    EXPECT_EQ(tree.keys(), "8:0");
}

TEST(Spline, ShowsTangentsOfASmoothCurve)
{
    SplineTree tree("0:0 5:1 10:0", Curve::SMOOTH);
    const auto handlesOf = [&](Vector2f key) {
        tree.draw();
        std::string handles;
        for (const RecordingRender::Line& line : tree.screen.render.lines)
            if (line.from == key && std::abs(line.to.x - key.x) > 3.0f)
                handles += text(Area(line.from, line.to)) + "; ";
        return handles;
    };
    tree.openMenu({150.0f, 60.0f});
    tree.choose({5, 0});
    EXPECT_EQ(handlesOf({200, 50}), "200 50 175 50; 200 50 225 50; ");
    EXPECT_EQ(handlesOf({100, 100}), "100 100 125 87.5; ");
    pressKey(tree.screen, RIGHT);
    EXPECT_EQ(handlesOf({100, 100}), "100 100 150 75; ") << "selected";
    tree.spline->setSplineType("linear");
    EXPECT_EQ(handlesOf({200, 50}), "");
}

TEST(Spline, LoadsACurveOfItsOwn)
{
    SplineTree tree("");
    tree.spline->setTimeInterval(0.0f, 1.0f);
    for (int i = 0; i < 2; ++i)
        loadFrom(*tree.spline,
                 "<vellum><spline type='linear'><area x='100' y='50' w='200' h='100'/>"
                 "<item x='1' y='nan'/><item x='0' y='1'/><item x='0.5'/>"
                 "</spline></vellum>");
    tree.draw();

    ASSERT_EQ(tree.screen.render.circles.size(), 3u);
    EXPECT_EQ(tree.screen.render.circles[0].getCenter(), Vector2f(100, 50));
    EXPECT_EQ(tree.screen.render.circles[2].getCenter(), Vector2f(300, 100));
    EXPECT_EQ(tree.screen.render.texts.at(0).text, "linear");
    EXPECT_EQ(tree.keys(), "") << "the curve before";
}

TEST(Spline, DoesNothingWithoutACurve)
{
    SplineTree tree("");
    tree.spline->setSpline(nullptr, false);
    tree.mouse.drag({200.0f, 75.0f}, {220.0f, 75.0f});
    for (const display::Key key : {RIGHT, INSERT, DEL})
        pressKey(tree.screen, key);
    const std::vector<std::vector<int>> choices = {
        {0},
        { 2,  0},
        { 3, 0, 1}
    };
    for (const std::vector<int>& rows : choices) {
        tree.openMenu({150.0f, 60.0f});
        tree.choose(rows);
    }
    tree.draw();
    EXPECT_TRUE(tree.screen.render.boxes.empty());
}

} // namespace
} // namespace zavex::vellum::test
