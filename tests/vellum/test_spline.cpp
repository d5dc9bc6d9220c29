#include "vellum/user.h"
#include "vellum/vel_spline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>

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
        user.does("move 150,60");
    }

    /** The curve where it is not linear, then its keys; marked where their colour is another. */
    std::string state()
    {
        screen.redraw();
        std::ostringstream out;
        if (curve.getInterpolation() != Curve::LINEAR)
            out << getModeName(curve.getInterpolation()) << ' ';
        if (curve.getExtrapolationBefore() || curve.getExtrapolationAfter())
            out << curve.getExtrapolationBefore() << curve.getExtrapolationAfter() << ' ';
        for (int i = 0; i < curve.getNumKeys(); ++i)
            out << (i ? " " : "") << curve[i].time << ':' << curve[i].value << markOf(i);
        return out.str() + (isDrawnAsItIs() ? "" : " stale");
    }

    const char* markOf(int key) const
    {
        const auto& colors = screen.render.circleColors;
        const auto index = static_cast<std::size_t>(key);
        if (index >= colors.size())
            return "";
        return colors[index] == HOVERED    ? "h"
               : colors[index] == DRAGGED  ? "d"
               : colors[index] == SELECTED ? "s"
                                           : "";
    }

    /** Whether the lines go where the curve does, within a pixel. */
    bool isDrawnAsItIs()
    {
        const auto valueAt = [&](float x) { return curve.evaluate((x - 100.0f) / 20.0f); };
        return std::ranges::all_of(screen.render.lines, [&](const RecordingRender::Line& line) {
            const auto [low, high] = std::minmax({valueAt(line.to.x), valueAt(line.to.x + 1.0f)});
            const float value = (100.0f - line.to.y) / 50.0f;
            return value > low - 0.03f && value < high + 0.03f;
        });
    }

    Curve curve;
    Screen screen;
    Observer observer;
    Spline* spline = new Spline;
    User user{screen, [this] { return state(); }};
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

// Keys at 5:0.5 lie at (200, 75), and reach 4.5 pixels.
// clang-format off
constexpr struct SplineCase {
    const char* name;
    const char* keys;
    const char* steps;
    const char* heard;
} SPLINE_CASES[] = {
    {"FirstWinsOnOverlap",     "5:0.5 5.15:0.5", "move 202,75; = 5:0.5h 5.15:0.5; down; = 5:0.5d 5.15:0.5; up; = 5:0.5s 5.15:0.5; move 98,75; = 5:0.5s 5.15:0.5", ""},
    {"Reach",                  "5:0.5", "move 204.5,75; = 5:0.5h; move 195.5,75; = 5:0.5; move 195.6,75; = 5:0.5h; move 200,70.5; = 5:0.5; move 200,79.5; = 5:0.5h; move 98,75; = 5:0.5", ""},
    {"BesideAKey",             "5:0.5", "click 200,75; = 5:0.5s; click 230,75; = 5:0.5", ""},

    {"BetweenItsNeighbours",   "2:0 5:0.5 8:-0.5", "= 2:0 5:0.5 8:-0.5; down 200,75; move 220,100; = 2:0 6:0d 8:-0.5; up; move 150,60; = 2:0 6:0s 8:-0.5", "curve"},
    {"OntoTheNextsTime",       "2:0 5:0.5 8:-0.5", "down 200,75; move 260,100; = 2:0 8:0d 8:-0.5", "curve"},
    {"PastAllAndBack",         "2:0 5:0.5 8:-0.5", "down 200,75; move 280,100; = 2:0 8:-0.5 9:0d; move 110,125; up; move 150,60; = 0.5:-0.5s 2:0 8:-0.5", "curve curve"},
    {"BeyondTheEdges",         "2:0 5:0.5 8:-0.5", "down 200,75; move 0,0; = 0:1d 2:0 8:-0.5; move 390,290; = 2:0 8:-0.5 10:-1d", "curve curve"},
    {"HiddenWhileDragged",     "5:0.5", "down 200,75; hide curve; show curve; move 220,75; = 5:0.5s", ""},

    {"LeftStartsAtTheFirst",   "0:0 1:1",      "key LEFT; = 0:0s 1:1",                     ""},
    {"RightStopsAtTheLast",    "0:0 1:1",      "key RIGHT RIGHT RIGHT; = 0:0 1:1s",                     ""},
    {"DeleteSelectsTheNext",   "0:0 1:1 2:0",  "= 0:0 1:1 2:0; key RIGHT DEL; = 1:1s 2:0; key RIGHT DEL; = 1:1s; key DEL; = ", ""},
    {"InsertHalfwayToTheNext", "0:0 1:1",      "= 0:0 1:1; key RIGHT INSERT; = 0:0s 0.5:0.5 1:1",       ""},
    {"InsertIntoSquares",      "0:0 4:1",      "right 220,60; pick type/square; = square 0:0 4:1; key RIGHT INSERT; = square 0:0s 2:0.5 4:1", "spline.type.square"},
    {"InsertWithoutSelection", "0:0 0.5:0.25", "key INSERT; = 0:0 0.5:0.25 1:0.25",                     ""},
    {"InsertAfterTheLast",     "0:0",          "key RIGHT INSERT; = 0:0s 1:0",                          ""},
    {"InsertBeforeSelected",   "0:0 2:0.5",    "key RIGHT RIGHT INSERT; = 0:0 1:0.5 2:0.5s",            ""},

    {"AddKeyWhereTheMenuWas",  "5:0.5", "= 5:0.5; right 220,60; pick add key; = 5:0.5 6:0.8",           "spline.add key"},
    {"Separator",              "5:0.5", "right 220,60; pick -------; = 5:0.5",                          "spline.-------"},
    {"Square",                 "2:0 5:0.5", "= 2:0 5:0.5; right 220,60; pick type/square; = square 2:0 5:0.5", "spline.type.square"},
    {"SmoothAndLinear",        "5:0.5", "right 220,60; pick type/smooth; = smooth 5:0.5; right 220,60; pick type/linear; = 5:0.5", "spline.type.smooth spline.type.linear"},
    {"RepeatBefore",           "2:0 5:0.5", "= 2:0 5:0.5; right 220,60; pick repeat/before/identical; = 10 2:0 5:0.5; right 220,60; pick repeat/before/added; = 20 2:0 5:0.5; right 220,60; pick repeat/before/none; = 2:0 5:0.5", "spline.repeat.before.identical spline.repeat.before.added spline.repeat.before.none"},
    {"RepeatAfter",            "2:0 5:0.5", "right 220,60; pick repeat/after/identical; = 01 2:0 5:0.5; right 220,60; pick repeat/after/added; = 02 2:0 5:0.5", "spline.repeat.after.identical spline.repeat.after.added"},
    {"DeleteKey",              "5:0.5", "right 203,75; pick delete key; = ",                            "spline.delete key"},
};
// clang-format on

TEST(Spline, DoesWhatItIsTold)
{
    for (const SplineCase& row : SPLINE_CASES) {
        SCOPED_TRACE(row.name);
        SplineTree tree(row.keys);
        tree.spline->setCallback(&tree.observer);
        tree.user.does(row.steps);
        EXPECT_EQ(tree.observer.text(), row.heard);
    }
}

TEST(Spline, OpensItsMenuAtThePointer)
{
    SplineTree tree("5:0.5");
    tree.user.does("right 220,60");
    ASSERT_NE(tree.screen.getOpen(), nullptr);
    EXPECT_EQ(tree.screen.getOpen()->getArea().mMin, Vector2f(220, 60));
}

TEST(Spline, MayBeDeletedByWhoHearsOfTheDrag)
{
    SplineTree tree("5:0.5");
    tree.observer.onAction = [&] { tree.screen.deleteControls(); };
    tree.user.does("down 200,75; move 220,75");
    EXPECT_EQ(tree.screen.getChildCount(), 0);
}

TEST(Spline, DeletesNoOtherKeyThanTheOneOfTheMenu)
{
    SplineTree tree("5:0.5 8:0");
    tree.user.does("click 200,75; right 201,75");
    pressKey(*tree.spline, display::KEY_DEL);
    testing::internal::CaptureStdout();
    tree.user.does("pick delete key; = 8:0s");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "hallo was deleting spline key\n");
}

TEST(Spline, ShowsTangentsOfASmoothCurve)
{
    SplineTree tree("0:0 5:1 10:0", Curve::SMOOTH);
    const auto handlesOf = [&](Vector2f key) {
        tree.screen.redraw();
        std::string handles;
        for (const RecordingRender::Line& line : tree.screen.render.lines)
            if (line.from == key && std::abs(line.to.x - key.x) > 3.0f)
                handles += text(Area(line.from, line.to)) + "; ";
        return handles;
    };
    tree.user.does("right 150,60; pick tangents/show");
    EXPECT_EQ(handlesOf({200, 50}), "200 50 175 50; 200 50 225 50; ");
    EXPECT_EQ(handlesOf({100, 100}), "100 100 125 87.5; ");
    tree.user.does("key RIGHT");
    EXPECT_EQ(handlesOf({100, 100}), "100 100 150 75; ") << "selected";
    tree.user.does("right 150,60; pick tangents/hide");
    EXPECT_EQ(handlesOf({200, 50}), "");
    tree.user.does("right 150,60; pick tangents/show");
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
    tree.screen.redraw();

    ASSERT_EQ(tree.screen.render.circles.size(), 3u);
    EXPECT_EQ(tree.screen.render.circles[0].getCenter(), Vector2f(100, 50));
    EXPECT_EQ(tree.screen.render.circles[2].getCenter(), Vector2f(300, 100));
    EXPECT_EQ(tree.screen.render.texts.at(0).text, "linear");
    EXPECT_EQ(tree.curve.getNumKeys(), 0) << "the curve before";
}

TEST(Spline, DoesNothingWithoutACurve)
{
    SplineTree tree("");
    tree.spline->setSpline(nullptr, false);
    tree.user.does("down 200,75; move 220,75; up; key RIGHT INSERT DEL; right 150,60; pick add key;"
                   "right 150,60; pick type/square; right 150,60; pick repeat/before/added");
    tree.screen.redraw();
    EXPECT_TRUE(tree.screen.render.boxes.empty());
}

} // namespace
} // namespace zavex::vellum::test
